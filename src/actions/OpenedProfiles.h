#pragma once

#include <QObject>
#include <QStringList>

namespace quorvane {

class ActionListener;
class LockManager;
class ProfileExchange;
class Tasks;
class Turnstile;

/// The profile files that were opened with the program: each is imported as soon as nothing else is under way and nobody has
/// to unlock the program first. They come one after the other. Main thread.
class OpenedProfiles : public QObject {
    Q_OBJECT

public:
    struct Parts {
        Tasks& tasks;
        Turnstile& turnstile;
        LockManager& lock;
        ProfileExchange& exchange;
        ActionListener& listener;
    };
    explicit OpenedProfiles(const Parts& parts, QObject* parent = nullptr);

    /// @param paths  absolute
    void open(const QStringList& paths);
    /// Those that wait stay where they are.
    void shutDown();

private:
    void importNext();

    Parts m_parts;
    QStringList m_waiting;
    bool m_isShutDown = false;
};

} // namespace quorvane
