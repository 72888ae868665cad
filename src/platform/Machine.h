#pragma once

#include <QDateTime>
#include <QString>
#include <QtGlobal>

namespace quorvane {

/// What the program needs to know of the computer and its user. Nothing here changes while the program runs.
class Machine {
public:
    Machine() = default;
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;
    virtual ~Machine() = default;

    /// "/Users/alex", without a "/" at the end.
    virtual QString homeFolder() const = 0;
    /// The user's Application Support folder, without a "/" at the end.
    virtual QString applicationSupportFolder() const = 0;
    /// The user's own temporary folder, without a "/" at the end.
    virtual QString temporaryFolder() const = 0;
    /// The computer's name as its user sees it: "Alex's MacBook Pro"; empty when it has none.
    virtual QString computerName() const = 0;
    /// An id that this computer keeps for good, whatever its name is; no other has it. Empty where it can't be told.
    /// On a Mac the platform's UUID.
    virtual QString hardwareId() const = 0;
    /// The version of macOS, for people: "14.7". Another one after each update.
    virtual QString systemVersion() const = 0;
    /// Of the real user, whatever rights the process has.
    virtual quint32 userId() const = 0;
    /// The process that the program is, by a name that no other has until the computer starts anew.
    virtual QString processName() const = 0;
    /// Whether the process of that name runs still, whoever's it is. False of one from before the computer's last start.
    virtual bool isRunning(const QString& processName) const = 0;
    /// A moment as the user writes it, in their language and time zone: the date in medium, the time in short length.
    /// "Nov 15, 2026 at 9:05 PM".
    virtual QString dateAndTimeText(const QDateTime& moment) const = 0;
};

} // namespace quorvane
