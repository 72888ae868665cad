#include "simulator/MacDescription.h"

#include "ToolRun.h"
#include "simulator/BackgroundTasks.h"
#include "simulator/LaunchdState.h"
#include "simulator/PreferenceStore.h"
#include "simulator/SettingsInForce.h"
#include "simulator/StartupServices.h"
#include "simulator/tools/Sfltool.h"

#include <QSet>
#include <QUrl>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

const QString kExamples = QStringLiteral(QUORVANE_SOURCE_DIR "/examples/");

QString text(const Json& json) {
    return QString::fromStdString(json.get<std::string>());
}

/// What the example Macs tell of startup must hold together, or what is tried on them proves nothing.
class ExampleMacs : public testing::TestWithParam<const char*> {
protected:
    ExampleMacs() {
        createMac(folder.path() + u"/Mac"_s,
                  macDescriptionFromFile(kExamples + u"macs/"_s + QString::fromUtf8(GetParam()) + u".json"_s), {},
                  u"/nowhere/macsim"_s);
    }
    Mac mac() const { return Mac(folder.path() + u"/Mac"_s); }

    QTemporaryDir folder;
};

/// Those on which somebody has worked.
class UsedMacs : public ExampleMacs {};

/// Those that are as they come out of their first set-up.
class BareMacs : public ExampleMacs {
protected:
    bool isNamed(std::string_view name) const { return GetParam() == name; }
};

class ExampleProfile : public ExampleMacs {};

void expectJobsOf(const Mac& mac, const LaunchdDomain& domain) {
    const ProcessTable processes(mac.state());
    const Volume disk = mac.volume(Actor::Root);
    for (const LaunchdJob& job : LaunchdState(mac).jobs(domain)) {
        const bool isLoginItem = disk.isFolder(job.path);
        const LaunchPlist loginItem{job.label, job.path, {}, true, false, false};
        const auto plist = isLoginItem ? std::optional(loginItem) : readLaunchPlist(disk, job.path);
        ASSERT_TRUE(plist) << job.path.toStdString();
        EXPECT_EQ(plist->label, job.label);
        if (job.pid > 0) {
            const auto process = processes.find(job.pid);
            ASSERT_TRUE(process) << job.label.toStdString();
            EXPECT_EQ(process->label, job.label);
            EXPECT_EQ(process->userId, domain.userId);
            EXPECT_EQ(process->keepAlive, plist->keepAlive) << job.label.toStdString();
        }
    }
}

int disabledServices(const Mac& mac) {
    int disabled = 0;
    const Json services = mac.state().read("networkServices");
    for (const Json& service : services) {
        disabled += service.value("enabled", true) ? 0 : 1;
    }
    return disabled;
}

} // namespace

TEST_P(ExampleMacs, everyLoadedJobHasItsFileAndItsProcess) {
    expectJobsOf(mac(), {LaunchdDomain::Kind::System, 0});
    expectJobsOf(mac(), {LaunchdDomain::Kind::Gui, mac().machine().userId});
}

TEST_P(ExampleMacs, everyProcessIsAloneUnderItsNumber) {
    QSet<int> pids;
    for (const Process& process : ProcessTable(mac().state()).list()) {
        EXPECT_FALSE(pids.contains(process.pid)) << process.pid;
        pids.insert(process.pid);
    }
}

TEST_P(ExampleMacs, everyBackgroundTaskHasItsParentAndEveryApplicationItsBundle) {
    const Mac made = mac();
    const std::vector<BackgroundTask> tasks = backgroundTasks(made.state());
    QSet<QString> identifiers;
    for (const BackgroundTask& task : tasks) {
        const QString identifier = QString::number(task.userId) + u' ' + task.identifier;
        EXPECT_FALSE(identifiers.contains(identifier)) << identifier.toStdString();
        identifiers.insert(identifier);
        EXPECT_TRUE(backgroundTaskTypeBits(task.type)) << task.type.toStdString();
    }
    for (const BackgroundTask& task : tasks) {
        const QString parent = QString::number(task.userId) + u' ' + task.parent;
        EXPECT_TRUE(task.parent.isEmpty() || identifiers.contains(parent)) << parent.toStdString();
        const bool isUrl = task.url.startsWith(u"file://"_s);
        const QString path = isUrl ? QUrl(task.url).path() : task.url;
        EXPECT_TRUE(!path.startsWith(u'/') || made.volume(Actor::User).exists(path)) << path.toStdString();
    }
}

TEST_P(ExampleMacs, everyLoginItemIsThere) {
    const Json items = mac().state().read("loginItems");
    for (const Json& item : items) {
        EXPECT_TRUE(mac().volume(Actor::User).exists(text(item.at("path")))) << item.dump();
    }
}

TEST_P(ExampleMacs, noNetworkServiceHasAnothersName) {
    QSet<QString> names;
    const Json services = mac().state().read("networkServices");
    for (const Json& service : services) {
        names.insert(text(service.at("name")));
    }
    EXPECT_EQ(static_cast<size_t>(names.size()), services.size());
}

/// What System Settings never writes would stand there only if a program had been at work before.
TEST_P(ExampleMacs, onlyWhatSystemSettingsWritesIsThere) {
    const Mac made = mac();
    const PreferenceStore user(made, made.volume(Actor::User));
    for (const QString& domain : {u"com.apple.SoftwareUpdate"_s, u"com.apple.commerce"_s, u"com.apple.systemsound"_s,
                                  u"com.apple.CrashReporter"_s, u"com.apple.NetworkBrowser"_s}) {
        EXPECT_FALSE(user.readDomain({domain})) << domain.toStdString();
    }
    EXPECT_FALSE(user.read({kGlobalDomain.toString()}, u"NSAppSleepDisabled"_s));
    EXPECT_FALSE(user.read({u"com.apple.Siri"_s}, u"Status"_s));
    EXPECT_FALSE(user.read({u"com.apple.loginwindow"_s}, u"LoginwindowLaunchesRelaunchApps"_s));
    EXPECT_FALSE(user.readDomain({u"com.apple.notificationcenterui"_s, PreferenceHost::Current}));
    const bool isTahoe = made.machine().systemVersion.startsWith(u"26."_s);
    const QString updates = u"/Library/Preferences/com.apple.SoftwareUpdate"_s;
    EXPECT_FALSE(isTahoe &&
                 PreferenceStore(made, made.volume(Actor::Root)).read({updates}, u"AutomaticCheckEnabled"_s));
}

INSTANTIATE_TEST_SUITE_P(All, ExampleMacs,
                         testing::Values("dj-laptop", "fresh-macbook", "old-macbook", "studio-desktop", "bare-notebook",
                                         "bare-desktop", "bare-intel-notebook", "bare-tahoe"));

TEST_P(UsedMacs, oneNetworkServiceIsDisabled) {
    EXPECT_EQ(disabledServices(mac()), 1);
}

TEST_P(UsedMacs, onlyTheLaptopsUserHasSwitchedOffUpdatesAndSounds) {
    const bool isLaptop = GetParam() == std::string_view("dj-laptop");
    const SettingsInForce settings = settingsInForce(mac());
    EXPECT_EQ(settings.downloadsUpdates, !isLaptop);
    EXPECT_EQ(settings.updatesStoreApplications, !isLaptop);
    EXPECT_EQ(settings.playsInterfaceSounds, !isLaptop);
    EXPECT_EQ(settings.hasSiri, !isLaptop);
    EXPECT_TRUE(settings.installsSystemUpdates);
}

TEST_P(UsedMacs, somethingIsAmongTheBackgroundTasks) {
    EXPECT_FALSE(backgroundTasks(mac().state()).empty());
}

/// What differs between Macs and decides what a tweak finds: one old Mac has a motion sensor, and it is the one whose
/// backups were never set up.
TEST_P(UsedMacs, onlyTheOldOneHasAMotionSensorAndNoBackups) {
    const bool isOld = GetParam() == std::string_view("old-macbook");
    const Json power = mac().state().read("power");
    for (const auto& [source, settings] : power.at("sources").items()) {
        EXPECT_EQ(settings.contains("sms"), isOld) << source;
    }
    const Json timeMachine = mac().state().read("timeMachine");
    EXPECT_EQ(timeMachine.contains("destination"), !isOld);
    EXPECT_EQ(mac().volume(Actor::Root).exists(u"/Library/Preferences/com.apple.TimeMachine.plist"_s), !isOld);
}

INSTANTIATE_TEST_SUITE_P(All, UsedMacs, testing::Values("dj-laptop", "fresh-macbook", "old-macbook", "studio-desktop"));

/// Keys that a tweak writes, and that macOS has a value for without them.
TEST_P(BareMacs, nothingThatATweakWritesIsThere) {
    const Mac made = mac();
    const PreferenceStore user(made, made.volume(Actor::User));
    const PreferenceStore system(made, made.volume(Actor::Root));
    for (const QString& domain :
         {u"com.apple.SoftwareUpdate"_s, u"com.apple.commerce"_s, u"com.apple.systemsound"_s,
          u"com.apple.CrashReporter"_s, u"com.apple.NetworkBrowser"_s, u"com.apple.Siri"_s,
          u"com.apple.assistant.support"_s, u"com.ableton.live"_s, u"com.apple.loginwindow"_s}) {
        EXPECT_FALSE(user.readDomain({domain})) << domain.toStdString();
    }
    for (const QString& key :
         {u"NSAppSleepDisabled"_s, u"com.apple.sound.uiaudio.enabled"_s, u"NSQuitAlwaysKeepsWindows"_s}) {
        EXPECT_FALSE(user.read({kGlobalDomain.toString()}, key)) << key.toStdString();
    }
    EXPECT_EQ(user.domains(PreferenceHost::Current), QStringList());
    const QString updates = u"/Library/Preferences/com.apple.SoftwareUpdate"_s;
    for (const QString& key :
         {u"AutomaticDownload"_s, u"AutomaticallyInstallMacOSUpdates"_s, u"AutomaticCheckEnabled"_s}) {
        EXPECT_FALSE(system.read({updates}, key)) << key.toStdString();
    }
    EXPECT_FALSE(system.readDomain({u"/Library/Preferences/com.apple.commerce"_s}));
    EXPECT_FALSE(made.volume(Actor::Root).exists(u"/Library/Preferences/com.apple.TimeMachine.plist"_s));
}

TEST_P(BareMacs, theyDoWhatMacosDoesByItself) {
    const SettingsInForce settings = settingsInForce(mac());
    EXPECT_TRUE(settings.downloadsUpdates && settings.installsSystemUpdates && settings.updatesStoreApplications);
    EXPECT_TRUE(settings.playsInterfaceSounds);
    EXPECT_FALSE(settings.hasSiri);
    const Json volumes = mac().state().read("spotlight").at("volumes");
    EXPECT_EQ(volumes.at("/"), "enabled");
    EXPECT_EQ(volumes.at("/System/Volumes/Data"), "enabled");
    EXPECT_EQ(disabledServices(mac()), 0);
}

TEST_P(BareMacs, nothingStartsThatTheSystemDoesNotBring) {
    EXPECT_TRUE(startupServices(mac()).empty());
    EXPECT_TRUE(backgroundTasks(mac().state()).empty());
    EXPECT_EQ(mac().volume(Actor::User).list(u"/Applications"_s), QStringList());
}

TEST_P(BareMacs, aNotebookHasTwoSourcesADesktopOneAndEachOneWhatKeepsItAwake) {
    const Json sources = mac().state().read("power").at("sources");
    EXPECT_EQ(sources.contains("Battery Power"), !isNamed("bare-desktop"));
    EXPECT_EQ(sources.size(), isNamed("bare-desktop") ? 1U : 2U);
    for (const auto& [source, settings] : sources.items()) {
        for (const char* key : {"standby", "disksleep", "sleep"}) {
            EXPECT_TRUE(settings.contains(key)) << source << ": " << key;
        }
        EXPECT_NE(settings.at("disksleep"), 0) << source;
        EXPECT_FALSE(settings.contains("sms")) << source;
        EXPECT_EQ(settings.contains("standbydelaylow"), isNamed("bare-intel-notebook")) << source;
    }
}

TEST_P(BareMacs, oneHasTheNewestSystemAndKeepsApplesOverrides) {
    EXPECT_EQ(mac().machine().systemVersion.startsWith(u"26."_s), isNamed("bare-tahoe"));
    const Mac made = mac();
    EXPECT_EQ(LaunchdState(made).keepsAppleOverrides(), isNamed("bare-tahoe"));
}

INSTANTIATE_TEST_SUITE_P(All, BareMacs,
                         testing::Values("bare-notebook", "bare-desktop", "bare-intel-notebook", "bare-tahoe"));

TEST_P(ExampleProfile, theFestivalSpeaksOfWhatIsOnTheLaptop) {
    QFile file(kExamples + u"profiles/festival.json"_s);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const Json profile = Json::parse(file.readAll().toStdString());
    QSet<QString> known;
    const Mac made = mac();
    const Volume volume = made.volume(Actor::User);
    const Json loginItems = made.state().read("loginItems");
    for (const Json& item : loginItems) {
        // As the program reads the line of an item: a bar in a name shifts what stands behind it.
        const QString line = text(item.at("name")) + u'|' + text(item.at("path"));
        known.insert(u"login:"_s + line.section(u'|', 1, 1).trimmed());
    }
    for (const QString& launchFolder :
         {u"/Users/mika/Library/LaunchAgents"_s, u"/Library/LaunchAgents"_s, u"/Library/LaunchDaemons"_s}) {
        const QStringList names = volume.list(launchFolder);
        for (const QString& name : names) {
            known.insert(u"launch:"_s + name);
        }
    }
    for (const BackgroundTask& task : backgroundTasks(made.state())) {
        known.insert(u"btm:"_s +
                     (task.bundleIdentifier.isEmpty() ? task.identifier.section(u'.', 1) : task.bundleIdentifier));
    }
    for (const QString& name : volume.list(u"/Applications"_s)) {
        known.insert(u"added:/Applications/"_s + name);
    }
    const Json& items = profile.at("startup").at("items");
    EXPECT_GT(items.size(), 10U);
    for (const Json& item : items) {
        EXPECT_TRUE(known.contains(text(item.at("id")))) << item.at("id");
    }
}

INSTANTIATE_TEST_SUITE_P(Laptop, ExampleProfile, testing::Values("dj-laptop"));

} // namespace macsim
