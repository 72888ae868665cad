#pragma once

#include <QObject>

#include <functional>
#include <memory>
#include <mutex>

namespace quorvane {

/// The way from another thread, of the system's or of a port's own, back to the thread of the port. Such a thread may go on
/// for longer than the port, which can't end it: it holds the path by a shared pointer, and what it sends after `close` is
/// dropped.
class ReturnPath {
public:
    /// The thread that makes it is the one that everything comes back to.
    ReturnPath()
        : m_home(std::make_unique<QObject>()) {}

    /// Any thread: runs the function from the event loop at home, unless the path is closed until then.
    void send(std::function<void()> function);
    /// At home. Nothing that was sent is run any more.
    void close();

private:
    std::mutex m_mutex;
    std::unique_ptr<QObject> m_home; ///< none when closed
};

} // namespace quorvane
