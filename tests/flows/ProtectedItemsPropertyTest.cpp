// Audio software is never touched, whatever a profile says: random Macs and random profiles, and afterwards the Mac's
// own state, item by item. The tools run in this process, so that a case takes milliseconds.

#include "fakes/InProcessMac.h"
#include "fakes/MacPicture.h"
#include "fakes/RandomMac.h"
#include "fakes/SimulatedStartup.h"

namespace quorvane {

namespace {

using macsim::Json;

constexpr int kCases = 150;

/// What makes a text one of audio software, among the texts that are drawn here.
bool isOfAudioSoftware(const QString& text) {
    static const QStringList words{u"traktor"_s, u"ableton"_s, u"rekordbox"_s, u"vst"_s, u"plug-in"_s, u"serato"_s};
    return std::any_of(words.begin(), words.end(),
                       [&text](const QString& word) { return text.contains(word, Qt::CaseInsensitive); });
}

QString textOf(const Json& json) {
    return QString::fromStdString(json.get<std::string>());
}

// ---- A random Mac

Json randomLoginItems(Draw& draw) {
    Json items = Json::array();
    for (int count = draw.below(9); count > 0; --count) {
        const QString name = draw.from(kNames);
        const QString path = draw.from(kApplications) + (draw.oneIn(3) ? u""_s : u"/Contents/"_s + name + u".app"_s);
        items.push_back({{"name", name.toStdString()}, {"path", path.toStdString()}, {"hidden", draw.oneIn(2)}});
    }
    return items;
}

Json randomMac(Draw& draw) {
    Json description = macWithStartupItems(randomLoginItems(draw), draw);
    // A managed application that leaves, and whose name others may bear.
    if (draw.oneIn(3)) {
        description["preferences"]["user"]["com.quorvane.app"]["QuorvaneManagedStartupAppPaths"] = {
            "/Applications/" + draw.from({u"Helper"_s, u"Updater"_s, u"Chat"_s}).toStdString() + ".app"};
    }
    if (draw.oneIn(4)) {
        description["ownedByRoot"] = {draw.from(kApplications).toStdString()};
    }
    return description;
}

// ---- A random profile

UnifiedProfile randomProfile(Draw& draw) {
    UnifiedProfile profile;
    profile.id = QUuid::createUuid();
    profile.name = u"Random"_s;
    profile.settings.cleanReboot = draw.oneIn(2);
    for (int count = draw.below(12); count > 0; --count) {
        profile.startup.items.append(randomItem(draw));
    }
    if (draw.oneIn(2)) {
        profile.startup.disabledCloudSyncAtStartup = {CloudSyncService::dropbox, CloudSyncService::googleDrive};
    }
    return profile;
}

// ---- What must not change

/// The protected login items, in their order.
Json protectedLoginItems(const macsim::Mac& mac) {
    Json kept = Json::array();
    const Json items = mac.state().read("loginItems");
    for (const Json& item : items) {
        if (isOfAudioSoftware(textOf(item.at("name"))) || isOfAudioSoftware(textOf(item.at("path")))) {
            kept.push_back(item);
        }
    }
    return kept;
}

/// By anything that the record or its parent tells of itself.
Json protectedRecords(const macsim::Mac& mac) {
    Json kept = Json::array();
    const Json records = mac.state().read("backgroundTasks").at("records");
    for (const Json& record : records) {
        Json told = {record};
        for (const Json& other : records) {
            if (record.contains("parent") && other.at("identifier") == record.at("parent")) {
                told.push_back(other);
            }
        }
        if (isOfAudioSoftware(QString::fromStdString(told.dump()))) {
            kept.push_back(record);
        }
    }
    return kept;
}

/// Making an application a login item enables its record, which is no harm.
Json withoutEnabled(Json records) {
    for (Json& record : records) {
        record.erase("enabled");
    }
    return records;
}

/// The labels that have a plist of their own in a launch folder.
QSet<QString> labelsOfPlists(const macsim::Mac& mac) {
    QSet<QString> labels;
    const Json jobs = mac.state().read("launchd").at("jobs");
    for (const Json& domain : jobs) {
        for (const auto& [label, job] : domain.items()) {
            labels.insert(QString::fromStdString(label));
        }
    }
    return labels;
}

/// What launchd keeps of the labels of audio software, and of those of its records. A plist is known by its file name
/// alone: launchd notes its label when it goes, also where a record of audio software has the same one.
Json protectedJobs(const macsim::Mac& mac, const QSet<QString>& labelsWithPlists) {
    QSet<QString> labels;
    const Json records = protectedRecords(mac);
    for (const Json& record : records) {
        labels.insert(textOf(record.at("identifier")).section(u'.', 1));
    }
    labels -= labelsWithPlists;
    Json kept = Json::object();
    const Json launchd = mac.state().read("launchd");
    for (const char* part : {"jobs", "disabled"}) {
        for (const auto& [domain, entries] : launchd.at(part).items()) {
            for (const auto& [label, value] : entries.items()) {
                const QString text = QString::fromStdString(label);
                const bool isPlistsJob = std::string(part) == "jobs";
                if (isOfAudioSoftware(text) || (!isPlistsJob && labels.contains(text))) {
                    kept[part][domain][label] = value;
                }
            }
        }
    }
    return kept;
}

/// The launch plists in their places whose label a record of audio software bears.
QStringList protectedPlists(const macsim::Mac& mac) {
    QStringList found;
    const Json records = protectedRecords(mac);
    const macsim::Volume disk = mac.volume(macsim::Actor::Root);
    for (const Json& record : records) {
        const QString name = textOf(record.at("identifier")).section(u'.', 1) + u".plist"_s;
        for (const QString& folder : kLaunchFolders) {
            if (disk.kind(folder + u'/' + name) == macsim::Volume::Kind::File) {
                found.append(folder + u'/' + name);
            }
        }
    }
    return found;
}

/// The changes on the disk that have to do with audio software; applications that were added are told of in the
/// program's own files.
QStringList changesOfProtectedFiles(const macsim::MacPicture& before, const macsim::MacPicture& after) {
    QStringList lines = after.changesSince(before).split(u'\n');
    lines.removeIf([](const QString& line) {
        const QString key = line.section(u": "_s, 0, 0);
        return !(key.mid(2).startsWith(u'/') && isOfAudioSoftware(key));
    });
    return lines;
}

} // namespace

TEST(ProtectedItems, areWhereAndAsTheyWereAfterAnyProfile) {
    int protectedItems = 0;
    int changedMacs = 0;
    for (unsigned seed = 1; seed <= kCases; ++seed) {
        SCOPED_TRACE(seed);
        Draw draw(seed);
        ProgramOnMac program(randomMac(draw));
        InProcessHost& host = program.host;
        SystemManager& system = program.system;
        const macsim::MacPicture before(program.macFolder);
        const Json loginItems = protectedLoginItems(host.mac());
        const Json records = protectedRecords(host.mac());
        // Where the list is known, a plist is protected by its record, too.
        const bool isListKnown = draw.oneIn(2);
        const QSet<QString> labelsWithPlists = isListKnown ? QSet<QString>() : labelsOfPlists(host.mac());
        const QStringList plists = protectedPlists(host.mac());
        const Json jobs = protectedJobs(host.mac(), labelsWithPlists);
        protectedItems += static_cast<int>(loginItems.size() + records.size());

        if (isListKnown) {
            program.learnBackgroundItems();
        }

        // One profile: what one adds, the next may take out again.
        const UnifiedProfile profile = randomProfile(draw);
        for (int times = draw.oneIn(4) ? 2 : 1; times > 0; --times) {
            QCoro::waitFor(system.applyProfile(profile));
        }

        const macsim::MacPicture after(program.macFolder);
        EXPECT_EQ(changesOfProtectedFiles(before, after), QStringList());
        Json kept = protectedLoginItems(host.mac());
        EXPECT_GE(kept.size(), loginItems.size());
        kept.erase(kept.begin() + static_cast<qsizetype>(std::min(loginItems.size(), kept.size())), kept.end());
        EXPECT_EQ(kept, loginItems); // what comes behind them was added by the profile
        Json keptRecords = protectedRecords(host.mac());
        keptRecords.erase(keptRecords.begin() + static_cast<qsizetype>(std::min(records.size(), keptRecords.size())),
                          keptRecords.end());
        EXPECT_EQ(withoutEnabled(keptRecords), withoutEnabled(records));
        EXPECT_EQ(protectedJobs(host.mac(), labelsWithPlists), jobs);
        if (isListKnown) {
            EXPECT_EQ(protectedPlists(host.mac()), plists);
        }
        changedMacs += after.changesSince(before).contains(u".quorvane_backup/"_s) ? 1 : 0;
        if (::testing::Test::HasFailure()) {
            FAIL() << system.logMessages().join(u'\n').toStdString();
        }
    }
    // Else nothing was tried.
    EXPECT_GT(protectedItems, 5 * kCases);
    EXPECT_GT(changedMacs, kCases / 2);
}

} // namespace quorvane
