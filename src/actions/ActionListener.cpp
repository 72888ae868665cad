#include "actions/ActionListener.h"

#include <QCoroTask>

namespace quorvane {

QCoro::Task<int> ActionListener::choose(Alert question) {
    co_return question.cancelButton;
}

} // namespace quorvane
