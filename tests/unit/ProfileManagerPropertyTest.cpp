// Saving and importing into random folders: files with names of their own, copies, damaged files, names that differ in case.

#include "fakes/ProfileStore.h"
#include "profiles/ProfileNames.h"

#include <QMap>
#include <QSet>

#include <gtest/gtest.h>

#include <random>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

class RandomStore {
public:
    explicit RandomStore(unsigned seed)
        : m_random(seed)
        , ignoresCase(under(2) == 0)
        , store(ignoresCase ? MemoryFileManager::Case::Ignored : MemoryFileManager::Case::Sensitive) {
        for (int count = under(6); count > 0; --count) {
            const QString file = name();
            if (under(5) == 0) {
                store.files.addFile(store.pathOf(file + u".json"_s), "damaged " + QByteArray::number(count));
            } else {
                store.addFile(file + u".json"_s, profile(under(3) == 0 ? name() : file));
            }
        }
    }

    UnifiedProfile profile() { return profile(name()); }
    /// No two are the same: each has a date of its own.
    UnifiedProfile profile(const QString& name) {
        UnifiedProfile made = numberedProfile(1 + under(4), name);
        made.dateCreated = made.dateCreated.addSecs(++m_made);
        return made;
    }
    int under(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }
    QMap<QString, QByteArray> contents() const {
        QMap<QString, QByteArray> contents;
        for (const QString& file : store.fileNames()) {
            contents.insert(file.chopped(5), store.bytesOf(file));
        }
        return contents;
    }

private:
    QString name() {
        const QStringList names{u"Live"_s, u"live"_s, u"LIVE"_s,      u"Live 2"_s,
                                u"Gig"_s,  u"gig"_s,  u"Caf\u00e9"_s, u"Cafe\u0301"_s};
        return names.at(under(static_cast<int>(names.size())));
    }

    std::mt19937 m_random;
    int m_made = 0;

public:
    const bool ignoresCase;
    ProfileStore store;
};

/// Of a file; a null id for a damaged one.
QUuid idIn(const QByteArray& bytes) {
    return bytes.startsWith("damaged") ? QUuid() : decodeProfile(bytes).id;
}

bool isHeld(const QMap<QString, QByteArray>& contents, const UnifiedProfile& profile) {
    return std::any_of(contents.cbegin(), contents.cend(), [&profile](const QByteArray& bytes) {
        return !bytes.startsWith("damaged") && decodeProfile(bytes).dateCreated == profile.dateCreated;
    });
}

constexpr unsigned kWorlds = 400;

} // namespace

TEST(ProfileStoreProperty, aSaveTakesAtMostOneFileOfItsProfileAndNoOther) {
    for (unsigned seed = 0; seed < kWorlds; ++seed) {
        SCOPED_TRACE(seed);
        RandomStore world(seed);
        const UnifiedProfile saved = world.profile();
        const auto before = world.contents();
        world.store.manager.saveProfile(saved);
        const auto after = world.contents();
        EXPECT_TRUE(isHeld(after, saved));
        const bool stayedInItsFile = before.contains(saved.name) && idIn(before.value(saved.name)) == saved.id;
        QStringList gone;
        for (auto file = before.cbegin(); file != before.cend(); ++file) {
            const bool isReplaced =
                world.ignoresCase ? profileNameKey(file.key()) == profileNameKey(saved.name) : file.key() == saved.name;
            if (after.value(file.key()) != file.value() && !isReplaced) {
                EXPECT_EQ(idIn(file.value()), saved.id) << file.key().toStdString();
                gone.append(file.key());
            }
        }
        EXPECT_LE(gone.size(), stayedInItsFile ? 0 : 1) << gone.join(u", "_s).toStdString();
    }
}

TEST(ProfileStoreProperty, anImportKeepsEveryOtherFileAndAllThatCame) {
    int carriedOut = 0;
    for (unsigned seed = 0; seed < kWorlds; ++seed) {
        SCOPED_TRACE(seed);
        RandomStore world(seed);
        QList<UnifiedProfile> incoming;
        QSet<QUuid> ids;
        for (int count = 1 + world.under(4); count > 0; --count) {
            incoming.append(world.profile());
            ids.insert(incoming.last().id);
        }
        const auto before = world.contents();
        const int listings = world.store.files.listings();
        try {
            const ProfileImportResult result = world.store.manager.importProfiles(incoming);
            ++carriedOut;
            EXPECT_EQ(world.store.files.listings() - listings, 1);
            EXPECT_EQ(result.imported + result.updated, incoming.size());
            EXPECT_EQ(world.contents().size(), before.size() + result.imported);
        } catch (const ProfileStoreError&) {
            EXPECT_EQ(world.contents(), before);
            continue;
        }
        const auto after = world.contents();
        for (const UnifiedProfile& profile : std::as_const(incoming)) {
            EXPECT_TRUE(isHeld(after, profile)) << profile.name.toStdString();
        }
        for (auto file = before.cbegin(); file != before.cend(); ++file) {
            if (!ids.contains(idIn(file.value()))) {
                EXPECT_EQ(after.value(file.key()), file.value()) << file.key().toStdString();
            }
        }
    }
    EXPECT_GT(carriedOut, static_cast<int>(kWorlds) / 3);
}

} // namespace quorvane
