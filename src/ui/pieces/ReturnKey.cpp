#include "ui/pieces/ReturnKey.h"

#include <QAbstractButton>
#include <QKeyEvent>

namespace quorvane {

bool isPressedByReturn(QAbstractButton& button, const QKeyEvent& event) {
    const bool isReturn = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    if (isReturn && !event.isAutoRepeat()) {
        button.click();
    }
    return isReturn;
}

} // namespace quorvane
