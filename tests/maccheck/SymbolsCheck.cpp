// The program's symbols, which the system draws.

#include "maccheck/CheckProgram.h"
#include "platform/SystemSymbols.h"
#include "ui/symbols/SymbolNames.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

TEST(SymbolsOfMac, noneIsMissing) {
    QStringList missing;
    for (const SymbolName& symbol : symbolNameTable()) {
        const QString wanted =
            systemSymbol(QString::fromLatin1(symbol.name.data(), qsizetype(symbol.name.size()))).name;
        if (!hasSystemSymbol(wanted) || systemSymbolPicture(wanted, 32).isNull()) {
            missing.append(wanted);
        }
    }
    EXPECT_TRUE(missing.isEmpty()) << missing.join(u", "_s).toStdString();
    tell(u"%1 symbols"_s.arg(symbolNameTable().size()));
}

} // namespace quorvane
