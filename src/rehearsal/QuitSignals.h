#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace quorvane {

/// Turns SIGINT and SIGTERM into a Qt signal on the main thread, so that a terminal's Control-C is a quit like any
/// other.
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
