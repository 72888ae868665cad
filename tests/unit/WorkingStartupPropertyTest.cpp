// Worlds that change: profiles are loaded, items come and go, rules change and the user decides, in any order. Whatever
// happens, what somebody decided is what is shown and saved, and nothing is there twice or forgotten.

#include "profiles/MasterProfileState.h"

#include <gtest/gtest.h>

#include <random>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// Everything that can ever run at login in these worlds.
QList<StartupItem> population() {
    QList<StartupItem> items;
    for (int number = 0; number < 6; ++number) {
        const QString name = (number % 2 == 0 ? u"Box Sync %1"_s : u"app %1"_s).arg(number);
        StartupItem app;
        app.name = name;
        app.path = u"/Applications/%1.app"_s.arg(name);
        app.id = loginItemId(app.name, app.path);
        app.isProtected = number == 4;
        app.hidden = false;
        items.append(app);
        StartupItem plist;
        plist.name = u"Helper %1"_s.arg(number);
        plist.kind = number % 2 == 0 ? StartupItemKind::launchDaemon : StartupItemKind::launchAgent;
        plist.launchIdentifier = u"com.helper.%1.plist"_s.arg(number);
        plist.id = launchItemId(*plist.launchIdentifier);
        plist.isProtected = number == 3;
        items.append(plist);
        StartupItem record;
        record.name = u"Record %1"_s.arg(number);
        record.kind = StartupItemKind::backgroundLoginItem;
        record.launchIdentifier = u"com.record.%1"_s.arg(number);
        record.id = backgroundItemId(*record.launchIdentifier);
        record.runsAtStartup = number != 5;
        items.append(record);
    }
    return items;
}

class World {
public:
    explicit World(unsigned seed)
        : m_random(seed) {}

    int below(int count) { return std::uniform_int_distribution<int>(0, count - 1)(m_random); }
    bool flip() { return below(2) == 0; }

    QList<StartupItem> someItems() {
        QList<StartupItem> items;
        for (const StartupItem& item : m_population) {
            if (flip()) {
                items.append(item);
            }
        }
        return items;
    }
    StartupLaunchItem anApplication() {
        const StartupItem& item = m_population.at(qsizetype{3} * below(6));
        return {item.name, item.path, flip()};
    }
    UnifiedProfile aProfile() {
        UnifiedProfile profile;
        profile.name = u"Set"_s;
        profile.settings.cleanReboot = flip();
        for (StartupItem item : someItems()) {
            item.runsAtStartup = flip();
            profile.startup.items.append(item);
        }
        if (flip()) {
            StartupItem added = StartupItem::fromLaunchItem(anApplication());
            added.runsAtStartup = flip();
            profile.startup.items.append(added);
        }
        if (below(4) == 0) {
            profile.startup.disabledCloudSyncAtStartup.insert(CloudSyncService::box);
        }
        return profile;
    }

private:
    std::mt19937 m_random;
    const QList<StartupItem> m_population = population();
};

/// What somebody has decided, as a person would note it down: by identifier, whether it runs.
class Notes {
public:
    void takeProfile(const UnifiedProfile& profile) {
        m_runs.clear();
        for (const StartupItem& item : profile.startup.items) {
            m_runs.insert(item.id, item.runsAtStartup);
        }
    }
    void decide(const QString& id, bool runs) { m_runs.insert(id, runs); }
    void forget(const QString& id) { m_runs.remove(id); }
    void takeReset(const QList<StartupItem>& items) {
        m_runs.clear();
        for (const StartupItem& item : items) {
            m_runs.insert(item.id, true);
        }
    }
    const QMap<QString, bool>& all() const { return m_runs; }

private:
    QMap<QString, bool> m_runs;
};

class ChangingWorld {
public:
    explicit ChangingWorld(unsigned seed)
        : m_world(seed) {
        state.mergeDiscoveredStartup({m_world.someItems()});
    }

    MasterProfileState state;

    void step() {
        switch (m_world.below(10)) {
        case 0:
            loadProfile();
            break;
        case 1:
        case 2:
            state.mergeDiscoveredStartup({m_world.someItems()});
            break;
        case 3:
            switchCleanReboot();
            break;
        case 4:
            switchService();
            break;
        case 5:
            add();
            break;
        case 6:
            remove();
            break;
        default:
            switchAnItem();
        }
    }

    /// What doesn't hold; empty when all does.
    QStringList problems() const {
        const WorkingStartup& working = state.workingStartup();
        QStringList found;
        if (working != workingStartup(state.layersWith(*state.discovered()))) {
            found.append(u"it isn't what comes of the layers"_s);
        }
        QMap<QString, StartupItem> savedItems;
        for (const StartupItem& item : working.configuration.items) {
            if (savedItems.contains(item.id)) {
                found.append(u"saved twice: "_s + item.id);
            }
            savedItems.insert(item.id, item);
        }
        found += problemsOfRows(working) + problemsOfNotes(savedItems);
        return found;
    }

private:
    void loadProfile() {
        const UnifiedProfile profile = m_world.aProfile();
        state.load(profile);
        m_notes.takeProfile(profile);
    }
    void switchCleanReboot() {
        PerformanceSettings settings = state.settings();
        settings.cleanReboot = !settings.cleanReboot;
        state.setSettings(settings);
    }
    /// What runs, or would run without the service, is off by it.
    void switchService() {
        const bool isOff = isBoxOff();
        StartupLayers layers = state.layersWith(*state.discovered());
        layers.rules.disabledCloudSyncAtStartup.clear();
        const QList<StartupItem> without = workingStartup(layers).configuration.items;
        state.setCloudSyncDisabled(CloudSyncService::box, !isOff);
        for (const StartupItem& item : without) {
            if (item.runsAtStartup && isHeldOff(item, {CloudSyncService::box})) {
                m_notes.decide(item.id, false);
            }
        }
    }
    void add() {
        const StartupLaunchItem application = m_world.anApplication();
        const StartupItem added = StartupItem::fromLaunchItem(application);
        const QList<StartupItem>& items = state.startup().items;
        const bool isThere = std::any_of(items.cbegin(), items.cend(),
                                         [&added](const StartupItem& item) { return item.id == added.id; });
        state.addLaunchItem(application);
        if (!isThere) {
            m_notes.decide(added.id, true);
        }
    }
    void remove() {
        QList<StartupRow> removable = state.workingStartup().absent;
        for (const StartupRow& row : state.workingStartup().shown) {
            if (row.isAdded) {
                removable.append(row);
            }
        }
        if (!removable.isEmpty()) {
            const StartupRow row = removable.at(m_world.below(static_cast<int>(removable.size())));
            const QString id = state.workingStartup().itemOf(row).id;
            state.removeItem(id);
            m_notes.forget(id);
        }
    }
    void switchAnItem() {
        const QList<StartupRow> rows = state.workingStartup().shown + state.workingStartup().absent;
        if (rows.isEmpty()) {
            return;
        }
        const StartupItem item = state.workingStartup().itemOf(rows.at(m_world.below(static_cast<int>(rows.size()))));
        state.setRunsAtStartup(item.id, !item.runsAtStartup);
        if (!isHeldOff(item, state.startup().disabledCloudSyncAtStartup)) {
            m_notes.decide(item.id, !item.runsAtStartup);
        }
    }

    bool isBoxOff() const { return state.startup().disabledCloudSyncAtStartup.count(CloudSyncService::box) > 0; }

    QStringList problemsOfRows(const WorkingStartup& working) const {
        QStringList found;
        QSet<qsizetype> places;
        for (const StartupRow& row : working.shown + working.absent) {
            if (places.contains(row.item)) {
                found.append(u"two rows of one item: "_s + working.itemOf(row).id);
            }
            places.insert(row.item);
        }
        for (qsizetype place = 0; place < working.configuration.items.size(); ++place) {
            const StartupItem& item = working.configuration.items.at(place);
            if (!places.contains(place) && !isOpenedByAnAddedOne(item)) {
                found.append(u"no row: "_s + item.id);
            }
        }
        for (const StartupItem& item : state.discovered()->items) {
            const bool isSaved = std::any_of(working.configuration.items.cbegin(), working.configuration.items.cend(),
                                             [&item](const StartupItem& saved) { return saved.id == item.id; });
            if (!isSaved && !isOpenedByAnAddedOne(item)) {
                found.append(u"not listed: "_s + item.id);
            }
        }
        return found;
    }

    QStringList problemsOfNotes(const QMap<QString, StartupItem>& savedItems) const {
        QStringList found;
        for (auto note = m_notes.all().cbegin(); note != m_notes.all().cend(); ++note) {
            const auto item = savedItems.constFind(note.key());
            if (item == savedItems.cend()) {
                if (!isAddedOnesPath(note.key())) {
                    found.append(u"forgotten: "_s + note.key());
                }
                continue;
            }
            const bool isOverruled =
                isHeldOff(*item, state.startup().disabledCloudSyncAtStartup) || isOpenedByAnAddedOne(*item);
            if (!isOverruled && item->runsAtStartup != *note) {
                found.append(u"decided otherwise: "_s + note.key());
            }
        }
        return found;
    }

    bool isOpenedByAnAddedOne(const StartupItem& item) const { return isAddedOnesPath(item.id); }
    bool isAddedOnesPath(const QString& id) const {
        const QList<StartupItem>& items = state.startup().items;
        return std::any_of(items.cbegin(), items.cend(), [&id](const StartupItem& item) {
            return item.kind == StartupItemKind::addedApp && id == u"login:"_s + item.path;
        });
    }

    World m_world;
    Notes m_notes;
};

} // namespace

TEST(WorkingStartupPropertyTest, nothingThatWasDecidedIsEverLost) {
    for (unsigned seed = 1; seed <= 50; ++seed) {
        ChangingWorld world(seed);
        for (int step = 1; step <= 60; ++step) {
            world.step();
            const QStringList problems = world.problems();
            ASSERT_EQ(problems, QStringList()) << "seed " << seed << ", step " << step;
        }
    }
}

/// Saving and loading again changes nothing of what would be applied.
TEST(WorkingStartupPropertyTest, whatIsSavedIsWhatIsLoaded) {
    for (unsigned seed = 1; seed <= 50; ++seed) {
        ChangingWorld world(seed);
        world.state.mergeDiscoveredStartup({population()});
        for (int step = 1; step <= 40; ++step) {
            world.step();
        }
        const StartupConfiguration before = world.state.startup();
        world.state.load(world.state.makeProfile(u"Set"_s, QDateTime()));
        EXPECT_EQ(world.state.startup(), before) << "seed " << seed;
        EXPECT_FALSE(world.state.isEdited());
        world.state.clear();
    }
}

} // namespace quorvane
