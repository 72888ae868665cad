#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

namespace quorvane {

class Heartbeat;

// A round: the program is started on a simulated Mac of its own, used, and ended. It prints a line for each thing that is done
// in it, with the longest stall of the event loop meanwhile.

/// The Mac of a user who has a master baseline already, so that none is offered.
class RoundMac {
public:
    /// Made where it is missing.
    explicit RoundMac(const QString& dataFolder);

    /// A folder of the user's, where it lies on this disk. @param folder  on the Mac
    QString placeOf(const QString& folder) const { return m_place + folder; }
    /// Without a slash at the end.
    const QString& homeFolder() const { return m_homeFolder; }
    QString profilesFolder() const;

private:
    QString m_place;
    QString m_homeFolder;
};

/// Makes the file anew. Throws std::runtime_error.
void writeFile(const QString& path, const QByteArray& content);

struct Round {
    std::function<void(const RoundMac& mac)> prepare;
    /// Begins with the first picture: the heartbeat has begun by then.
    std::function<void(Heartbeat& heartbeat)> use;
};
/// @return the exit status of the process
int runRound(int& argumentCount, char** arguments, const Round& round);

/// Does something and prints the longest stall until it is seen.
void measure(Heartbeat& heartbeat, const char* what, const std::function<void()>& act);
/// The same of what has been done since the heartbeat began.
void printStall(Heartbeat& heartbeat, const char* what);

} // namespace quorvane
