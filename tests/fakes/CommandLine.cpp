#include "fakes/CommandLine.h"

namespace quorvane {

QString commandLine(const QStringList& arguments) {
    QStringList shown;
    for (const QString& argument : arguments) {
        shown.append(argument.contains(u' ') ? u'"' + argument + u'"' : argument);
    }
    return shown.join(u' ');
}

} // namespace quorvane
