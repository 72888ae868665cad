#pragma once

#include <QString>

#include <span>
#include <string_view>

// The names that the program gives its symbols, and by which of them a Mac has each.
namespace quorvane {

/// Of macOS, since which a symbol is there; one that is in none has this.
constexpr int kInNoSystem = 0;
/// The oldest macOS that the program runs on.
constexpr int kOldestSystem = 14;

struct SymbolName {
    enum class Slash { None, Added };

    std::string_view name;
    int firstSystem = kInNoSystem; ///< the first macOS that has it
    std::string_view standIn = {}; ///< drawn instead where a macOS that the program runs on hasn't got it
    Slash slash = Slash::None;     ///< drawn through the stand-in, by the program itself
};

/// All that the program uses, sorted by name.
std::span<const SymbolName> symbolNameTable();

/// What is asked of the system for a symbol.
struct SystemSymbol {
    QString name;
    bool isSlashed = false; ///< a slash is to be drawn through it

    bool operator==(const SystemSymbol&) const = default;
};

/// The stand-in of a symbol that has one, so that every macOS shows the same; each other name as it is.
SystemSymbol systemSymbol(const QString& name);

} // namespace quorvane
