#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace quorvane {

/// Whether a program has nothing to do any more once nobody reads what it prints.
enum class OutputReader { Needed, NotNeeded };

/// Turns SIGINT, SIGTERM and SIGHUP into a Qt signal on the main thread, so that a terminal's Control-C, its end and that of
/// the session are a quit like any other. One at a time.
///
/// Where a reader is needed, SIGPIPE is a quit, too; elsewhere it does nothing. Once Qt has written to a child it ignores
/// SIGPIPE for good, so who prints looks at that, too.
class QuitSignals : public QObject {
    Q_OBJECT

public:
    explicit QuitSignals(OutputReader reader, QObject* parent = nullptr);

Q_SIGNALS:
    void quitRequested();

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace quorvane
