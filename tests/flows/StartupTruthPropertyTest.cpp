// What the program says of what starts by itself, on random Macs whose world moves: updaters put plists back, applications
// register themselves again, the user flips switches, the Mac and the program are started anew.

#include "fakes/BackgroundList.h"
#include "fakes/RandomMac.h"
#include "profiles/UnifiedProfile.h"
#include "simulator/Restart.h"
#include "simulator/StartupServices.h"
#include "simulator/Updaters.h"
#include "startup/apply/StartupVerification.h"
#include "startup/background/BackgroundItemPermission.h"
#include "startup/background/BackgroundLoginItemChangePlan.h"
#include "startup/background/BackgroundTaskList.h"

#include <QCoroTask>
#include <QUuid>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace quorvane {

namespace {

constexpr unsigned kTruthCases = 40;
constexpr int kMoves = 4;

using Service = macsim::StartupService;

const QString kInside = u"/Contents/Library/LaunchDaemons/"_s;

/// The labels of what no apply switches off.
struct RandomTruthMac {
    macsim::Json description;
    QStringList leftAlone;
};

void addRecord(macsim::Json& description, const QString& name, const char* type, const QString& label,
               const QString& path) {
    description["backgroundTasks"]["records"].push_back({{"uid", 501},
                                                         {"name", name.toStdString()},
                                                         {"type", type},
                                                         {"identifier", "16." + label.toStdString()},
                                                         {"url", path.toStdString()}});
}

void addPlist(macsim::Json& description, const QString& path, const QString& label, bool startsByItself) {
    macsim::Json plist{{"Label", label.toStdString()}, {"Program", "/x"}};
    if (startsByItself) {
        plist["RunAtLoad"] = true;
    }
    description["files"].push_back({{"path", path.toStdString()}, {"propertyList", plist}});
}

/// Daemons that applications registered from their bundles, some of which wait to be asked; what an organization manages, and
/// at times its rules.
RandomTruthMac randomTruthMac(Draw& draw) {
    RandomTruthMac mac{macWithStartupItems(macsim::Json::array(), draw), {}};
    for (int i = draw.below(4); i > 0; --i) {
        const QString label = u"com.bundled.daemon%1"_s.arg(i);
        const QString path = draw.from(kApplications) + kInside + label + u".plist"_s;
        const bool startsByItself = draw.oneIn(2);
        addPlist(mac.description, path, label, startsByItself);
        addRecord(mac.description, draw.from(kNames), "daemon", label, path);
        if (!startsByItself) {
            mac.leftAlone.append(label);
        }
    }
    for (int i = draw.below(3); i > 0; --i) {
        const QString label = u"com.it.item%1"_s.arg(i);
        const QString path = kLaunchFolders.last() + u'/' + label + u".plist"_s;
        addPlist(mac.description, path, label, true);
        addRecord(mac.description, draw.from(kNames), "managed legacy daemon", label, path);
        mac.description["launchd"]["jobs"]["system"][label.toStdString()] = {{"path", path.toStdString()},
                                                                             {"pid", nullptr}};
        mac.leftAlone.append(label);
    }
    // Where there are none, whatever is managed can't be told from the rest without the list.
    if (draw.oneIn(3) || mac.leftAlone.contains(u"com.it.item1"_s)) {
        mac.description["files"].push_back({{"path", "/Library/Managed Preferences/com.it.plist"}, {"text", "rules"}});
    }
    return mac;
}

/// From now on the list of background items comes, or never does.
void letTheListHang(const macsim::Mac& mac, bool hangs) {
    mac.state().update("sfltool", [hangs](macsim::Json& tool) { tool["hangs"] = hangs; });
}

/// Everything that is found, switched off.
StartupConfiguration allOff(const QList<StartupItem>& found) {
    StartupConfiguration configuration;
    for (StartupItem item : found) {
        item.runsAtStartup = false;
        if (!isLoginItem(item)) {
            configuration.items.append(item);
        }
    }
    return configuration;
}

UnifiedProfile randomProfile(const QList<StartupItem>& found, Draw& draw) {
    UnifiedProfile profile;
    profile.id = QUuid::createUuid();
    profile.name = u"Truth"_s;
    profile.settings.cleanReboot = draw.oneIn(3);
    if (draw.oneIn(3)) {
        profile.startup.disabledCloudSyncAtStartup = {CloudSyncService::dropbox, CloudSyncService::googleDrive};
    }
    for (StartupItem item : found) {
        if (!isLoginItem(item)) {
            item.runsAtStartup = draw.oneIn(3);
            profile.startup.items.append(item);
        }
    }
    return profile;
}

/// What others do while the program believes to know the Mac.
void moveWorld(const macsim::Mac& mac, Draw& draw) {
    const QString label = draw.from(kLabels);
    const QString plist = draw.from(kLaunchFolders) + u'/' + label + u".plist"_s;
    switch (draw.below(4)) {
    case 0:
        macsim::updaterInstalls(mac, plist,
                                "<plist version=\"1.0\"><dict><key>Label</key><string>" + label.toUtf8() +
                                    "</string><key>Program</key><string>/x</string><key>RunAtLoad</key><true/>"
                                    "</dict></plist>");
        break;
    case 1:
        macsim::applicationRegisters(mac, label);
        break;
    case 2:
        macsim::userAllows(mac, label, draw.oneIn(2));
        break;
    default:
        macsim::restart(mac);
        break;
    }
}

/// What a Mac itself tells of what starts at the next login.
class Account {
public:
    explicit Account(const macsim::Mac& mac)
        : m_services(macsim::startupServices(mac)) {}

    bool startsFile(const QString& fileName) const { return startsFile(fileName, false); }
    /// The same of what an apply doesn't leave alone, as it does a daemon that only runs on demand.
    bool startsTakenFile(const QString& fileName) const { return startsFile(fileName, true); }
    bool startsLabel(const QString& label) const {
        return std::any_of(m_services.begin(), m_services.end(), [&label](const Service& service) {
            return service.job.label == label && service.startsAtNextLogin;
        });
    }

    bool startsLabelOf(const QString& label, bool isDaemon) const {
        return std::any_of(m_services.begin(), m_services.end(), [&](const Service& service) {
            return service.job.label == label && service.startsAtNextLogin &&
                   (service.domain.kind == macsim::LaunchdDomain::Kind::System) == isDaemon;
        });
    }

private:
    bool startsFile(const QString& fileName, bool isTaken) const {
        return std::any_of(m_services.begin(), m_services.end(), [&](const Service& service) {
            const bool runsOnDemand =
                service.domain.kind == macsim::LaunchdDomain::Kind::System && !service.job.startsAtLoad;
            return service.kind == Service::Kind::LaunchPlist && service.job.path.endsWith(u'/' + fileName) &&
                   service.startsAtNextLogin && !(isTaken && runsOnDemand);
        });
    }

    std::vector<Service> m_services;
};

/// The labels whose checks bear a name that no other's bears.
QHash<QString, QString> labelsByName(const QSet<QString>& labels, const BackgroundTaskList& list) {
    QMultiHash<QString, QString> byName;
    for (const QString& label : labels) {
        const QList<BackgroundTaskItem> records = list.itemsWithLabel(label);
        byName.insert(u"Background item: "_s + (records.isEmpty() ? label : records.first().name), label);
    }
    QHash<QString, QString> unique;
    for (const QString& name : byName.uniqueKeys()) {
        if (byName.count(name) == 1) {
            unique.insert(name, byName.value(name));
        }
    }
    return unique;
}

/// A list that wasn't read is empty.
BackgroundTaskList knownList(SystemManager& system) {
    return system.backgroundTaskItems().value_or(BackgroundTaskList({}));
}

/// What was said of a configuration, held against what the Mac itself tells.
class ClaimCheck {
public:
    ClaimCheck(const StartupConfiguration& configuration, const BackgroundTaskList& list, const QStringList& leftAlone,
               const macsim::Mac& mac)
        : m_account(mac)
        , m_list(list)
        , m_leftAlone(leftAlone)
        , m_labels(labelsByName(configuration.disabledBackgroundLabels(), list)) {}

    void check(const ApplyVerificationResult& said) {
        for (const ApplyVerificationResult::Item& item : said.verified) {
            SCOPED_TRACE(item.name.toStdString());
            checkVerified(item);
        }
        for (const ApplyVerificationResult::Item& item : said.failed) {
            if (item.name.startsWith(u"Launch item: "_s)) {
                ++count;
                EXPECT_TRUE(m_account.startsFile(item.name.section(u": "_s, 1))) << item.name.toStdString();
            }
        }
    }

    int count = 0;

private:
    void checkVerified(const ApplyVerificationResult::Item& item) {
        if (item.name.startsWith(u"Launch item: "_s)) {
            ++count;
            EXPECT_FALSE(m_account.startsTakenFile(item.name.section(u": "_s, 1)));
        } else if (m_labels.contains(item.name)) {
            ++count;
            EXPECT_FALSE(m_account.startsLabel(m_labels.value(item.name))) << m_labels.value(item.name).toStdString();
        } else if (item.name.startsWith(u"Cloud sync helper: "_s)) {
            expectRecordsOff([&item](const BackgroundTaskItem& record) {
                return std::any_of(kServices.begin(), kServices.end(), [&](CloudSyncService service) {
                    return item.name.endsWith(u": "_s + displayName(service)) && matchesCloudService(record, service);
                });
            });
        }
    }

    template <typename Predicate>
    void expectRecordsOff(Predicate isMeant) {
        for (const BackgroundTaskItem& record : m_list.items()) {
            const QString label = backgroundItemLabel(record).value_or(QString());
            if (isLoginRecord(record) && isMeant(record) && !m_leftAlone.contains(label)) {
                ++count;
                EXPECT_FALSE(m_account.startsLabelOf(label, isDaemonRecord(record))) << label.toStdString();
            }
        }
    }

    static constexpr std::array kServices{CloudSyncService::dropbox, CloudSyncService::googleDrive};

    Account m_account;
    const BackgroundTaskList& m_list;
    const QStringList& m_leftAlone;
    QHash<QString, QString> m_labels;
};

/// @return the number of claims that were checked
int expectTruth(SystemManager& system, const UnifiedProfile& profile, const QStringList& leftAlone,
                const macsim::Mac& mac) {
    const QList<StartupItem> found = QCoro::waitFor(system.discoverStartupItems(SystemManager::StartupRefresh::Force));
    const BackgroundTaskList list = knownList(system);
    int count = 0;
    for (StartupConfiguration configuration : {allOff(found), profile.startup}) {
        configuration.disabledCloudSyncAtStartup = {CloudSyncService::dropbox, CloudSyncService::googleDrive};
        ClaimCheck claims(configuration, list, leftAlone, mac);
        claims.check(QCoro::waitFor(system.verifyStartupConfiguration(configuration)));
        count += claims.count;
    }
    const Account account(mac);
    for (const StartupItem& item :
         QCoro::waitFor(system.discoverStartupItems(SystemManager::StartupRefresh::UseCache))) {
        if (isLaunchItemId(item.id) && !list.isEmpty()) {
            EXPECT_EQ(item.runsAtStartup, account.startsFile(*item.launchIdentifier)) << item.id.toStdString();
        }
    }
    return count;
}

/// What a clean reboot is said to leave.
int expectTruthOfCleanReboot(SystemManager& system, const QStringList& leftAlone, const macsim::Mac& mac) {
    const ApplyVerificationResult said = QCoro::waitFor(system.verifyBackgroundLoginItems({}, StartupConfiguration()));
    if (said.verified.isEmpty()) {
        return 0;
    }
    const Account account(mac);
    int count = 0;
    for (const BackgroundTaskItem& record :
         nonPermittedBackgroundItems(knownList(system).items(), {}, StartupConfiguration())) {
        const QString label = backgroundItemLabel(record).value_or(QString());
        if (!leftAlone.contains(label)) {
            ++count;
            EXPECT_FALSE(account.startsLabelOf(label, false)) << label.toStdString();
        }
    }
    return count;
}

} // namespace

TEST(StartupTruth, whatIsSaidToBeOffDoesNotStartHoweverTheWorldMoves) {
    int checked = 0;
    int checkedOfCleanReboot = 0;
    for (unsigned seed = 1; seed <= kTruthCases; ++seed) {
        SCOPED_TRACE(seed);
        Draw draw(seed);
        const RandomTruthMac random = randomTruthMac(draw);
        ProgramOnMac program(random.description);
        const macsim::Mac& mac = program.host.mac();
        program.learnBackgroundItems();
        const UnifiedProfile profile = randomProfile(
            QCoro::waitFor(program.system.discoverStartupItems(SystemManager::StartupRefresh::Force)), draw);
        QCoro::waitFor(program.system.applyProfile(profile));
        for (int move = 0; move < kMoves && !::testing::Test::HasFailure(); ++move) {
            SCOPED_TRACE(move);
            NotificationCenter notifications;
            SystemManager fresh(program.host.host(), notifications); // as after a restart of the program
            letTheListHang(mac, draw.oneIn(3));
            if (draw.oneIn(2)) {
                learnBackgroundItems(fresh);
            }
            checked += expectTruth(fresh, profile, random.leftAlone, mac);
            if (draw.oneIn(2)) {
                QCoro::waitFor(fresh.applyProfile(profile));
                checked += expectTruth(fresh, profile, random.leftAlone, mac);
            }
            checkedOfCleanReboot += expectTruthOfCleanReboot(fresh, random.leftAlone, mac);
            for (const QString& label : random.leftAlone) {
                EXPECT_TRUE(Account(mac).startsLabel(label)) << label.toStdString();
            }
            moveWorld(mac, draw);
        }
        ASSERT_FALSE(::testing::Test::HasFailure());
    }
    EXPECT_GT(checked, 10 * static_cast<int>(kTruthCases));
    EXPECT_GT(checkedOfCleanReboot, 0);
}

} // namespace quorvane
