#include "fakes/ProfileStore.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

using NameCase = MemoryFileManager::Case;
using Result = ProfileImportResult;

TEST(ProfileImport, intoAnEmptyFolderAllAreNew) {
    ProfileStore store;
    EXPECT_EQ(store.manager.importProfiles({numberedProfile(1, u"Live"_s), numberedProfile(2, u"Gig"_s)}),
              (Result{2, 0, {}}));
    EXPECT_EQ(store.fileNames(), (QStringList{u"Live.json"_s, u"Gig.json"_s}));
}

TEST(ProfileImport, aKnownProfileIsReplacedWhicheverIsNewer) {
    ProfileStore store;
    store.manager.saveProfile(numberedProfile(1, u"Live"_s, 9));
    EXPECT_EQ(store.manager.importProfiles({numberedProfile(1, u"Gig"_s, 1)}), (Result{0, 1, {}}));
    EXPECT_EQ(store.fileNames(), QStringList{u"Gig.json"_s});
    EXPECT_EQ(store.profileIn(u"Gig.json"_s).dateCreated, numberedProfile(1, {}, 1).dateCreated);
}

TEST(ProfileImport, aTakenNameGetsTheFirstFreeNumber) {
    for (const NameCase names : {NameCase::Sensitive, NameCase::Ignored}) {
        ProfileStore store(names);
        store.manager.saveProfile(numberedProfile(1, u"live"_s));
        store.manager.saveProfile(numberedProfile(2, u"Live 2"_s));
        EXPECT_EQ(store.manager.importProfiles({numberedProfile(3, u"Live"_s)}), (Result{1, 0, {u"Live → Live 3"_s}}));
        EXPECT_EQ(store.fileNames(), (QStringList{u"live.json"_s, u"Live 2.json"_s, u"Live 3.json"_s}));
        EXPECT_EQ(store.profileIn(u"Live 3.json"_s).name, u"Live 3"_s);
    }
}

TEST(ProfileImport, theNamesOfTheImportCountToo) {
    ProfileStore store;
    EXPECT_EQ(store.manager.importProfiles({numberedProfile(1, u"Live"_s), numberedProfile(2, u"Live"_s)}),
              (Result{2, 0, {u"Live → Live 2"_s}}));
    EXPECT_EQ(store.profileIn(u"Live.json"_s), numberedProfile(1, {}));
    EXPECT_EQ(store.profileIn(u"Live 2.json"_s), numberedProfile(2, {}));
}

TEST(ProfileImport, aNameIsFreeOnceItsProfileHasAnother) {
    ProfileStore store;
    store.manager.saveProfile(numberedProfile(1, u"Live"_s));
    EXPECT_EQ(store.manager.importProfiles({numberedProfile(1, u"Gig"_s), numberedProfile(2, u"LIVE"_s)}),
              (Result{1, 1, {}}));
    EXPECT_EQ(store.fileNames(), (QStringList{u"Gig.json"_s, u"LIVE.json"_s}));
}

TEST(ProfileImport, namesAreComparedAsTheyAreSaved) {
    ProfileStore store;
    store.manager.saveProfile(numberedProfile(1, u"a-b"_s));
    EXPECT_EQ(store.manager.importProfiles({numberedProfile(2, u" A/B"_s)}), (Result{1, 0, {u" A/B → A-B 2"_s}}));
    EXPECT_EQ(store.profileIn(u"a-b.json"_s), numberedProfile(1, {}));
}

TEST(ProfileImport, namesThatDifferInCompositionAreOne) {
    ProfileStore store(NameCase::Ignored);
    store.manager.saveProfile(numberedProfile(1, u"Caf\u00e9"_s));
    EXPECT_EQ(store.manager.importProfiles({numberedProfile(2, u"Cafe\u0301"_s)}).renamed.size(), 1);
    EXPECT_EQ(store.manager.listProfiles().size(), 2);
}

TEST(ProfileImport, aFileNameIsTakenToo) {
    ProfileStore store;
    store.addFile(u"Gig.json"_s, numberedProfile(1, u"Other"_s));
    EXPECT_EQ(store.manager.importProfiles({numberedProfile(2, u"Gig"_s), numberedProfile(3, u"Other"_s)}),
              (Result{2, 0, {u"Gig → Gig 2"_s, u"Other → Other 2"_s}}));
    EXPECT_EQ(store.profileIn(u"Gig.json"_s), numberedProfile(1, {}));
}

TEST(ProfileImport, anUpdateDoesNotReplaceAnotherProfile) {
    for (const NameCase names : {NameCase::Sensitive, NameCase::Ignored}) {
        ProfileStore store(names);
        store.manager.saveProfile(numberedProfile(1, u"Live"_s));
        store.manager.saveProfile(numberedProfile(2, u"Gig"_s));
        EXPECT_EQ(store.manager.importProfiles({numberedProfile(1, u"gig"_s)}), (Result{0, 1, {u"gig → gig 2"_s}}));
        EXPECT_EQ(store.fileNames(), (QStringList{u"Gig.json"_s, u"gig 2.json"_s}));
        EXPECT_EQ(store.profileIn(u"Gig.json"_s), numberedProfile(2, {}));
    }
}

TEST(ProfileImport, anUpdateThatKeepsItsFileKeepsItsName) {
    ProfileStore store;
    store.manager.saveProfile(numberedProfile(1, u"Gig"_s));
    store.manager.saveProfile(numberedProfile(2, u"gig"_s));
    EXPECT_EQ(store.manager.importProfiles({numberedProfile(1, u"Gig"_s, 7)}), (Result{0, 1, {}}));
    EXPECT_EQ(store.fileNames(), (QStringList{u"Gig.json"_s, u"gig.json"_s}));
    EXPECT_EQ(store.profileIn(u"gig.json"_s), numberedProfile(2, {}));
}

TEST(ProfileImport, anUpdateMayChangeTheCaseOfItsName) {
    for (const NameCase names : {NameCase::Sensitive, NameCase::Ignored}) {
        ProfileStore store(names);
        store.manager.saveProfile(numberedProfile(1, u"live"_s));
        EXPECT_EQ(store.manager.importProfiles({numberedProfile(1, u"LIVE"_s)}), (Result{0, 1, {}}));
        EXPECT_EQ(store.fileNames(), QStringList{u"LIVE.json"_s});
    }
}

TEST(ProfileImport, ofTwoOfOneIdentityTheSecondBecomesAProfileOfItsOwn) {
    ProfileStore store;
    store.manager.saveProfile(numberedProfile(1, u"Old"_s));
    EXPECT_EQ(store.manager.importProfiles(
                  {numberedProfile(1, u"Live"_s), numberedProfile(1, u"Live"_s, 3), numberedProfile(1, u"Gig"_s, 4)}),
              (Result{2, 1, {u"Live → Live 2"_s, u"Gig → Gig"_s}}));
    EXPECT_EQ(store.fileNames(), (QStringList{u"Live.json"_s, u"Live 2.json"_s, u"Gig.json"_s}));
    EXPECT_EQ(store.profileIn(u"Live.json"_s), numberedProfile(1, {}));
    EXPECT_EQ(store.profileIn(u"Live 2.json"_s).dateCreated, numberedProfile(1, {}, 3).dateCreated);
    const QSet<QUuid> ids{numberedProfile(1, {}).id, store.profileIn(u"Live 2.json"_s).id,
                          store.profileIn(u"Gig.json"_s).id};
    EXPECT_EQ(ids.size(), 3);
}

TEST(ProfileImport, aFileThatHoldsNoProfileIsATakenName) {
    for (const NameCase names : {NameCase::Sensitive, NameCase::Ignored}) {
        ProfileStore store(names);
        store.files.addFile(store.pathOf(u"Live.json"_s), "{");
        store.addFile(u"Club.json"_s, numberedProfile(1, u"Club"_s));
        store.files.failOn(MemoryFileManager::Operation::Read, store.pathOf(u"Club.json"_s));
        store.manager.saveProfile(numberedProfile(2, u"Gig"_s));
        EXPECT_EQ(store.manager.importProfiles(
                      {numberedProfile(3, u"live"_s), numberedProfile(4, u"Club"_s), numberedProfile(2, u"LIVE"_s)}),
                  (Result{2, 1, {u"live → live 2"_s, u"Club → Club 2"_s, u"LIVE → LIVE 3"_s}}));
        EXPECT_EQ(store.bytesOf(u"Live.json"_s), "{");
    }
}

TEST(ProfileImport, listsTheFolderOnce) {
    for (const NameCase names : {NameCase::Sensitive, NameCase::Ignored}) {
        ProfileStore store(names);
        store.manager.saveProfile(numberedProfile(1, u"live"_s));
        store.manager.saveProfile(numberedProfile(2, u"Gig"_s));
        const int before = store.files.listings();
        QList<UnifiedProfile> incoming{numberedProfile(1, u"Live"_s), numberedProfile(2, u"Tour"_s)};
        for (int number = 3; number <= 20; ++number) {
            incoming.append(numberedProfile(number, u"New"_s));
        }
        EXPECT_EQ(store.manager.importProfiles(incoming).updated, 2);
        EXPECT_EQ(store.files.listings() - before, 1);
        EXPECT_EQ(store.fileNames().size(), 20);
    }
}

TEST(ProfileImport, twoFilesOfOneProfileRefuseTheImportBeforeAnythingIsWritten) {
    ProfileStore store;
    UnifiedProfile live = numberedProfile(1, u"Live"_s);
    live.id = QUuid(u"abcdef00-0000-4000-8000-000000000001"_s);
    store.addFile(u"Live.json"_s, live);
    store.addFile(u"Copy.json"_s, live);
    [[maybe_unused]] const int changes = store.files.changes();
    try {
        store.manager.importProfiles({numberedProfile(2, u"Gig"_s)});
        FAIL();
    } catch (const ProfileStoreError& error) {
        EXPECT_EQ(error.message(), u"Duplicate values for key: 'ABCDEF00-0000-4000-8000-000000000001'"_s);
        EXPECT_EQ(error.code(), ProfileStoreError::Code::DuplicateId);
    }
    EXPECT_EQ(store.files.changes(), changes);
    EXPECT_EQ(store.fileNames(), (QStringList{u"Live.json"_s, u"Copy.json"_s}));
}

TEST(ProfileImport, theFirstFailureEndsItAndWhatWasSavedStays) {
    ProfileStore store;
    EXPECT_THROW(store.manager.importProfiles(
                     {numberedProfile(1, u"Live"_s), numberedProfile(2, u" "_s), numberedProfile(3, u"Gig"_s)}),
                 ProfileStoreError);
    EXPECT_EQ(store.fileNames(), QStringList{u"Live.json"_s});

    store.files.failAtChange(2);
    EXPECT_THROW(store.manager.importProfiles({numberedProfile(4, u"Tour"_s), numberedProfile(1, u"Live"_s, 9)}),
                 FileError);
    EXPECT_EQ(store.fileNames(), (QStringList{u"Live.json"_s, u"Tour.json"_s}));
    EXPECT_EQ(store.bytesOf(u"Live.json"_s), encodeProfile(numberedProfile(1, u"Live"_s)));
}

TEST(ProfileImport, manyProfilesOfOneNameAreAllKept) {
    QList<UnifiedProfile> incoming;
    for (int number = 1; number <= 100; ++number) {
        incoming.append(numberedProfile(number, u"Live"_s));
    }
    ProfileStore store;
    EXPECT_EQ(store.manager.importProfiles(incoming).imported, 100);
    EXPECT_EQ(store.manager.listProfiles().size(), 100);
    EXPECT_EQ(store.profileIn(u"Live 100.json"_s), numberedProfile(100, {}));
}

} // namespace
} // namespace quorvane
