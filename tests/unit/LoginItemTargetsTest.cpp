#include "startup/items/LoginItemTargets.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

StartupItem loginTarget(const QString& name, const QString& path) {
    return startupItemOf(LoginItem{name, path, false});
}

TEST(ProtectedLoginItem, isAudioSoftwareOrTheProgramItself) {
    const struct {
        LoginItem item;
        bool isProtected;
    } cases[] = {{{u"Quorvane"_s, u"/Applications/Quorvane.app/"_s, false}, true},
                 {{u"Renamed"_s, u"/Users/alex/Applications/quorvane.app"_s, false}, true},
                 {{u"Quorvane"_s, {}, false}, true},
                 {{u"Quorvane"_s, u"/Applications/Other.app"_s, false}, false},
                 {{u"Quorvane Notes"_s, u"/Applications/Quorvane Notes.app"_s, false}, false},
                 {{u"Ableton Live"_s, u"/Applications/Live.app"_s, false}, true},
                 {{u"Chat"_s, u"/Applications/Chat.app"_s, false}, false}};
    for (const auto& [item, isProtected] : cases) {
        EXPECT_EQ(isProtectedLoginItem(item), isProtected) << item.path.toStdString();
    }
}

TEST(LoginItemTargets, namesAloneTakeEveryItemOfTheirs) {
    const LoginItemTargets targets = QStringList{u"b"_s, u"a"_s, u"b"_s};
    EXPECT_EQ(targets.names(), (QSet<QString>{u"a"_s, u"b"_s}));
    EXPECT_TRUE(targets.takes({u"a"_s, u"/x"_s, false}));
    EXPECT_TRUE(targets.takes({u"a"_s, {}, false}));
    EXPECT_FALSE(targets.takes({u"A"_s, u"/x"_s, false}));
    EXPECT_FALSE(targets.isEmpty());
    EXPECT_TRUE(LoginItemTargets().isEmpty());
}

TEST(LoginItemTargets, aNameWithABarStaysWhereAnEarlierVersionSavedItInTwo) {
    StartupConfiguration saved;
    saved.items = {loginTarget(u"Warm-up "_s, u" intro"_s)};
    const LoginItemTargets targets = loginItemTargets(saved, {});
    EXPECT_TRUE(targets.keeps({u"Warm-up | intro"_s, u"/Music/intro.command"_s, false}));
    EXPECT_TRUE(targets.keeps({u"Warm-up | intro | long"_s, u"/Music/intro.command"_s, false}));
    EXPECT_FALSE(targets.keeps({u"Warm-up"_s, u"/Music/other.command"_s, false}));
    EXPECT_FALSE(targets.keeps({u"Warm-up | outro"_s, u"/Music/outro.command"_s, false}));
}

TEST(LoginItemTargets, anItemIsTakenByNameAndPathUnlessItIsKept) {
    LoginItemTargets targets;
    targets.keep(loginTarget(u"Other"_s, u"/kept"_s));
    targets.keep(loginTarget(u"Helper"_s, u"/kept2/"_s));
    targets.switchOff(loginTarget(u"Helper"_s, u"/off"_s));
    targets.switchOff(loginTarget(u"Helper"_s, u"/off2/"_s));
    targets.switchOff(loginTarget(u"Kept"_s, u"/kept/"_s)); // the same item under another name
    targets.switchOff(loginTarget(u"Gone"_s, {}));
    targets.keep(loginTarget(u"Gone"_s, u"/kept3"_s));
    struct Row {
        LoginItem item;
        bool isTaken;
        bool isKept;
    };
    for (const Row& row :
         {Row{{u"Helper"_s, u"/off/"_s, false}, true, false}, Row{{u"Helper"_s, u"/off2"_s, false}, true, false},
          Row{{u"Helper"_s, u"/unknown"_s, false}, false, false}, Row{{u"Helper"_s, u"/kept2"_s, false}, false, true},
          Row{{u"Helper"_s, {}, false}, false, true}, // it may be the one that is kept
          Row{{u"Kept"_s, u"/kept"_s, false}, false, true},
          Row{{u"Gone"_s, {}, false}, true, false}, // it is switched off as such
          Row{{u"Gone"_s, u"/anywhere"_s, false}, true, false}, Row{{u"Gone"_s, u"/kept3"_s, false}, false, true},
          Row{{u"helper"_s, u"/off"_s, false}, false, false}}) {
        SCOPED_TRACE((row.item.name + u" at "_s + row.item.path).toStdString());
        EXPECT_EQ(targets.takes(row.item), row.isTaken);
        EXPECT_EQ(targets.keeps(row.item), row.isKept);
    }
    EXPECT_EQ(targets.names(), (QSet<QString>{u"Helper"_s, u"Gone"_s}));
    EXPECT_EQ(targets.itemOff(u"Helper"_s), (LoginItem{u"Helper"_s, {}, false})) << "by two paths";
    EXPECT_EQ(LoginItemTargets(targets).kept().size(), 3);
}

TEST(LoginItemTargets, anIdSaysMoreThanAPath) {
    StartupItem moved = loginTarget(u"Helper"_s, u"/by-id"_s);
    moved.path = u"/by-path"_s;
    LoginItemTargets targets;
    targets.switchOff(moved);
    EXPECT_EQ(targets.itemOff(u"Helper"_s).path, u"/by-id"_s);
    targets.keep(moved);
    EXPECT_TRUE(targets.keepsPath(u"/by-id/"_s));
    EXPECT_TRUE(targets.keepsPath(u"/by-path/"_s));
    EXPECT_FALSE(targets.keepsPath({}));
}

TEST(LoginItemTargets, ofAConfigurationWhatItSwitchesOffGoesAndWhatItSaysRunsIsKept) {
    StartupItem off = loginTarget(u"Off"_s, u"/off"_s);
    off.runsAtStartup = false;
    StartupItem addedButOff = StartupItem::fromLaunchItem({u"Left"_s, u"/left"_s, false});
    addedButOff.runsAtStartup = false;
    const StartupItem added = StartupItem::fromLaunchItem({u"Added"_s, u"/added"_s, false});
    const StartupItem runs = loginTarget(u"Runs"_s, u"/runs"_s);
    const StartupItem ofService = loginTarget(u"Cloud"_s, u"/cloud"_s);
    StartupItem agent = loginTarget(u"Agent"_s, u"/agent.plist"_s);
    agent.id = launchItemId(u"agent.plist"_s);
    agent.runsAtStartup = false;
    const StartupConfiguration configuration{{off, addedButOff, added, runs, ofService, agent}, false, {}};
    const LoginItemTargets targets =
        loginItemTargets(configuration, {ofService, added, loginTarget(u"Added"_s, u"/added/"_s)});
    EXPECT_EQ(targets.names(), (QSet<QString>{u"Off"_s, u"Cloud"_s}));
    EXPECT_TRUE(targets.keepsPath(u"/added"_s));
    EXPECT_TRUE(targets.keepsPath(u"/runs"_s));
    EXPECT_FALSE(targets.keepsPath(u"/cloud"_s));
    EXPECT_FALSE(targets.keepsPath(u"/left"_s));
}

} // namespace
} // namespace quorvane
