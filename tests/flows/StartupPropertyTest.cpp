// What a profile says runs is where it was, and what its apply takes stood in the review: random Macs, and random profiles
// made of what is found on them, of older profiles, and of what nobody has. The tools run in this process.

#include "core/Paths.h"
#include "fakes/BackgroundList.h"
#include "fakes/InProcessMac.h"
#include "fakes/RandomMac.h"
#include "fakes/SimulatedStartup.h"
#include "profiles/ApplyPreviews.h"

namespace quorvane {

namespace {

using macsim::Json;
using Kind = StartupItemKind;

constexpr int kCases = 150;

// ---- A random Mac

/// Names are shared, paths end in a "/" or not, and some files are gone. System Events lists a file once.
Json loginItemsOfSharedNames(Draw& draw) {
    Json items = Json::array();
    QSet<QString> listed;
    for (int count = draw.below(10); count > 0; --count) {
        const QString name = draw.from(kNames);
        const QString path = draw.from(kApplications) + (draw.oneIn(3) ? u""_s : u"/Contents/"_s + name + u".app"_s);
        Json item{{"name", name.toStdString()}, {"path", nullptr}, {"hidden", draw.oneIn(2)}};
        if (!draw.oneIn(8)) {
            item["path"] = (path + (draw.oneIn(3) ? u"/"_s : u""_s)).toStdString();
        }
        if (item.at("path").is_null() || !listed.contains(path)) {
            items.push_back(item);
            listed.insert(path);
        }
    }
    return items;
}

Json macOfSharedNames(Draw& draw) {
    Json description = macWithStartupItems(loginItemsOfSharedNames(draw), draw);
    if (draw.oneIn(2)) {
        description["preferences"]["user"]["com.quorvane.app"]["QuorvaneManagedStartupAppPaths"] = {
            draw.from(kApplications).toStdString() + (draw.oneIn(2) ? "/" : "")};
    }
    return description;
}

// ---- A random profile

/// A found item as a profile may know it: with its choice, in an older form, under an older name.
StartupItem savedForm(StartupItem item, Draw& draw) {
    item.runsAtStartup = draw.oneIn(2);
    if (!isLoginItem(item) || item.path.isEmpty()) {
        return item;
    }
    switch (draw.below(6)) {
    case 0: // known by its name alone
        item.path.clear();
        item.id = u"login:"_s + item.name;
        break;
    case 1:
        item.path = item.path.endsWith(u'/') ? item.path.chopped(1) : item.path + u'/';
        item.id = u"login:"_s + item.path;
        break;
    case 2: // the id tells where it is
        item.path = u"/elsewhere"_s;
        break;
    case 3:
        item.name = u"Older "_s + item.name;
        break;
    default:
        break;
    }
    return item;
}

UnifiedProfile profileOf(const QList<StartupItem>& found, Draw& draw) {
    UnifiedProfile profile;
    profile.id = QUuid::createUuid();
    profile.name = u"Random"_s;
    profile.settings.cleanReboot = draw.oneIn(2);
    for (const StartupItem& item : found) {
        if (!draw.oneIn(4)) {
            profile.startup.items.append(savedForm(item, draw));
        }
    }
    for (int count = draw.below(4); count > 0; --count) {
        profile.startup.items.append(randomItem(draw));
    }
    if (draw.oneIn(2)) {
        const QString path = draw.from(kApplications);
        profile.startup.items.append(
            StartupItem::fromLaunchItem({nameInPath(path), path + (draw.oneIn(2) ? u"/"_s : u""_s), draw.oneIn(2)}));
    }
    if (draw.oneIn(3)) {
        profile.startup.disabledCloudSyncAtStartup = {CloudSyncService::dropbox, CloudSyncService::googleDrive};
    }
    return profile;
}

// ---- What the Mac holds

struct Holdings {
    QList<LoginItem> loginItems; ///< a file that is gone has no path
    QStringList launchPlists;    ///< paths
    QStringList files;           ///< of the applications
    QList<BackgroundTaskItem> records;
};

QList<LoginItem> loginItemsOf(const macsim::Mac& mac) {
    QList<LoginItem> items;
    const Json listed = mac.state().read("loginItems");
    for (const Json& item : listed) {
        const Json path = item.value("path", Json());
        items.append({QString::fromStdString(item.at("name").get<std::string>()),
                      path.is_string() ? QString::fromStdString(path.get<std::string>()) : QString(),
                      item.value("hidden", false)});
    }
    return items;
}

QList<BackgroundTaskItem> recordsOf(const Host& host) {
    NotificationCenter notifications;
    SystemManager observer(host, notifications);
    learnBackgroundItems(observer);
    const auto& list = observer.backgroundTaskItems();
    return list ? list->items() : QList<BackgroundTaskItem>();
}

void addFilesUnder(const macsim::Volume& disk, const QString& path, QStringList& files) {
    if (disk.kind(path) == macsim::Volume::Kind::File) {
        files.append(path);
    } else if (disk.kind(path) == macsim::Volume::Kind::Folder) {
        for (const QString& name : disk.list(path)) {
            addFilesUnder(disk, path + u'/' + name, files);
        }
    }
}

Holdings holdingsOf(InProcessHost& host) {
    Holdings holdings{loginItemsOf(host.mac()), {}, {}, recordsOf(host.host())};
    const macsim::Volume disk = host.mac().volume(macsim::Actor::Root);
    for (const QString& folder : kLaunchFolders) {
        addFilesUnder(disk, folder, holdings.launchPlists);
    }
    for (const QString& application : kApplications) {
        addFilesUnder(disk, application, holdings.files);
    }
    return holdings;
}

QString withoutSlash(const QString& path) {
    return path.endsWith(u'/') ? path.chopped(1) : path;
}

// ---- What the profile says runs

/// Known by its id or its path; one whose file is gone by its id.
bool isSame(const StartupItem& saved, const LoginItem& item) {
    if (item.path.isEmpty()) {
        return saved.id == u"login:"_s + item.name;
    }
    const QString path = withoutSlash(item.path);
    return withoutSlash(saved.path) == path || withoutSlash(saved.id) == u"login:"_s + path;
}

bool isOfDisabledService(const UnifiedProfile& profile, const QString& text) {
    StartupItem named;
    named.name = text;
    return matchesAnyCloudService(named, profile.startup.disabledCloudSyncAtStartup);
}

/// Those whose `launchIdentifier` no item of the profile switches off.
QSet<QString> identifiersThatRun(const UnifiedProfile& profile, bool areBackgroundItems) {
    QSet<QString> running;
    QSet<QString> off;
    for (const StartupItem& item : profile.startup.items) {
        const bool isOfKind = areBackgroundItems ? item.kind == Kind::backgroundLoginItem : isLaunchItemId(item.id);
        if (isOfKind && item.launchIdentifier) {
            const bool goes =
                !item.runsAtStartup || matchesAnyCloudService(item, profile.startup.disabledCloudSyncAtStartup);
            (goes ? off : running).insert(*item.launchIdentifier);
        }
    }
    return running - off;
}

/// The number of things that the profile says run, each of which is looked for where it was.
int expectKept(const UnifiedProfile& profile, const Holdings& before, const Holdings& after) {
    int count = 0;
    const CloudSyncServices& services = profile.startup.disabledCloudSyncAtStartup;
    for (const StartupItem& saved : profile.startup.items) {
        const bool isAdded = saved.kind == Kind::addedApp;
        if (!saved.runsAtStartup || !(isAdded || isLoginItem(saved)) ||
            (!isAdded && matchesAnyCloudService(saved, services))) {
            continue;
        }
        for (const LoginItem& item : before.loginItems) {
            const bool isAlsoOff = std::any_of(
                profile.startup.items.begin(), profile.startup.items.end(),
                [&item, &services](const StartupItem& other) {
                    const bool goes = !other.runsAtStartup || matchesAnyCloudService(other, services);
                    return goes && other.kind != Kind::addedApp && item.path.isEmpty() && isSame(other, item);
                });
            if (isSame(saved, item) && !isAlsoOff) {
                ++count;
                EXPECT_GE(after.loginItems.count(item), before.loginItems.count(item))
                    << item.name.toStdString() << " at " << item.path.toStdString();
            }
        }
        const bool opensByItself =
            std::any_of(before.records.begin(), before.records.end(), [&saved](const BackgroundTaskItem& record) {
                return isRegisteredApplication(record) &&
                       comparablePath(recordedPath(record).value_or(QString())) == comparablePath(saved.path);
            });
        if (isAdded && !opensByItself) {
            EXPECT_TRUE(std::any_of(after.loginItems.begin(), after.loginItems.end(), [&saved](const LoginItem& item) {
                return isSame(saved, item);
            })) << saved.path.toStdString();
        }
    }
    const QSet<QString> fileNames = identifiersThatRun(profile, false);
    for (const QString& path : before.launchPlists) {
        if (fileNames.contains(lastPathComponent(path))) {
            ++count;
            EXPECT_TRUE(after.launchPlists.contains(path)) << path.toStdString();
        }
    }
    const QSet<QString> labels = identifiersThatRun(profile, true);
    for (const BackgroundTaskItem& record : before.records) {
        const QString label = backgroundItemLabel(record).value_or(QString());
        if (labels.contains(label) && isActive(record) &&
            !isOfDisabledService(profile, backgroundItemSearchText(record))) {
            ++count;
            EXPECT_TRUE(after.records.contains(record)) << label.toStdString();
        }
    }
    return count;
}

// ---- What the review has shown

struct Shown {
    QSet<QString> names; ///< of the rows
    QSet<QString> paths;
    QSet<QString> identifiers;
    bool areBackgroundItemsUnknown = false; ///< a row stands for them
};

Shown shownBy(const ProfileApplyPreview& preview) {
    Shown shown;
    for (const ReviewSection& section : reviewSections(preview)) {
        if (section.title != u"Will disable at login"_s && section.title != u"Will remove from login items"_s) {
            continue;
        }
        for (const ReviewSection::Row& row : section.rows) {
            shown.names.insert(row.text);
            if (row.text == u"Background items that aren't permitted"_s) {
                shown.areBackgroundItemsUnknown = true;
            }
        }
    }
    for (const StartupItem& item : preview.startup.willDisable) {
        shown.paths.insert(withoutSlash(item.path));
        shown.identifiers.insert(item.launchIdentifier.value_or(QString()));
    }
    return shown;
}

/// What stands behind the beginning in the lines that begin so.
QStringList namedIn(const QStringList& log, const QString& beginning) {
    QStringList texts;
    for (const QString& line : log) {
        if (line.startsWith(beginning)) {
            texts.append(line.mid(beginning.size()));
        }
    }
    return texts;
}

/// Of the login items that aren't there any more.
QSet<QString> namesGone(const Holdings& before, const Holdings& after) {
    QSet<QString> names;
    for (const LoginItem& item : before.loginItems) {
        if (after.loginItems.count(item) < before.loginItems.count(item)) {
            names.insert(item.name);
        }
    }
    return names;
}

/// The number of things that the log says were taken, each of which the review must have shown.
int expectShown(const QStringList& log, const Shown& shown, const UnifiedProfile& profile, const Holdings& before,
                const Holdings& after) {
    const QSet<QString> gone = namesGone(before, after);
    EXPECT_EQ(gone - shown.names, QSet<QString>());
    int count = 0;
    for (const QString& name : namedIn(log, u"  [APPLIED] Removed login item: "_s) +
                                   namedIn(log, u"  [APPLIED] Removed startup app from login items: "_s)) {
        if (gone.contains(name)) { // what had gone already isn't taken
            ++count;
            EXPECT_TRUE(shown.names.contains(name)) << name.toStdString();
        }
    }
    for (const QString& path : namedIn(log, u"  [APPLIED] Removed login item at path: "_s)) {
        EXPECT_TRUE(shown.paths.contains(withoutSlash(path))) << path.toStdString();
    }
    for (const QString& item : namedIn(log, u"  [APPLIED] Disabled launch item: "_s)) {
        ++count;
        EXPECT_TRUE(shown.identifiers.contains(item.section(u' ', 0, 0))) << item.toStdString();
    }
    const QStringList labels = namedIn(log, u"  [ACTION] Queued disable for background login label: "_s) +
                               namedIn(log, u"  [APPLIED] Disabled background login label: "_s) +
                               namedIn(log, u"  [APPLIED] Disallowed BTM service: "_s);
    QSet<QString> labelsOfServices;
    for (const BackgroundTaskItem& record : before.records) {
        if (isOfDisabledService(profile, backgroundItemSearchText(record))) {
            labelsOfServices.insert(backgroundItemLabel(record).value_or(QString()));
        }
    }
    for (const BackgroundTaskItem& record : before.records) {
        const QString label = backgroundItemLabel(record).value_or(QString());
        if (!isActive(record) || !labels.contains(label)) {
            continue;
        }
        ++count;
        // A service has a row of its own, which stands for what isn't known of it yet.
        EXPECT_TRUE(shown.areBackgroundItemsUnknown || labelsOfServices.contains(label) ||
                    shown.identifiers.contains(label))
            << label.toStdString();
    }
    return count;
}

} // namespace

TEST(StartupProperties, whatTheProfileSaysRunsIsWhereItWasAndWhatIsTakenStoodInTheReview) {
    int kept = 0;
    int taken = 0;
    for (unsigned seed = 1; seed <= kCases; ++seed) {
        SCOPED_TRACE(seed);
        Draw draw(seed);
        ProgramOnMac program(macOfSharedNames(draw));
        InProcessHost& host = program.host;
        SystemManager& system = program.system;
        const bool isListKnown = draw.oneIn(2);
        if (isListKnown) {
            program.learnBackgroundItems();
        }
        const UnifiedProfile profile =
            profileOf(QCoro::waitFor(system.discoverStartupItems(SystemManager::StartupRefresh::Force)), draw);
        const Holdings before = holdingsOf(host);
        const ProfileApplyPreview preview = QCoro::waitFor(system.previewProfile(profile));
        const Shown shown = shownBy(preview);
        EXPECT_EQ(shown.areBackgroundItemsUnknown, profile.settings.cleanReboot && !isListKnown);
        const qsizetype logged = system.logMessages().size();
        QCoro::waitFor(system.applyProfile(profile));
        const Holdings after = holdingsOf(host);

        kept += expectKept(profile, before, after);
        taken += expectShown(system.logMessages().mid(logged), shown, profile, before, after);
        if (::testing::Test::HasFailure()) {
            for (const StartupItem& item : profile.startup.items) {
                std::cerr << (item.runsAtStartup ? "runs " : "off  ") << rawValue(item.kind).toStdString() << ' '
                          << item.id.toStdString() << " | " << item.name.toStdString() << " | "
                          << item.path.toStdString() << '\n';
            }
            for (const LoginItem& item : before.loginItems) {
                std::cerr << "before " << item.name.toStdString() << " | " << item.path.toStdString() << '\n';
            }
            FAIL() << system.logMessages().mid(logged).join(u'\n').toStdString();
        }
    }
    // Else nothing was tried.
    EXPECT_GT(kept, 2 * kCases);
    EXPECT_GT(taken, 2 * kCases);
}

} // namespace quorvane
