#include "maccheck/CheckLine.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

using Outcome = CheckResult::Outcome;

TEST(CheckLine, beginsWithTheOutcomeAndTheName) {
    EXPECT_EQ(checkLine({u"Machine.isThere"_s}), u"PASS Machine.isThere"_s);
    EXPECT_EQ(checkLine({u"Machine.isThere"_s, Outcome::Fail}), u"FAIL Machine.isThere"_s);
    EXPECT_EQ(checkLine({u"Machine.isThere"_s, Outcome::Skip, {u"nobody is logged in"_s}}),
              u"SKIP Machine.isThere: nobody is logged in"_s);
}

TEST(CheckLine, isOneLineWhateverTheReasonsAre) {
    EXPECT_EQ(
        checkLine({u"A.b"_s, Outcome::Fail, {u"one\n  reason\r\n"_s, u""_s, u" \n"_s, u"and another"_s}, u"3\tms"_s}),
        u"FAIL A.b: one reason; and another; 3 ms"_s);
}

TEST(CheckLine, theSummaryCounts) {
    EXPECT_EQ(checkSummary(12, 1, 3), u"12 passed, 1 failed, 3 skipped"_s);
}

} // namespace quorvane
