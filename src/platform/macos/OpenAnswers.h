#pragma once

#include "platform/macos/ReturnPath.h"

#include <QFuture>
#include <QPromise>

#include <map>
#include <utility>

namespace quorvane {

/// The futures that a port has given out and that wait for another thread's answer. Lives on the port's thread, where each is
/// finished, once: with its answer, or when this is closed.
template <typename Value>
class OpenAnswers {
public:
    /// @param whenClosed  what a future ends with that has no answer by then
    explicit OpenAnswers(Value whenClosed)
        : m_whenClosed(std::move(whenClosed)) {}
    OpenAnswers(const OpenAnswers&) = delete;
    OpenAnswers& operator=(const OpenAnswers&) = delete;
    ~OpenAnswers() { close(); }

    struct Question {
        QFuture<Value> future;
        std::function<void(Value)> answer; ///< any thread, at any time; what comes too late is dropped
    };
    /// Finished at once when this is closed.
    Question ask() {
        if (m_isClosed) {
            return {QtFuture::makeReadyFuture(m_whenClosed), [](const Value&) {}};
        }
        const quint64 number = ++m_lastNumber;
        QPromise<Value>& promise = m_open[number];
        promise.start();
        return {promise.future(), [this, path = m_path, number](Value value) {
                    path->send([this, number, value = std::move(value)] { finish(number, value); });
                }};
    }

    bool isClosed() const { return m_isClosed; }
    /// For `shutDown` of a port: whoever waits goes on.
    void close() {
        m_isClosed = true;
        m_path->close();
        std::map<quint64, QPromise<Value>> open = std::exchange(m_open, {});
        for (auto& [number, promise] : open) {
            promise.addResult(m_whenClosed);
            promise.finish();
        }
    }

private:
    void finish(quint64 number, const Value& value) {
        auto open = m_open.extract(number);
        if (!open.empty()) {
            open.mapped().addResult(value);
            open.mapped().finish();
        }
    }

    Value m_whenClosed;
    std::shared_ptr<ReturnPath> m_path = std::make_shared<ReturnPath>();
    std::map<quint64, QPromise<Value>> m_open;
    quint64 m_lastNumber = 0;
    bool m_isClosed = false;
};

} // namespace quorvane
