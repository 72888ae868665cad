#include "simulator/MacDescription.h"

#include "ToolRun.h"
#include "simulator/BackgroundTasks.h"
#include "simulator/LaunchdState.h"
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
    EXPECT_FALSE(tasks.empty());
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

TEST_P(ExampleMacs, oneNetworkServiceIsDisabledAndNoneHasAnothersName) {
    int disabled = 0;
    QSet<QString> names;
    const Json services = mac().state().read("networkServices");
    for (const Json& service : services) {
        names.insert(text(service.at("name")));
        disabled += service.value("enabled", true) ? 0 : 1;
    }
    EXPECT_EQ(disabled, 1);
    EXPECT_EQ(static_cast<size_t>(names.size()), services.size());
}

INSTANTIATE_TEST_SUITE_P(All, ExampleMacs,
                         testing::Values("dj-laptop", "fresh-macbook", "old-macbook", "studio-desktop"));

/// What differs between Macs and decides what a tweak finds: one old Mac has a motion sensor, and it is the one whose
/// backups were never set up.
TEST_P(ExampleMacs, onlyTheOldOneHasAMotionSensorAndNoBackups) {
    const bool isOld = GetParam() == std::string_view("old-macbook");
    const Json power = mac().state().read("power");
    for (const auto& [source, settings] : power.at("sources").items()) {
        EXPECT_EQ(settings.contains("sms"), isOld) << source;
    }
    const Json timeMachine = mac().state().read("timeMachine");
    EXPECT_EQ(timeMachine.contains("destination"), !isOld);
    EXPECT_EQ(mac().volume(Actor::Root).exists(u"/Library/Preferences/com.apple.TimeMachine.plist"_s), !isOld);
}

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
