#include "maintenance/MaintenanceSelection.h"

namespace quorvane {

using namespace Qt::StringLiterals;

QString MaintenanceOutcome::alertTitle() const {
    return succeeded ? u"Success"_s : u"Completed with Issues"_s;
}

QString MaintenanceOutcome::alertText() const {
    return messages.join(u"\n\n"_s);
}

} // namespace quorvane
