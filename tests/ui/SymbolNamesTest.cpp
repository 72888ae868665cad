// Which symbols a Mac has, and what stands for the others.

#include "ui/symbols/SymbolNames.h"

#include "ui/symbols/SymbolTable.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

std::string textOf(std::string_view text) {
    return std::string(text);
}

const SymbolName* named(std::string_view name) {
    for (const SymbolName& symbol : symbolNameTable()) {
        if (symbol.name == name) {
            return &symbol;
        }
    }
    return nullptr;
}

} // namespace

TEST(SymbolNames, areThoseThatAreDrawnElsewhere) {
    ASSERT_EQ(symbolNameTable().size(), symbolTable().size());
    for (const Symbol& drawn : symbolTable()) {
        EXPECT_NE(named(drawn.name), nullptr) << textOf(drawn.name);
    }
}

TEST(SymbolNames, areInTheOldestSystemOrHaveAStandIn) {
    for (const SymbolName& symbol : symbolNameTable()) {
        const bool isThere = symbol.firstSystem != kInNoSystem && symbol.firstSystem <= kOldestSystem;
        EXPECT_NE(isThere, !symbol.standIn.empty()) << textOf(symbol.name);
        EXPECT_TRUE(symbol.firstSystem == kInNoSystem || (symbol.firstSystem >= 11 && symbol.firstSystem <= 15))
            << textOf(symbol.name);
    }
}

TEST(SymbolNames, threeHaveAStandIn) {
    const auto plain = [](const QString& name) { return SystemSymbol{name, false}; };
    EXPECT_EQ(systemSymbol(u"music.note.fill"_s), plain(u"music.note"_s));
    EXPECT_EQ(systemSymbol(u"arrow.trianglehead.2.clockwise.rotate.90"_s), plain(u"arrow.triangle.2.circlepath"_s));
    EXPECT_EQ(systemSymbol(u"printer.slash.fill"_s), (SystemSymbol{u"printer.fill"_s, true}));
    int standIns = 0;
    for (const SymbolName& symbol : symbolNameTable()) {
        standIns += symbol.standIn.empty() ? 0 : 1;
    }
    EXPECT_EQ(standIns, 3);
}

TEST(SymbolNames, everyOtherIsAskedForAsItIs) {
    for (const QString& name : {u"star.fill"_s, u"network.slash"_s, u"a.symbol.of.a.later.system"_s, u""_s}) {
        EXPECT_EQ(systemSymbol(name), (SystemSymbol{name, false})) << name.toStdString();
    }
}

} // namespace quorvane
