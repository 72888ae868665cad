#include "ui/pieces/Layers.h"

#include <QChildEvent>

namespace quorvane {

void Layers::resizeEvent(QResizeEvent*) {
    for (QObject* const child : children()) {
        if (auto* const layer = qobject_cast<QWidget*>(child)) {
            layer->setGeometry(rect());
        }
    }
}

void Layers::childEvent(QChildEvent* event) {
    auto* const layer = qobject_cast<QWidget*>(event->child());
    if (event->added() && layer != nullptr) {
        layer->setGeometry(rect());
    }
}

} // namespace quorvane
