#include "maintenance/MaintenanceSelection.h"

namespace quorvane {

using namespace Qt::StringLiterals;

void MaintenanceOutcome::add(const std::optional<QString>& problem, const QString& done) {
    succeeded = succeeded && !problem;
    messages.append(problem.value_or(done));
}

QString MaintenanceOutcome::alertTitle() const {
    return succeeded ? u"Success"_s : u"Completed with Issues"_s;
}

QString MaintenanceOutcome::alertText() const {
    return messages.join(u"\n\n"_s);
}

} // namespace quorvane
