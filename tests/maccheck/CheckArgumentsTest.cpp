#include "maccheck/CheckArguments.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

TEST(CheckArguments, withoutAnyNobodyIsAskedAndEveryCheckRuns) {
    EXPECT_EQ(parsedCheckArguments({}), CheckArguments());
    EXPECT_EQ(parsedCheckArguments({u"--no-rights"_s}), CheckArguments());
    EXPECT_FALSE(CheckArguments().asksPeople);
    EXPECT_EQ(CheckArguments().filter, u"*"_s);
}

TEST(CheckArguments, eachIsTakenInAnyOrder) {
    CheckArguments wanted;
    wanted.asksPeople = true;
    wanted.report = u"/tmp/a b.txt"_s;
    wanted.filter = u"Machine*"_s;
    EXPECT_EQ(parsedCheckArguments({u"--ask"_s, u"--report"_s, wanted.report, u"--filter"_s, wanted.filter}), wanted);
    EXPECT_EQ(parsedCheckArguments({u"--filter"_s, wanted.filter, u"--report"_s, wanted.report, u"--ask"_s}), wanted);
    EXPECT_TRUE(parsedCheckArguments({u"--help"_s}).wantsHelp);
}

TEST(CheckArguments, whatIsWrongIsSaid) {
    EXPECT_EQ(parsedCheckArguments({u"--all"_s}).error, u"Unknown argument: --all"_s);
    EXPECT_EQ(parsedCheckArguments({QString()}).error, u"Unknown argument: "_s);
    EXPECT_EQ(parsedCheckArguments({u"--report"_s}).error, u"--report needs a value."_s);
    EXPECT_EQ(parsedCheckArguments({u"--filter"_s, QString()}).error, u"--filter needs a value."_s);
    for (const QStringList& both :
         {QStringList{u"--ask"_s, u"--no-rights"_s}, QStringList{u"--no-rights"_s, u"--ask"_s}}) {
        EXPECT_EQ(parsedCheckArguments(both).error, u"--ask and --no-rights exclude each other."_s);
    }
}

TEST(CheckArguments, theHelpNamesEachOne) {
    for (const QString& argument : {u"--no-rights"_s, u"--ask"_s, u"--report"_s, u"--filter"_s, u"--help"_s}) {
        EXPECT_TRUE(checkHelp().contains(u"  "_s + argument)) << argument.toStdString();
    }
}

} // namespace quorvane
