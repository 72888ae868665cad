// The symbols as the system draws them.

#include "platform/SystemSymbols.h"
#include "ui/symbols/SymbolLayers.h"
#include "ui/symbols/SymbolNames.h"
#include "ui/symbols/SymbolShape.h"

#include <QPainter>

namespace quorvane {

QImage symbolShape(const QString& name, int side) {
    const SystemSymbol symbol = systemSymbol(name);
    QImage shape = systemSymbolPicture(symbol.name, side);
    if (symbol.isSlashed && !shape.isNull()) {
        QPainter painter(&shape);
        addSymbolLayer(painter, symbolSlash(side), LayerJoining::Over);
    }
    return shape;
}

bool hasSymbolShape(const QString& name) {
    return hasSystemSymbol(systemSymbol(name).name);
}

} // namespace quorvane
