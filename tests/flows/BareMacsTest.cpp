// A Mac on which nobody has chosen anything yet: what macOS does without a setting is what the program has to know of it.

#include "fakes/InProcessMac.h"
#include "fakes/ManualClock.h"
#include "fakes/RandomMac.h"
#include "flows/RoundTrip.h"
#include "profiles/ProfileJson.h"
#include "simulator/MacDescription.h"
#include "simulator/SettingsInForce.h"
#include "simulator/tools/Registry.h"
#include "snapshots/SnapshotManager.h"

#include <QCoroTask>
#include <QTemporaryDir>

#include <functional>

namespace quorvane {

using macsim::Json;

namespace {

using Item = ApplyVerificationResult::Item;

UnifiedProfile liveSet() {
    QFile file(QStringLiteral(QUORVANE_SOURCE_DIR "/examples/profiles/live-set.json"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return decodeProfile(file.readAll());
}

/// The program on one of these Macs, which a test may change before it is made.
class BareMac {
public:
    explicit BareMac(const QString& name, const std::function<void(Json&)>& change = {})
        : m_description(ofAlex(macsim::macDescriptionFromFile(QStringLiteral(QUORVANE_SOURCE_DIR "/examples/macs/") +
                                                              name + u".json"_s))) {
        m_description["machine"]["caseSensitiveVolume"] = true;
        if (change) {
            change(m_description);
        }
        macsim::createMac(folder(), m_description, macsim::simulatorTools().keys(), QStringLiteral(MACSIM_PROGRAM));
        m_host = std::make_unique<InProcessHost>(folder(), QStringLiteral(MACSIM_PROGRAM), &m_clock);
        system = std::make_unique<SystemManager>(m_host->host(), m_notifications);
        QObject::connect(system.get(), &SystemManager::messageLogged,
                         [this](const QString& line) { m_log.append(line); });
    }

    QString scanned(const QList<UnifiedProfile>& profiles = {}) {
        const auto match = QCoro::waitFor(system->scanCurrentSystem(profiles));
        return match ? match->name : u"none"_s;
    }
    bool capture() {
        const bool isSaved =
            QCoro::waitFor(system->captureSystemSnapshot(u"Before"_s, SystemManager::MasterArchive::No)).isSaved;
        const Host host = m_host->host();
        m_trip.snapshot = SnapshotManager(host.files, host.machine).load().value_or(SystemSnapshot());
        return isSaved;
    }
    bool apply(const UnifiedProfile& profile) { return QCoro::waitFor(system->applyProfile(profile)); }
    bool takeDefault() { return QCoro::waitFor(system->restoreDefault()).succeeded; }
    /// As "name — detail".
    QStringList failedRows() const {
        QStringList rows;
        for (const Item& item : system->lastApplyVerification()->failed) {
            rows.append(item.name + u" — "_s + item.detail.value_or(QString()));
        }
        return rows;
    }
    macsim::SettingsInForce inForce() const { return macsim::settingsInForce(m_host->mac()); }
    macsim::MacPicture picture() const { return macsim::MacPicture(folder()); }
    /// What differs, but for what the user is told of.
    QStringList differencesSince(const macsim::MacPicture& before) {
        m_trip.mac = m_description;
        m_trip.wayBack = ReturnBy::Revert;
        QStringList lines;
        for (const macsim::MacDifference& difference : picture().differencesSince(before)) {
            const auto isCovered = [&](const RoundTripException& exception) {
                return exception.covers(difference, m_trip);
            };
            const bool wasAnEmptyEntry = difference.before == u"null"; // of the description
            if (!wasAnEmptyEntry && !isQuorvanesOwn(difference) &&
                std::none_of(roundTripExceptions().begin(), roundTripExceptions().end(), isCovered)) {
                lines.append(difference.line());
            }
        }
        return lines;
    }
    std::string log() const { return m_log.join(u'\n').toStdString(); }

private:
    /// The exceptions know the files of a user of that name.
    static Json ofAlex(const Json& description) {
        const QString name = QString::fromStdString(description["machine"]["userName"].get<std::string>());
        QString text = QString::fromStdString(description.dump());
        text.replace(u"/Users/"_s + name, u"/Users/alex"_s);
        Json renamed = Json::parse(text.toStdString());
        renamed["machine"]["userName"] = "alex";
        return renamed;
    }

    QString folder() const { return m_folder.path() + u"/Mac"_s; }

    QTemporaryDir m_folder{caseFolder()};
    Json m_description;
    NotificationCenter m_notifications;
    ManualClock m_clock; ///< nobody has to wait for Spotlight
    std::unique_ptr<InProcessHost> m_host;
    QStringList m_log;
    RoundTrip m_trip;

public:
    std::unique_ptr<SystemManager> system;
};

class BareMacs : public ::testing::TestWithParam<const char*> {
protected:
    QString name() const { return QString::fromUtf8(GetParam()); }
};

} // namespace

TEST_P(BareMacs, areDefaultBeforeAnythingWasApplied) {
    BareMac mac(name());
    const macsim::MacPicture before = mac.picture();
    EXPECT_EQ(mac.scanned(), u"Default"_s) << mac.log();
    EXPECT_EQ(mac.scanned({liveSet()}), u"Default"_s) << mac.log();
    EXPECT_EQ(mac.differencesSince(before), QStringList());
}

TEST_P(BareMacs, verifyALiveSetWhollyAndObeyIt) {
    BareMac mac(name());
    ASSERT_TRUE(mac.capture());
    EXPECT_TRUE(mac.apply(liveSet()));
    EXPECT_EQ(mac.failedRows(), QStringList()) << mac.log();
    const macsim::SettingsInForce inForce = mac.inForce();
    EXPECT_FALSE(inForce.downloadsUpdates);
    EXPECT_FALSE(inForce.installsSystemUpdates);
    EXPECT_FALSE(inForce.updatesStoreApplications);
    EXPECT_FALSE(inForce.playsInterfaceSounds);
    EXPECT_FALSE(inForce.hasSiri);
    EXPECT_EQ(mac.scanned({liveSet()}), u"Live Set"_s) << mac.log();
}

TEST_P(BareMacs, comeBackByDefaultAsTheyWere) {
    BareMac mac(name());
    const macsim::MacPicture before = mac.picture();
    ASSERT_TRUE(mac.capture());
    ASSERT_TRUE(mac.apply(liveSet()));
    EXPECT_TRUE(mac.takeDefault()) << mac.log();
    EXPECT_EQ(mac.differencesSince(before), QStringList());
    EXPECT_EQ(mac.scanned({liveSet()}), u"Default"_s) << mac.log();
}

/// Without a capture: what is in force is as before, whatever keys stand there now.
TEST_P(BareMacs, comeBackInForceWhereNothingWasCaptured) {
    BareMac mac(name());
    ASSERT_TRUE(mac.apply(liveSet()));
    UnifiedProfile nothing;
    nothing.id = QUuid::createUuid();
    nothing.name = u"Nothing"_s;
    EXPECT_TRUE(mac.apply(nothing)) << mac.log();
    EXPECT_EQ(mac.failedRows(), QStringList()) << mac.log();
    const macsim::SettingsInForce inForce = mac.inForce();
    EXPECT_TRUE(inForce.downloadsUpdates && inForce.installsSystemUpdates && inForce.updatesStoreApplications);
    EXPECT_TRUE(inForce.playsInterfaceSounds);
}

INSTANTIATE_TEST_SUITE_P(Of, BareMacs,
                         ::testing::Values("bare-notebook", "bare-desktop", "bare-intel-notebook", "bare-tahoe"));

TEST(BareMacThatRefuses, namesTheVolumeOfTheFilesAndNothingElse) {
    BareMac mac(u"bare-tahoe"_s, [](Json& description) {
        description["spotlight"]["refusesSwitch"] = {"/System/Volumes/Data", "/System/Volumes/Preboot"};
    });
    ASSERT_TRUE(mac.capture());
    EXPECT_TRUE(mac.apply(liveSet()));
    EXPECT_EQ(mac.failedRows(), QStringList(u"Spotlight — still indexing your files (macOS refused)"_s)) << mac.log();
}

TEST(BareMacThatLags, isWaitedForAfterTheOrder) {
    BareMac mac(u"bare-notebook"_s, [](Json& description) {
        description["spotlight"]["lag"] = 3;
        description["spotlight"]["lagShows"] = "transitioning";
    });
    EXPECT_TRUE(mac.apply(liveSet()));
    EXPECT_EQ(mac.failedRows(), QStringList()) << mac.log();
}

TEST(ManagedMac, keepsWhatItsOrganizationHasSet) {
    BareMac mac(u"bare-desktop"_s, [](Json& description) {
        description["preferences"]["managed"]["com.apple.SoftwareUpdate"] = {
            {"AutomaticDownload", true}, {"AutomaticallyInstallMacOSUpdates", true}};
        description["preferences"]["managed"]["com.apple.commerce"] = {{"AutoUpdate", true}};
    });
    EXPECT_EQ(mac.scanned(), u"Default"_s) << mac.log();
    EXPECT_TRUE(mac.apply(liveSet()));
    EXPECT_EQ(mac.failedRows(), QStringList(u"Software Updates — set by your organization"_s)) << mac.log();
    EXPECT_TRUE(mac.inForce().downloadsUpdates);
}

} // namespace quorvane
