#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

namespace quorvane {

/// The program in a process that is killed over and over: at each of its commands, and at each step of each change of its files.
class Victim {
public:
    /// @param folder  for its files of faults
    explicit Victim(const QString& folder)
        : m_folder(folder) {}

    using NewMac = std::function<QString()>;
    using Check = std::function<void(const QString& mac)>;
    // Each on a Mac of its own, which is the check's when the program was killed on it. @return how often it was.
    int killAtEachCommand(const QString& flow, const NewMac& newMac, const Check& check) const;
    int killAtEachChange(const QString& flow, const NewMac& newMac, const Check& check) const;
    int killAtEveryPoint(const QString& flow, const NewMac& newMac, const Check& check) const {
        return killAtEachCommand(flow, newMac, check) + killAtEachChange(flow, newMac, check);
    }

private:
    bool isKilled(const QString& flow, const QByteArray& faults, const NewMac& newMac, const Check& check) const;
    QString faultsFile(const QByteArray& rules) const;

    QString m_folder;
};

} // namespace quorvane
