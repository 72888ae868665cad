#pragma once

#include <QString>
#include <QStringList>

namespace quorvane {

/// What the checks are called with.
struct CheckArguments {
    bool asksPeople = false;              ///< also what needs a person or a right that a person gives
    bool wantsHelp = false;               ///< nothing else is done then
    QString report = {};                  ///< a file for the same lines; empty for none
    QString filter = QStringLiteral("*"); ///< of checks, as GoogleTest writes it
    QString error = {};                   ///< what is wrong with them; empty when nothing is

    bool operator==(const CheckArguments&) const = default;
};

/// @param arguments  without the program's name
CheckArguments parsedCheckArguments(const QStringList& arguments);

/// What `--help` prints.
QString checkHelp();

} // namespace quorvane
