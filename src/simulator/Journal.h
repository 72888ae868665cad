#pragma once

#include "simulator/Authorizer.h"
#include "simulator/Machine.h"
#include "simulator/Permissions.h"

#include <QString>
#include <QStringList>

#include <chrono>

namespace macsim {

/// What was done to the simulated Mac: one JSON object per line, in the order in which it ended.
///
///     {"user":"root","arguments":["/usr/bin/pmset","-a","sms","0"],"status":0,"milliseconds":0.41}
///     {"authorization":"allow","prompt":"Quorvane needs …"}
///     {"automation":"System Events","answer":"unanswered","seconds":120}
///     {"dialog":"sfltool"}
class Journal {
public:
    /// @param hostFiles  files on the host; every record is appended to each of them in one write. Empty names are
    ///                   left out.
    explicit Journal(QStringList hostFiles);

    void recordCommand(Actor actor, const QStringList& arguments, int status,
                       std::chrono::duration<double, std::milli> duration) const;
    void recordAuthorization(const QString& prompt, Authorization answer) const;
    /// @param limit  how long the event would have waited for the answer
    void recordAutomation(const QString& application, AutomationAnswer answer, std::chrono::seconds limit) const;
    /// A dialog that a tool raises by itself, in its own name.
    void recordDialog(const QString& tool) const;

private:
    void append(const QByteArray& line) const;

    QStringList m_hostFiles;
};

} // namespace macsim
