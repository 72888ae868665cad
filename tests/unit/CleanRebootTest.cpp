#include "startup/items/CleanReboot.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

QStringList namesOf(const QList<LoginItem>& items) {
    QStringList names;
    for (const LoginItem& item : items) {
        names.append(item.name);
    }
    return names;
}

StartupItem added(const QString& name, const QString& path, bool runs = true) {
    StartupItem item = StartupItem::fromLaunchItem({name, path, false});
    item.runsAtStartup = runs;
    return item;
}

TEST(CleanReboot, thePermittedNamesAreThoseGivenAndThoseOfTheAddedApplications) {
    CleanReboot cleanReboot;
    cleanReboot.permittedNames = {u"Given"_s};
    EXPECT_EQ(allPermittedNames(cleanReboot), QSet<QString>{u"Given"_s});

    StartupItem loginItem = added(u"Login"_s, u"/l"_s);
    loginItem.kind = StartupItemKind::loginApp;
    cleanReboot.startup =
        StartupConfiguration{{added(u"Added"_s, u"/a"_s), added(u"Off"_s, u"/o"_s, false), loginItem}, false, {}};
    EXPECT_EQ(allPermittedNames(cleanReboot), (QSet<QString>{u"Given"_s, u"Added"_s}));
}

TEST(CleanReboot, whatIsNotPermittedGoesSortedByName) {
    CleanReboot cleanReboot;
    cleanReboot.permittedNames = {u"Kept"_s};
    const DividedLoginItems divided = dividedLoginItems({{u"zed"_s, u"/z"_s, false},
                                                         {u"Kept"_s, u"/k"_s, false},
                                                         {u"kept"_s, u"/k2"_s, false},
                                                         {u"Alpha"_s, u"/a"_s, true},
                                                         {u"beta"_s, u"/b"_s, false}},
                                                        cleanReboot);
    EXPECT_EQ(namesOf(divided.going), (QStringList{u"Alpha"_s, u"beta"_s, u"kept"_s, u"zed"_s}));
    EXPECT_EQ(namesOf(divided.staying), QStringList(u"Kept"_s));
    EXPECT_TRUE(divided.going.first().hidden);
}

TEST(CleanReboot, audioSoftwareStaysWithoutBeingListed) {
    const DividedLoginItems divided = dividedLoginItems({{u"Traktor Helper"_s, u"/t"_s, false},
                                                         {u"Helper"_s, u"/Applications/Ableton Live 12.app"_s, false},
                                                         {u"Helper"_s, u"/x"_s, false}},
                                                        {});
    EXPECT_EQ(namesOf(divided.staying), (QStringList{u"Traktor Helper"_s, u"Helper"_s}));
    EXPECT_EQ(divided.going, (QList<LoginItem>{{u"Helper"_s, u"/x"_s, false}}));
}

TEST(CleanReboot, anAddedApplicationStaysByItsNameOrByItsPath) {
    CleanReboot cleanReboot;
    cleanReboot.startup = StartupConfiguration{
        {added(u"Mixer"_s, u"/Applications/Mixer.app"_s), added(u"Off"_s, u"/Applications/Off.app"_s, false)},
        false,
        {}};
    const DividedLoginItems divided = dividedLoginItems({{u"Mixer"_s, u"/elsewhere"_s, false},
                                                         {u"Renamed"_s, u"/Applications/Mixer.app"_s, false},
                                                         {u"Off"_s, u"/Applications/Off.app"_s, false}},
                                                        cleanReboot);
    EXPECT_EQ(namesOf(divided.staying), (QStringList{u"Mixer"_s, u"Renamed"_s}));
    EXPECT_EQ(namesOf(divided.going), QStringList(u"Off"_s));
}

TEST(CleanReboot, withoutLoginItemsThereIsNothingToDivide) {
    const DividedLoginItems divided = dividedLoginItems({}, {});
    EXPECT_TRUE(divided.going.isEmpty());
    EXPECT_TRUE(divided.staying.isEmpty());
}

} // namespace
} // namespace quorvane
