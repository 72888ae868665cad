#include "actions/SheetModel.h"

#include <utility>

namespace quorvane {

void SheetModel::end() {
    if (!std::exchange(m_isOver, true)) {
        settle();
        Q_EMIT ended();
    }
}

} // namespace quorvane
