#include "platform/macos/CloudFileRules.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

TEST(CloudFileRules, aNameOfAStandInIsThatOfItsFile) {
    const QStringList listed{u"a.json"_s, u".b.json.icloud"_s, u".notes"_s, u"c.icloud"_s, u".icloud"_s};
    EXPECT_EQ(cloudFileNames(listed),
              (QStringList{u"a.json"_s, u"b.json"_s, u".notes"_s, u"c.icloud"_s, u".icloud"_s}));
}

TEST(CloudFileRules, aFileBesideItsStandInIsNamedOnce) {
    EXPECT_EQ(cloudFileNames({u".a.json.icloud"_s, u"a.json"_s}), QStringList(u"a.json"_s));
    EXPECT_EQ(cloudFileNames({}), QStringList());
}

TEST(CloudFileRules, whatWasDoneIsNoFailureWhateverWasSaid) {
    EXPECT_EQ(failureOf({true, {}, {}}), std::nullopt);
    EXPECT_EQ(failureOf({true, u"late"_s, u"also"_s}), std::nullopt);
}

TEST(CloudFileRules, aFailureHasTheNearestWords) {
    EXPECT_EQ(failureOf({false, u"refused"_s, u"no room"_s}), u"no room"_s);
    EXPECT_EQ(failureOf({false, u"refused"_s, {}}), u"refused"_s);
    EXPECT_EQ(failureOf({false, {}, {}}), u"The file couldn’t be changed."_s) << "cancelled, without a word";
}

} // namespace quorvane
