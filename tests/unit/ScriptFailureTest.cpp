#include "core/CommandResult.h"
#include "core/Osascript.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

CommandResult failedScript(const QString& errors) {
    return {1, {}, errors, true};
}

TEST(ScriptFailure, itsNumberAndTextAreRead) {
    struct Row {
        QString errors;
        ScriptFailure failure;
    };
    const QList<Row> rows{
        {u"37:56: execution error: Not authorized to send Apple events to System Events. (-1743)\n"_s,
         {-1743, u"Not authorized to send Apple events to System Events."_s}},
        {u"/tmp/a b: c.scpt:68:72: execution error: Finder got an error: Nein (-128). (-1712)\n"_s,
         {-1712, u"Finder got an error: Nein (-128)."_s}},
        {u"said before\n0:5: syntax error: Expected end of line. (-2741)\n"_s, {-2741, u"Expected end of line."_s}},
        {u"1:2: execution error: line one\nline (two) (64)\n"_s, {64, u"line one\nline (two)"_s}},
        {u"Nicht erlaubt. (-1743)"_s, {-1743, u"Nicht erlaubt."_s}},
        {u"osascript: no such component \"AppleScript\".\n"_s, {0, u"osascript: no such component \"AppleScript\"."_s}},
        {u"odd (-1743) end"_s, {0, u"odd (-1743) end"_s}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(scriptFailure(failedScript(row.errors)), row.failure) << row.errors.toStdString();
    }
}

TEST(ScriptFailure, thereIsNoneWhereNothingIsSaidOrTheToolSucceeded) {
    EXPECT_EQ(scriptFailure(failedScript(u" \n"_s)), std::nullopt);
    EXPECT_EQ(scriptFailure({0, u"x"_s, u"a warning (-1743)"_s, true}), std::nullopt);
}

TEST(ScriptFailure, aRefusalIsKnownByItsNumber) {
    EXPECT_TRUE(isAutomationRefused(failedScript(u"1:2: execution error: Nein. (-1743)\n"_s)));
    EXPECT_FALSE(isAutomationRefused(failedScript(u"1:2: execution error: (-1743) aber. (-1712)\n"_s)));
    EXPECT_FALSE(isAutomationRefused({0, {}, u"1:2: execution error: Nein. (-1743)"_s, true}));
}

} // namespace
} // namespace quorvane
