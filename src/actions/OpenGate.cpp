#include "actions/OpenGate.h"

#include <QCoroTask>

namespace quorvane {

QCoro::Task<bool> OpenGate::requireUnlock(QString) {
    co_return true;
}

} // namespace quorvane
