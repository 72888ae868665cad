#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace quorvane {

/// Turns SIGINT, SIGTERM and SIGPIPE into a Qt signal on the main thread, so that a terminal's Control-C and a reader that
/// has gone are a quit like any other. Once Qt has written to a child it ignores SIGPIPE for good, so who prints looks at that,
/// too.
class QuitSignals : public QObject {
    Q_OBJECT

public:
    explicit QuitSignals(QObject* parent = nullptr);

Q_SIGNALS:
    void quitRequested();

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace quorvane
