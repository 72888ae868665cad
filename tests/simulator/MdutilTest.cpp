#include "simulator/tools/Mdutil.h"

#include "ToolRun.h"

#include <QRegularExpression>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

class Mdutil : public testing::Test {
protected:
    void SetUp() override {
        setState(mac, "spotlight",
                 {{"volumes",
                   {{"/", "enabled"}, {"/System/Volumes/Data", "enabled"}, {"/Volumes/Audio Disk", "disabled"}}}});
        putFile(mac, u"/Volumes/Audio Disk/take.wav"_s, "x");
    }

    ToolRun run(const QStringList& words, Actor actor = Actor::Root) {
        return runTool(mac, runMdutil, QStringList{u"mdutil"_s} + words, actor);
    }
    void set(const char* key, const Json& value) {
        mac.mac.state().update("spotlight", [&](Json& state) { state[key] = value; });
    }
    Json volumes() const { return mac.mac.state().read("spotlight")["volumes"]; }

    SimulatedMacFolder mac;
};

/// The streams of a run whose error stream is nothing but log lines, with the times and numbers taken out.
QByteArray withoutStamps(const QByteArray& log) {
    static const QRegularExpression kStamp(
        u"^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3} mdutil\\[\\d+:\\d+\\] "_s,
        QRegularExpression::MultilineOption);
    return QString::fromUtf8(log).replace(kStamp, u"@ "_s).toUtf8();
}

} // namespace

TEST_F(Mdutil, showsTheStateOfAVolume) {
    EXPECT_EQ(run({u"-s"_s, u"/"_s}, Actor::User), (ToolRun{0, "/:\n\tIndexing enabled. \n", {}}));
    EXPECT_EQ(run({u"-s"_s, u"/Volumes/Audio Disk"_s}),
              (ToolRun{0, "/Volumes/Audio Disk:\n\tIndexing disabled.\n", {}}));
}

TEST_F(Mdutil, showsEveryState) {
    const std::pair<const char*, ToolRun> cases[] = {
        {"searchDisabled", {0, "/:\n\tIndexing and searching disabled.\n", {}}},
        {"noIndex", {0, "/:\n\tNo index.\n", {}}},
        {"readOnly", {0, "/:\n\tIndex is read-only.\n", {}}},
        {"unknown", {0, "/:\n\tError: unknown indexing state.\n", {}}},
        {"transitioning", {1, "/:\n\tError: unexpected indexing state. kMDConfigSearchLevelTransitioning\n", {}}}};
    for (const auto& [state, expected] : cases) {
        set("volumes", {{"/", state}});
        EXPECT_EQ(run({u"-s"_s, u"/"_s}), expected) << state;
    }
}

TEST_F(Mdutil, printsAPathWhereItReallyLies) {
    mac.mac.volume(Actor::User).createFolder(u"/private/tmp/x"_s);
    EXPECT_EQ(run({u"-s"_s, u"/tmp/x"_s}),
              (ToolRun{0, "/System/Volumes/Data/private/tmp/x:\n\tIndexing enabled. \n", {}}));
    EXPECT_EQ(run({u"-s"_s, u"/Volumes/Audio Disk/take.wav"_s}),
              (ToolRun{0, "/Volumes/Audio Disk/take.wav:\n\tIndexing disabled.\n", {}}));
}

TEST_F(Mdutil, aMissingPathIsNamedInQuotes) {
    EXPECT_EQ(run({u"-s"_s, u"/Volumes/x"_s}), (ToolRun{0, "Error: invalid path `/Volumes/x'.\n", {}}));
}

TEST_F(Mdutil, aServerThatIsOffSaysSoAlone) {
    set("serverDisabled", true);
    EXPECT_EQ(run({u"-s"_s, u"/"_s}), (ToolRun{0, "Spotlight server is disabled.\n", {}}));
}

TEST_F(Mdutil, rootSwitchesAllVolumes) {
    const ToolRun off = run({u"-a"_s, u"-i"_s, u"off"_s});
    EXPECT_EQ(off.status, 0);
    EXPECT_EQ(off.output, "/:\n\tIndexing disabled.\n/System/Volumes/Data:\n\tIndexing disabled.\n"
                          "/Volumes/Audio Disk:\n\tIndexing disabled.\n");
    EXPECT_EQ(withoutStamps(off.error),
              "@ mdutil disabling Spotlight: / -> kMDConfigSearchLevelFSSearchOnly\n"
              "@ mdutil disabling Spotlight: /System/Volumes/Data -> kMDConfigSearchLevelFSSearchOnly\n"
              "@ mdutil disabling Spotlight: /Volumes/Audio Disk -> kMDConfigSearchLevelFSSearchOnly\n");
    EXPECT_EQ(volumes()["/"], "disabled");
    EXPECT_EQ(run({u"-s"_s, u"/"_s}), (ToolRun{0, "/:\n\tIndexing disabled.\n", {}}));

    EXPECT_EQ(run({u"-ai"_s, u"on"_s}).output, "/:\n\tIndexing enabled. \n/System/Volumes/Data:\n\tIndexing enabled. \n"
                                               "/Volumes/Audio Disk:\n\tIndexing enabled. \n");
    EXPECT_EQ(volumes()["/Volumes/Audio Disk"], "enabled");
}

TEST_F(Mdutil, showsEachVolumeThatIsNamedAndAllOfThemOnDemand) {
    set("refusesSwitch", {"/System/Volumes/Data"});
    run({u"-a"_s, u"-i"_s, u"off"_s});
    EXPECT_EQ(run({u"-s"_s, u"/"_s, u"/System/Volumes/Data"_s}, Actor::User),
              (ToolRun{0, "/:\n\tIndexing disabled.\n/System/Volumes/Data:\n\tIndexing enabled. \n", {}}));
    const ToolRun all{0,
                      "/:\n\tIndexing disabled.\n/System/Volumes/Data:\n\tIndexing enabled. \n"
                      "/Volumes/Audio Disk:\n\tIndexing disabled.\n",
                      {}};
    EXPECT_EQ(run({u"-a"_s, u"-s"_s}, Actor::User), all);
    EXPECT_EQ(run({u"-as"_s}), all);
}

TEST_F(Mdutil, oneVolumeInTransitionGivesTheStatusOfAll) {
    set("volumes", {{"/", "transitioning"}, {"/System/Volumes/Data", "enabled"}});
    EXPECT_EQ(run({u"-s"_s, u"/"_s, u"/System/Volumes/Data"_s}),
              (ToolRun{1,
                       "/:\n\tError: unexpected indexing state. kMDConfigSearchLevelTransitioning\n"
                       "/System/Volumes/Data:\n\tIndexing enabled. \n",
                       {}}));
}

TEST_F(Mdutil, searchingIsDisabledByAnOrderOfItsOwnWhichCanBeGivenAnew) {
    for (const QString& turn : {u"first"_s, u"after it was on"_s}) {
        const ToolRun off = run({u"-d"_s, u"/Volumes/Audio Disk"_s});
        EXPECT_EQ(off.status, 0) << turn.toStdString();
        EXPECT_EQ(off.output, "/Volumes/Audio Disk:\n\tIndexing and searching disabled.\n") << turn.toStdString();
        EXPECT_EQ(withoutStamps(off.error),
                  "@ mdutil disabling Spotlight: /Volumes/Audio Disk -> kMDConfigSearchLevelOff\n");
        EXPECT_EQ(run({u"-s"_s, u"/Volumes/Audio Disk"_s}).output, off.output) << turn.toStdString();
        run({u"-a"_s, u"-i"_s, u"on"_s});
        EXPECT_EQ(volumes()["/Volumes/Audio Disk"], "enabled") << turn.toStdString();
    }
}

TEST_F(Mdutil, disablingTheIndexIsNotDisablingTheSearch) {
    set("volumes", {{"/", "enabled"}, {"/Volumes/Audio Disk", "searchDisabled"}});
    run({u"-a"_s, u"-i"_s, u"off"_s});
    EXPECT_EQ(run({u"-s"_s, u"/Volumes/Audio Disk"_s}).output, "/Volumes/Audio Disk:\n\tIndexing disabled.\n");
}

TEST_F(Mdutil, theSearchOfAllVolumesIsDisabledAtOnce) {
    EXPECT_EQ(run({u"-a"_s, u"-d"_s}).output, "/:\n\tIndexing and searching disabled.\n"
                                              "/System/Volumes/Data:\n\tIndexing and searching disabled.\n"
                                              "/Volumes/Audio Disk:\n\tIndexing and searching disabled.\n");
    EXPECT_EQ(volumes()["/"], "searchDisabled");
    EXPECT_EQ(run({u"-d"_s, u"/"_s}, Actor::User).status, 1);
}

TEST_F(Mdutil, aChangeShowsLate) {
    set("lag", 2);
    EXPECT_EQ(run({u"-i"_s, u"off"_s, u"/"_s}).output, "/:\n\tIndexing disabled.\n");
    EXPECT_EQ(run({u"-s"_s, u"/"_s}).output, "/:\n\tIndexing enabled. \n");
    EXPECT_EQ(run({u"-s"_s, u"/"_s}).output, "/:\n\tIndexing enabled. \n");
    EXPECT_EQ(run({u"-s"_s, u"/"_s}).output, "/:\n\tIndexing disabled.\n");
    EXPECT_FALSE(mac.mac.state().read("spotlight").contains("pending"));
}

TEST_F(Mdutil, aChangeThatIsTakenBackOnItsWayHasNeverShown) {
    set("lag", 2);
    run({u"-i"_s, u"off"_s, u"/"_s});
    EXPECT_EQ(run({u"-s"_s, u"/"_s}).output, "/:\n\tIndexing enabled. \n");
    run({u"-i"_s, u"on"_s, u"/"_s});
    for (int look = 0; look < 3; ++look) {
        EXPECT_EQ(run({u"-s"_s, u"/"_s}).output, "/:\n\tIndexing enabled. \n") << look;
    }
    EXPECT_FALSE(mac.mac.state().read("spotlight").contains("pending"));
}

TEST_F(Mdutil, aChangeBeforeAnotherIsThroughShowsWhatShowedBeforeBoth) {
    set("lag", 2);
    run({u"-i"_s, u"off"_s, u"/"_s});
    run({u"-d"_s, u"/"_s});
    EXPECT_EQ(run({u"-s"_s, u"/"_s}).output, "/:\n\tIndexing enabled. \n");
    EXPECT_EQ(run({u"-s"_s, u"/"_s}).output, "/:\n\tIndexing enabled. \n");
    EXPECT_EQ(run({u"-s"_s, u"/"_s}).output, "/:\n\tIndexing and searching disabled.\n");
}

TEST_F(Mdutil, aLateChangeMayShowTheTransition) {
    set("lag", 1);
    set("lagShows", "transitioning");
    run({u"-i"_s, u"off"_s, u"/"_s});
    EXPECT_EQ(run({u"-s"_s, u"/"_s}).status, 1);
    EXPECT_EQ(run({u"-s"_s, u"/"_s}), (ToolRun{0, "/:\n\tIndexing disabled.\n", {}}));
}

TEST_F(Mdutil, aVolumeCanRefuseInsideAnOtherwiseSuccessfulRun) {
    set("refusesSwitch", {"/System/Volumes/Data"});
    const ToolRun off = run({u"-a"_s, u"-i"_s, u"off"_s});
    EXPECT_EQ(off.status, 0);
    EXPECT_EQ(off.output, "/:\n\tIndexing disabled.\n"
                          "/System/Volumes/Data:\nError: unable to perform operation.  (-1)\n"
                          "Error: invalid operation.\n\tIndexing enabled. \n"
                          "/Volumes/Audio Disk:\n\tIndexing disabled.\n");
    EXPECT_EQ(volumes()["/System/Volumes/Data"], "enabled");
}

TEST_F(Mdutil, theSystemVolumeMayTakeTheDataVolumeAlong) {
    run({u"-i"_s, u"off"_s, u"/"_s});
    EXPECT_EQ(volumes()["/System/Volumes/Data"], "enabled");
    set("rootSwitchesData", true);
    run({u"-i"_s, u"off"_s, u"/"_s});
    EXPECT_EQ(volumes()["/System/Volumes/Data"], "disabled");
}

TEST_F(Mdutil, aDataVolumeThatRefusesIsNotTakenAlong) {
    set("rootSwitchesData", true);
    set("refusesSwitch", {"/System/Volumes/Data"});
    run({u"-a"_s, u"-i"_s, u"off"_s});
    EXPECT_EQ(volumes()["/"], "disabled");
    EXPECT_EQ(volumes()["/System/Volumes/Data"], "enabled");
}

TEST_F(Mdutil, aFolderIsNoVolume) {
    EXPECT_EQ(run({u"-i"_s, u"off"_s, u"/Users/alex"_s}),
              (ToolRun{0,
                       "/System/Volumes/Data/Users/alex:\nError: invalid operation.\n"
                       "\tError: unknown indexing state.\n",
                       {}}));
}

TEST_F(Mdutil, aUserSwitchesOnlyExternalVolumes) {
    const Json before = volumes();
    EXPECT_EQ(run({u"-i"_s, u"off"_s, u"/"_s}, Actor::User).status, 1);
    EXPECT_EQ(volumes(), before);
    EXPECT_EQ(run({u"-i"_s, u"on"_s, u"/Volumes/Audio Disk"_s}, Actor::User),
              (ToolRun{0, "/Volumes/Audio Disk:\n\tIndexing enabled. \n", {}}));
    EXPECT_EQ(volumes()["/Volumes/Audio Disk"], "enabled");
}

TEST_F(Mdutil, aLineThatCannotBeReadChangesNothing) {
    const Json before = volumes();
    for (const QStringList& words : {QStringList{},
                                     {u"-i"_s, u"off"_s},
                                     {u"-i"_s, u"maybe"_s, u"/"_s},
                                     {u"-s"_s},
                                     {u"/"_s},
                                     {u"-a"_s},
                                     {u"-q"_s, u"/"_s}}) {
        const ToolRun refused = run(words);
        EXPECT_EQ(refused.status, 1) << words.join(u' ').toStdString();
        EXPECT_TRUE(refused.error.contains("Usage: mdutil ")) << words.join(u' ').toStdString();
    }
    EXPECT_EQ(run({u"-E"_s, u"/"_s}).status, 70);
    EXPECT_EQ(volumes(), before);
}

} // namespace macsim
