#pragma once

#include <QString>
#include <QStringList>

namespace quorvane {

/// One line for an argument list; an argument with a blank stands in quotes.
inline QString commandLine(const QStringList& arguments) {
    QStringList shown;
    for (const QString& argument : arguments) {
        shown.append(argument.contains(u' ') ? u'"' + argument + u'"' : argument);
    }
    return shown.join(u' ');
}

} // namespace quorvane
