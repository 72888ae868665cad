// The program dies at every point at which it can die while it applies a profile: at each command, and at each step of each change
// of its own files. The next run then either finishes what was begun, and the Mac is as if nothing had happened, or goes back,
// and the Mac is as it was before.

#include "fakes/Victim.h"
#include "fakes/WayBackMac.h"
#include "flows/FlowRecord.h"
#include "flows/InterruptedOutcome.h"
#include "simulator/Restart.h"

namespace quorvane {

namespace {

/// A Mac on which "Gig" was applied, and on which "Club" is now: other tweaks, other applications, and each kind of what starts by
/// itself.
class KilledApply : public ::testing::Test {
protected:
    KilledApply() {
        macsim::Json description =
            macsim::macDescriptionFromFile(QStringLiteral(QUORVANE_SOURCE_DIR "/examples/macs/fresh-macbook.json"));
        description["loginItems"] = {{{"name", "Chat"}, {"path", "/Applications/Chat.app"}, {"hidden", true}},
                                     {{"name", "Notes"}, {"path", "/Applications/Notes.app"}, {"hidden", false}}};
        addJob(description, "/Users/alex/Library/LaunchAgents/", "gui/501", "com.example.own");
        addJob(description, "/Library/LaunchAgents/", "gui/501", "com.example.agent");
        addJob(description, "/Library/LaunchDaemons/", "system", "com.example.daemon");
        macsim::createMac(original(), description, macsim::simulatorTools().keys(), QStringLiteral(MACSIM_PROGRAM));
        macsim::restart(macsim::Mac(original())); // with the processes of its jobs
        InProcessHost host(original(), QStringLiteral(MACSIM_PROGRAM), &clock);
        SystemManager system(host.host(), notifications);
        EXPECT_TRUE(QCoro::waitFor(system.captureSystemSnapshot(u"Early"_s, SystemManager::MasterArchive::No)).isSaved);
        for (const UnifiedProfile& profile : {gig(), club()}) {
            ProfileManager(host.host().files, kWayBackProfiles).saveProfile(profile);
        }
        EXPECT_TRUE(QCoro::waitFor(system.applyProfile(gig())));
    }

    static void addJob(macsim::Json& description, const std::string& folder, const std::string& domain,
                       const std::string& label) {
        const std::string path = folder + label + ".plist";
        description["files"].push_back({{"path", path},
                                        {"propertyList",
                                         {{"Label", label},
                                          {"ProgramArguments", {"/usr/local/bin/" + label}},
                                          {"RunAtLoad", true},
                                          {"KeepAlive", true}}}});
        description["launchd"]["jobs"][domain][label] = {{"path", path}, {"pid", 900 + description["files"].size()}};
    }

    static UnifiedProfile gig() {
        UnifiedProfile profile = exampleProfile(u"live-set"_s);
        profile.settings = {};
        profile.settings.appNap = true;
        profile.settings.notifications = true;
        profile.settings.usbPower = true;
        profile.startup.items = {loginAppOff(u"Chat"_s)};
        return profile;
    }
    static UnifiedProfile club() {
        UnifiedProfile profile = gig();
        profile.id = QUuid::createUuidV5(profile.id, u"club"_s);
        profile.name = u"Club"_s;
        profile.settings = {};
        profile.settings.appNap = true;
        profile.settings.siri = true;
        profile.settings.spotlight = true;
        profile.settings.timeMachine = true;
        profile.startup.items = {
            loginAppOff(u"Notes"_s), launchAgentOff(u"com.example.own.plist"_s),
            launchAgentOff(u"com.example.agent.plist"_s), launchAgentOff(u"com.example.daemon.plist"_s),
            StartupItem::fromLaunchItem({u"Live"_s, u"/Applications/Ableton Live 11 Suite.app"_s, true})};
        return profile;
    }

    QString original() const { return folder.path() + u"/Mac"_s; }
    QString copyOf(const QString& mac) {
        const QString copy = folder.path() + u"/copy-%1"_s.arg(++copies);
        EXPECT_EQ(QProcess::execute(u"cp"_s, {u"-a"_s, mac, copy}), 0);
        return copy;
    }

    enum class Next { Finish, GoBack };
    /// What the next run makes of a Mac on which one has died.
    /// @return false where it finds no flow that was cut off: none had begun, or it had ended
    bool takeUp(const QString& mac, Next next) {
        InProcessHost host(mac, QStringLiteral(MACSIM_PROGRAM), &clock);
        SystemManager system(host.host(), notifications);
        const std::optional<FlowRecord> interrupted = system.interruptedFlow();
        if (interrupted) {
            const InterruptedOutcome outcome =
                QCoro::waitFor(next == Next::Finish ? system.finishInterrupted(*interrupted)
                                                    : system.goBackFromInterrupted(*interrupted));
            EXPECT_TRUE(outcome.succeeded) << system.logMessages().join(u'\n').toStdString();
            EXPECT_FALSE(system.interruptedFlow()) << "nothing is left to be asked about";
        } else if (next == Next::Finish) {
            EXPECT_TRUE(QCoro::waitFor(system.applyProfile(club())));
        }
        return interrupted.has_value();
    }
    void apply(const QString& mac) {
        InProcessHost host(mac, QStringLiteral(MACSIM_PROGRAM), &clock);
        SystemManager system(host.host(), notifications);
        EXPECT_TRUE(QCoro::waitFor(system.applyProfile(club())));
    }

    /// What differs between two Macs, but for what the program keeps for itself, and for what macOS lets nobody bring back.
    QStringList differences(const QString& before, const QString& after) {
        QStringList lines;
        for (const macsim::MacDifference& difference :
             macsim::MacPicture(after).differencesSince(macsim::MacPicture(before))) {
            if (!isNote(difference)) {
                lines.append(difference.line());
            }
        }
        return lines;
    }

    static bool isNote(const macsim::MacDifference& difference) {
        static const QRegularExpression programsOwn(
            u"\\A(/Users/alex/\\.quorvane|/Users/alex/Library/Application Support/Quorvane|"
            "/Library/Application Support/Quorvane|/Users/alex/\\.quorvane_backup|"
            "/Users/alex/Library/Preferences/com\\.quorvane\\.app\\.plist Quorvane\\w+)(\\Z|/)"_s);
        static const QRegularExpression runAnew(
            u"\\Astate (launchd/jobs/.*/(pid|lastExitStatus)|processes .*/\\w+)\\Z"_s);
        static const QRegularExpression noted(u"\\Astate launchd/disabled/[^/]+(/com\\.|\\Z)"_s);
        static const QRegularExpression emptyFile(u"\\A/Users/alex/Library/Preferences/(ByHost/)?[^ ]+\\.plist\\Z"_s);
        static const QRegularExpression notedOfItem(u"\\Astate backgroundTasks \"2\\."_s);
        const QString& key = difference.key;
        return (notedOfItem.match(key).hasMatch() && !difference.before) || programsOwn.match(key).hasMatch() ||
               (runAnew.match(key).hasMatch() && difference.before && difference.after) ||
               (noted.match(key).hasMatch() && difference.after != u"true" && difference.before != u"true") ||
               (emptyFile.match(key).hasMatch() && !difference.before);
    }

    QTemporaryDir folder;
    NotificationCenter notifications;
    ManualClock clock;
    int copies = 0;
};

} // namespace

// One kill, and both answers to it.
TEST_F(KilledApply, atAnyPointIsFinishedOrTakenBack) {
    const QString undisturbed = copyOf(original());
    apply(undisturbed);
    ASSERT_NE(differences(original(), undisturbed), QStringList());
    const Victim victim(folder.path());
    int kills = 0;
    int ended = 0;
    victim.killAtEveryPoint(
        u"apply"_s, [&] { return copyOf(original()); },
        [&](const QString& mac) {
            ++kills;
            const QString other = copyOf(mac);
            takeUp(mac, Next::Finish);
            EXPECT_EQ(differences(undisturbed, mac).join(u'\n').toStdString(), "") << "finished";
            const bool hasGoneBack = takeUp(other, Next::GoBack);
            const bool hadEnded = !hasGoneBack && differences(undisturbed, other).isEmpty();
            const QStringList left = hadEnded ? QStringList() : differences(original(), other);
            EXPECT_EQ(left.join(u'\n').toStdString(), "") << "gone back";
            ended += hadEnded ? 1 : 0;
            QDir(mac).removeRecursively();
            QDir(other).removeRecursively();
        });
    EXPECT_GT(kills, 100);
    EXPECT_LT(ended, 5) << "only behind its last change";
}

} // namespace quorvane
