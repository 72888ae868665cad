#pragma once

#include "ui/symbols/SymbolLayers.h"

#include <QStringView>

#include <array>
#include <span>
#include <string_view>

// Which drawings a symbol is made of. All stand on a grid of 16 by 16, for which the set is drawn.
namespace quorvane {

/// A square on the grid.
struct SymbolPlace {
    double x = 0;
    double y = 0;
    double side = kSymbolGrid;
};

struct SymbolLayer {
    enum class Kind { Nothing, Drawing, Letter, Slash };
    Kind kind = Kind::Nothing;
    std::string_view text = {}; ///< the drawing's file without its ending, or the letter
    SymbolPlace place = {};
    int turn = 0; ///< in degrees, clockwise
    LayerJoining joining = LayerJoining::Over;
};

/// From below; those of no kind stand at the end.
using SymbolLayers = std::array<SymbolLayer, 3>;

struct Symbol {
    std::string_view name;
    SymbolLayers layers;
};

/// Sorted by name.
std::span<const Symbol> symbolTable();

/// Null for a name that isn't in the table.
const Symbol* findSymbol(QStringView name);

} // namespace quorvane
