// Capture, apply, and back again: random Macs and random profiles, and afterwards the whole Mac is what it was, but for
// the exceptions that docs/WAY-BACK.md tells the user of. The tools run in this process, so that a trip takes
// milliseconds.

#include "fakes/InProcessMac.h"
#include "fakes/ManualClock.h"
#include "fakes/RandomMac.h"
#include "fakes/SimulatedSystem.h"
#include "flows/FlowRecord.h"
#include "flows/InterruptedOutcome.h"
#include "flows/RoundTrip.h"
#include "flows/RoundTripMac.h"
#include "simulator/Permissions.h"
#include "simulator/Restart.h"
#include "snapshots/RestoreBaseline.h"
#include "snapshots/SnapshotManager.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>

#include <map>

namespace quorvane {

namespace {

using macsim::Json;
using macsim::MacDifference;

constexpr quint64 kTrips = 1000;
constexpr quint64 kTripsOfTest = 100; ///< so many tests that they run beside each other

/// A Mac at one moment.
struct Sight {
    macsim::MacPicture picture;
    Json loginItems;
    Json networkServices;

    Sight(const QString& macFolder, const macsim::Mac& mac)
        : picture(macFolder)
        , loginItems(mac.state().read("loginItems"))
        , networkServices(mac.state().read("networkServices")) {}

    /// Whether each network service is on, by its key.
    QMap<QString, QString> services() const {
        QMap<QString, QString> services;
        for (const Json& service : networkServices) {
            const QString name = QString::fromStdString(service["name"].get<std::string>());
            services[kService + name] = service["enabled"].get<bool>() ? u"on"_s : u"off"_s;
        }
        return services;
    }

    /// By what stands at a login item's key: its name, and whether it opens hidden.
    QMap<QString, QString> items() const {
        QMap<QString, QString> items;
        for (const Json& item : loginItems) {
            items[loginItemKey(item)] = QString::fromStdString(item["name"].get<std::string>()) +
                                        (item.value("hidden", false) ? u" (hidden)"_s : QString());
        }
        return items;
    }
    /// The keys that the other sight has, too, in their order.
    QString orderOfShared(const Sight& other) const {
        const QMap<QString, QString> shared = other.items();
        QStringList keys;
        for (const Json& item : loginItems) {
            if (shared.contains(loginItemKey(item))) {
                keys.append(loginItemKey(item));
            }
        }
        return keys.join(u", "_s);
    }
};

void appendDifferences(QList<MacDifference>& all, const QMap<QString, QString>& old,
                       const QMap<QString, QString>& now) {
    const auto valueIn = [](const QMap<QString, QString>& values, const QString& key) {
        return values.contains(key) ? std::optional(values[key]) : std::nullopt;
    };
    QStringList keys = old.keys() + now.keys();
    keys.removeDuplicates();
    for (const QString& key : keys) {
        if (valueIn(old, key) != valueIn(now, key)) {
            all.append({key, valueIn(old, key), valueIn(now, key)});
        }
    }
}

/// Login items are compared by their files and in their order, network services by their names; everything else as in the
/// pictures.
QList<MacDifference> differences(const Sight& before, const Sight& after) {
    QList<MacDifference> all = after.picture.differencesSince(before.picture);
    all.removeIf([](const MacDifference& difference) {
        return difference.key.startsWith(u"state loginItems"_s) ||
               difference.key.startsWith(u"state networkServices"_s);
    });
    appendDifferences(all, before.items(), after.items());
    appendDifferences(all, before.services(), after.services());
    const QString oldOrder = before.orderOfShared(after);
    const QString newOrder = after.orderOfShared(before);
    if (oldOrder != newOrder) {
        all.append({kLoginItemOrder, oldOrder, newOrder});
    }
    return all;
}

/// What differs from the Mac as it was, where the world hasn't changed it since; and from the world's change where it has.
QList<MacDifference> differencesBesides(const QList<MacDifference>& world, const QList<MacDifference>& found) {
    QHash<QString, MacDifference> left;
    for (const MacDifference& difference : found) {
        left.insert(difference.key, difference);
    }
    for (const MacDifference& change : world) {
        const std::optional<QString> now = left.contains(change.key) ? left[change.key].after : change.before;
        left.insert(change.key, {change.key, change.after, now});
    }
    QList<MacDifference> all = left.values();
    all.removeIf([](const MacDifference& difference) { return difference.before == difference.after; });
    return all;
}

/// After a restart processes are numbered in turn: where one more or less starts before it, a process gets another number.
bool isNumberOfProcess(const MacDifference& difference) {
    return difference.key.endsWith(u"/pid"_s) && difference.before && difference.after &&
           difference.before != u"null" && difference.after != u"null";
}

/// How often each exception has been seen, by its name.
using Sightings = std::map<QString, int>;

/// The program on a random Mac, through one round trip.
class Traveller {
public:
    explicit Traveller(quint64 seed)
        : m_draw(seed) {
        m_trip.mac = randomRoundTripMac(m_draw);
        macsim::createMac(macFolder(), m_trip.mac, macsim::simulatorTools().keys(), program());
        m_restarts = m_draw.oneIn(6);
        if (m_restarts) {
            EXPECT_EQ(QProcess::execute(u"cp"_s, {u"-a"_s, macFolder(), twinFolder()}), 0);
        }
        start();
    }

    void travel() {
        Sight before = look();
        capture();
        const bool worldIsFirst = m_draw.oneIn(2);
        QList<MacDifference> world;
        if (worldIsFirst) {
            world = changed();
        }
        for (int times = m_draw.oneIn(2) ? 2 : 1; times > 0; --times) {
            start();
            const UnifiedProfile profile = saved(randomRoundTripProfile(m_trip.mac, m_draw));
            m_draw.oneIn(4) ? applyAndDie(profile) : apply(profile);
            if (m_restarts) {
                before = restarted();
            }
        }
        saved(randomRoundTripProfile(m_trip.mac, m_draw)); // one that isn't applied
        if (!worldIsFirst) {
            world = changed();
        }
        const Sight atReturn = look();
        const qsizetype applied = differencesBesides(world, differences(before, atReturn)).size();
        goBack();
        const Sight after = look();
        m_differences = differencesBesides(world, differences(before, after));
        m_cameBack = applied - m_differences.size();
        if (m_trip.wayBack == ReturnBy::Revert) {
            leaveStartupAsItWas(differences(atReturn, after));
        }
        m_differences.removeIf(isQuorvanesOwn);
        if (m_restarts) {
            m_differences.removeIf([this](const MacDifference& difference) {
                return isNumberOfProcess(difference) || isLeftToTheNextStart(difference, m_trip);
            });
        }
        leaveOutJobsWithoutPlist();
    }

    const RoundTrip& trip() const { return m_trip; }
    const QList<MacDifference>& found() const { return m_differences; }
    /// By how many the differences became fewer on the way back.
    qsizetype cameBack() const { return m_cameBack; }
    std::string log() const { return m_log.join(u'\n').toStdString(); }

private:
    static QString program() { return QStringLiteral(MACSIM_PROGRAM); }
    QString macFolder() const { return m_folder.path() + u"/Mac"_s; }
    QString twinFolder() const { return m_folder.path() + u"/Twin"_s; }
    Sight look() const { return {macFolder(), m_host->mac()}; }

    /// Starts the program anew, now and then.
    void start() {
        if (m_system && m_draw.oneIn(2)) {
            return;
        }
        m_system.reset();
        m_host = std::make_unique<InProcessHost>(macFolder(), program(), &m_clock);
        m_system = std::make_unique<SystemManager>(m_host->host(), m_notifications);
        QObject::connect(m_system.get(), &SystemManager::messageLogged,
                         [this](const QString& line) { m_log.append(line); });
    }

    /// What the world has changed.
    QList<MacDifference> changed() {
        const Sight before = look();
        if (m_draw.oneIn(2)) {
            changeWorld(m_host->mac(), m_draw);
            notePermissions();
        }
        return differences(before, look());
    }
    /// Those of the capture and of the way back count.
    void notePermissions() {
        const macsim::StateStore& state = m_host->mac().state();
        m_trip.mayAskSystemEvents =
            m_trip.mayAskSystemEvents && macsim::automationDecision(state, u"System Events"_s) == true;
        m_trip.mayChangeBackups = m_trip.mayChangeBackups && macsim::hasFullDiskAccess(state);
    }

    /// An undo leaves what runs at login as it finds it, but for the applications that go from the login items.
    void leaveStartupAsItWas(const QList<MacDifference>& sinceReturn) {
        m_differences.removeIf(isOfStartup);
        for (const MacDifference& difference : sinceReturn) {
            const bool isApplication = !difference.after && m_goingAtReturn.contains(difference.key);
            const bool isNote = difference.key.startsWith(u"state backgroundTasks"_s); // of the same
            if (isOfStartup(difference) && !isApplication && !isNote && difference.key != kLoginItemOrder) {
                m_differences.append(difference);
            }
        }
    }

    /// A job runs on when the world takes its application away; once stopped, nothing starts it again.
    void leaveOutJobsWithoutPlist() {
        static const QRegularExpression form(u"\\A(state launchd/jobs/.*/)path\\z"_s);
        const QList<MacDifference> differences = m_differences;
        for (const MacDifference& difference : differences) {
            const QRegularExpressionMatch match = form.match(difference.key);
            if (!match.hasMatch() || difference.after ||
                m_host->mac().volume(macsim::Actor::Root).exists(difference.before->mid(1).chopped(1))) {
                continue;
            }
            const QString job = match.captured(1);
            m_differences.removeIf([&job](const MacDifference& each) { return each.key.startsWith(job); });
        }
    }

    /// The program dies at one of its commands, and the next run asks what is to become of it.
    void applyAndDie(const UnifiedProfile& profile) {
        m_trip.applied.append(profile);
        m_system.reset();
        QFile faults(m_folder.path() + u"/faults.json"_s);
        ASSERT_TRUE(faults.open(QIODevice::WriteOnly | QIODevice::Truncate));
        faults.write(R"([{"adapter": "commands", "kill": true, "run": )" + QByteArray::number(m_draw.below(150) + 1) +
                     "}]");
        faults.close();
        QProcess victim;
        victim.setStandardOutputFile(QProcess::nullDevice());
        victim.start(QStringLiteral(WAY_BACK_PROGRAM), {macFolder(), faults.fileName(), u"apply"_s, profile.name});
        ASSERT_TRUE(victim.waitForFinished(240000));
        start();
        const std::optional<FlowRecord> interrupted = m_system->interruptedFlow();
        if (!interrupted) {
            return;
        }
        switch (m_draw.below(3)) {
        case 0:
            QCoro::waitFor(m_system->finishInterrupted(*interrupted));
            break;
        case 1:
            EXPECT_TRUE(QCoro::waitFor(m_system->goBackFromInterrupted(*interrupted)).succeeded) << log();
            break;
        default:
            m_system->forgetInterrupted();
        }
    }

    /// What a restart does to the Mac, it does to one as well that the program has never seen.
    Sight restarted() {
        macsim::restart(m_host->mac());
        const macsim::Mac twin(twinFolder());
        macsim::restart(twin);
        start();
        return {twinFolder(), twin};
    }

    UnifiedProfile saved(const UnifiedProfile& profile) {
        ProfileManager(m_host->host().files, u"/Users/alex/Library/Application Support/Quorvane/UnifiedProfiles"_s)
            .saveProfile(profile);
        return profile;
    }

    void capture() {
        notePermissions();
        const auto archive = m_draw.oneIn(3) ? SystemManager::MasterArchive::Yes : SystemManager::MasterArchive::No;
        ASSERT_TRUE(QCoro::waitFor(m_system->captureSystemSnapshot(u"Before"_s, archive)).isSaved);
        const Host host = m_host->host();
        m_trip.snapshot = SnapshotManager(host.files, host.machine).load().value();
        m_trip.isOneWay = m_draw.oneIn(3);
    }

    void apply(const UnifiedProfile& profile) {
        m_trip.applied.append(profile);
        m_host->setAuthorization(m_draw.oneIn(6) ? macsim::Authorization::Cancel : macsim::Authorization::Allow);
        if (m_trip.isOneWay) {
            QCoro::waitFor(m_system->applyPerformanceTweaks(profile.settings, cleanRebootOf(profile)));
        } else {
            QCoro::waitFor(m_system->applyProfile(profile));
        }
        m_host->setAuthorization(macsim::Authorization::Allow);
    }

    void goBack() {
        start();
        m_trip.wayBack = m_draw.oneIn(2) ? ReturnBy::Revert : ReturnBy::Reinstate;
        const std::optional<RestoreBaseline> baseline = RestoreBaseline{m_trip.snapshot};
        const QSet<QString> going =
            startupAppsThatGo(m_system->managedStartupAppPaths(), m_system->profileStartupAppPaths(), baseline);
        const QStringList items = look().items().keys();
        for (const QString& key : items) {
            if (going.contains(comparablePath(key.mid(kLoginItem.size())))) {
                m_goingAtReturn.insert(key);
            }
        }
        const RestoreOutcome outcome = QCoro::waitFor(way());
        QStringList missing = outcome.missing;
        missing.removeIf([this](const QString& name) { return isExplained(name); });
        EXPECT_EQ(missing, QStringList());
        EXPECT_EQ(outcome.succeeded, outcome.missing.isEmpty());
    }
    /// What the read-back may miss because the program couldn't ask or be told, and what System Events can't be told of.
    bool isExplained(const QString& name) const {
        if (name == u"Time Machine") {
            return !m_trip.mayChangeBackups;
        }
        return name == u"login items" ? !m_trip.mayAskSystemEvents
                                      : name.startsWith(u"login item ") && name.contains(u'|');
    }
    QCoro::Task<RestoreOutcome> way() {
        if (m_trip.wayBack == ReturnBy::Reinstate) {
            return m_system->reinstateWholeSystem();
        }
        return m_draw.oneIn(2) ? m_system->undoTweaks() : m_system->restoreDefault();
    }

    Draw m_draw;
    QTemporaryDir m_folder{caseFolder()};
    NotificationCenter m_notifications;
    ManualClock m_clock; ///< nobody has to wait for Spotlight
    std::unique_ptr<InProcessHost> m_host;
    std::unique_ptr<SystemManager> m_system;
    RoundTrip m_trip;
    QStringList m_log;
    QList<MacDifference> m_differences;
    qsizetype m_cameBack = 0;
    bool m_restarts = false;
    QSet<QString> m_goingAtReturn; ///< keys of the login items that an undo takes out
};

/// Every difference is what exactly one exception tells of.
void expectOnlyExceptions(const Traveller& traveller, Sightings& sightings) {
    for (const MacDifference& difference : traveller.found()) {
        QStringList names;
        for (const RoundTripException& exception : roundTripExceptions()) {
            if (exception.covers(difference, traveller.trip())) {
                names.append(QString::fromUtf16(exception.name));
                ++sightings[names.last()];
            }
        }
        EXPECT_EQ(names.size(), 1) << difference.line().toStdString() << names.join(u", "_s).toStdString();
    }
}

/// The bold beginnings of the paragraphs of docs/WAY-BACK.md that tell of the exceptions.
QStringList entriesOfThePage() {
    const QString page = QString::fromUtf8(projectFile(u"docs/WAY-BACK.md"_s));
    static const QRegularExpression entry(u"^\\d\\. \\*\\*(.+)\\.\\*\\*"_s, QRegularExpression::MultilineOption);
    QStringList names;
    for (const QRegularExpressionMatch& match : entry.globalMatch(page)) {
        names.append(match.captured(1));
    }
    return names;
}

} // namespace

class RoundTrips : public ::testing::TestWithParam<quint64> {};

INSTANTIATE_TEST_SUITE_P(Random, RoundTrips, ::testing::Range(quint64(0), kTrips / kTripsOfTest));

TEST_P(RoundTrips, leaveTheMacAsItWasButForWhatTheUserIsToldOf) {
    Sightings sightings;
    qsizetype cameBack = 0;
    const quint64 first = GetParam() * kTripsOfTest + 1;
    for (quint64 seed = first; seed < first + kTripsOfTest; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Traveller traveller(seed);
        traveller.travel();
        cameBack += traveller.cameBack();
        const bool hadFailed = ::testing::Test::HasFailure();
        expectOnlyExceptions(traveller, sightings);
        if (!hadFailed && ::testing::Test::HasFailure()) {
            ADD_FAILURE() << traveller.log(); // of the first trip, for the others are of the same kind mostly
        }
    }
    EXPECT_GT(cameBack, static_cast<qsizetype>(5 * kTripsOfTest)); // else there was nothing to bring back
    for (const RoundTripException& exception : roundTripExceptions()) {
        const QString name = QString::fromUtf16(exception.name);
        EXPECT_GT(sightings[name], 0) << name.toStdString() << " (" << exception.reason << ") was never seen";
    }
}

TEST(RoundTrip, isToldOfCompletelyInThePageForTheUser) {
    QStringList names;
    for (const RoundTripException& exception : roundTripExceptions()) {
        names.append(QString::fromUtf16(exception.name));
    }
    EXPECT_EQ(entriesOfThePage(), names);
    EXPECT_LE(names.size(), 5);
}

} // namespace quorvane
