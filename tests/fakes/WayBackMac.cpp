#include "fakes/WayBackMac.h"

#include "flows/FlowRecord.h"
#include "flows/InterruptedOutcome.h"
namespace quorvane {

WayBackMac::WayBackMac() {
    macsim::Json description =
        macsim::macDescriptionFromFile(QStringLiteral(QUORVANE_SOURCE_DIR "/examples/macs/fresh-macbook.json"));
    description["loginItems"].push_back({{"name", "Chat"}, {"path", "/Applications/Chat.app"}, {"hidden", true}});
    description["cloud"] = {{"account", true}, {"container", true}};
    macsim::createMac(original(), description, macsim::simulatorTools().keys(), program());
    InProcessHost host(original(), program(), &march);
    SystemManager system(host.host(), notifications);
    EXPECT_TRUE(QCoro::waitFor(system.captureSystemSnapshot(u"Early"_s, SystemManager::MasterArchive::Yes)).isSaved);
    ProfileManager(host.host().files, kWayBackProfiles).saveProfile(gig());
    EXPECT_TRUE(QCoro::waitFor(system.applyProfile(gig())));
}

WayBackMac::~WayBackMac() = default;

QString WayBackMac::program() {
    return QStringLiteral(MACSIM_PROGRAM);
}

UnifiedProfile WayBackMac::gig() {
    UnifiedProfile profile = exampleProfile(u"live-set"_s);
    profile.settings.cleanReboot = true;
    profile.startup.disableNetworkAtStartup = true;
    profile.startup.items = {
        loginAppOff(u"Chat"_s),
        StartupItem::fromLaunchItem({u"Live"_s, u"/Applications/Ableton Live 11 Suite.app"_s, false})};
    return profile;
}

QString WayBackMac::copyOfMac() {
    const QString copy = folder.path() + u"/copy-%1"_s.arg(++m_copies);
    EXPECT_EQ(QProcess::execute(u"cp"_s, {u"-a"_s, original(), copy}), 0);
    return copy;
}

QString WayBackMac::faultsFile(const QByteArray& rules) {
    QFile file(folder.path() + u"/faults.json"_s);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(rules);
    return file.fileName();
}

bool WayBackMac::capture(const QString& mac, QStringList* log, const QString& faults) {
    InProcessHost host(mac, program(), nullptr, faults);
    SystemManager system(host.host(), notifications);
    const bool isSaved =
        QCoro::waitFor(system.captureSystemSnapshot(u"Late"_s, SystemManager::MasterArchive::Yes)).isSaved;
    if (log != nullptr) {
        *log = system.logMessages();
    }
    return isSaved;
}

macsim::MacPicture WayBackMac::wentBack(const QString& mac, const QString& flow) {
    InProcessHost host(mac, program());
    SystemManager system(host.host(), notifications);
    const std::optional<FlowRecord> interrupted = system.interruptedFlow();
    if (interrupted && ++m_interruptions % 2 == 0) { // "Finish" and a user's own repetition in turn
        EXPECT_TRUE(QCoro::waitFor(system.finishInterrupted(*interrupted)).succeeded);
    } else {
        const RestoreOutcome outcome =
            QCoro::waitFor(flow == u"revert"_s ? system.undoTweaks() : system.reinstateWholeSystem());
        EXPECT_TRUE(outcome.succeeded);
    }
    EXPECT_FALSE(system.interruptedFlow());
    for (const QString& place : {kWayBackSnapshot.section(u'/', 0, -2), kHomeBaselines, kCloudBaselines}) {
        removeFiles(mac, place);
    }
    return macsim::MacPicture(mac);
}

std::optional<SystemSnapshot> WayBackMac::snapshotOn(const QString& mac) {
    InProcessHost host(mac, program());
    return SnapshotManager(host.host().files, host.host().machine).load();
}

void WayBackMac::expectFilesWhole(const QString& mac) {
    InProcessHost host(mac, program());
    EXPECT_TRUE(snapshotOn(mac).has_value());
    EXPECT_EQ(namesOf(ProfileManager(host.host().files, kWayBackProfiles).listProfiles()), QStringList(gig().name));
    EXPECT_EQ(host.host().defaults.string(u"QuorvaneLastAppliedProfileName"_s), gig().name);
    for (const QString& place : {kHomeBaselines, kCloudBaselines}) {
        expectBaselinesWhole(mac, place);
    }
}

QByteArray WayBackMac::contentOn(const QString& mac, const QString& path) {
    return macsim::Mac(mac).volume(macsim::Actor::Root).read(path);
}

QStringList WayBackMac::filesOn(const QString& mac, const QString& path) {
    QStringList names = macsim::Mac(mac).volume(macsim::Actor::Root).list(path);
    static const QRegularExpression leftOver(u"\\A\\.quorvane\\.[a-z]{6}\\z"_s);
    names.removeIf([](const QString& name) { return leftOver.match(name).hasMatch(); });
    return names;
}

QString WayBackMac::original() const {
    return folder.path() + u"/Mac"_s;
}

QStringList WayBackMac::namesOf(const QList<UnifiedProfile>& profiles) {
    QStringList names;
    for (const UnifiedProfile& profile : profiles) {
        names.append(profile.name);
    }
    return names;
}

void WayBackMac::removeFiles(const QString& mac, const QString& place) {
    QDir folderOnHost(mac + place);
    const QStringList names = folderOnHost.entryList(QDir::Files | QDir::Hidden);
    for (const QString& name : names) {
        EXPECT_TRUE(folderOnHost.remove(name));
    }
}

void WayBackMac::expectBaselinesWhole(const QString& mac, const QString& place) {
    const QStringList names = filesOn(mac, place).filter(u"master-baseline"_s); // among what else is written down
    EXPECT_TRUE(names.contains(u"master-baseline-current.json"_s));
    for (const QString& name : names) {
        const QByteArray bytes = contentOn(mac, place + u'/' + name);
        try {
            const QString archive = masterBaselineArchiveName(decodeMasterBaseline(bytes));
            EXPECT_TRUE(names.contains(archive)) << name.toStdString();
            EXPECT_EQ(contentOn(mac, place + u'/' + archive), bytes) << name.toStdString();
        } catch (const MasterSystemBaselineError& error) {
            ADD_FAILURE() << name.toStdString() << ": " << error.what();
        }
    }
}

} // namespace quorvane
