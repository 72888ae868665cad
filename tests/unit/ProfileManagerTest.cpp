#include "profiles/ProfileManager.h"
#include "core/JsonErrors.h"

#include "fakes/ProfileStore.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

using NameCase = MemoryFileManager::Case;
using Operation = MemoryFileManager::Operation;

TEST(ProfileManager, theFolderIsCreatedAndAFailureIsIgnored) {
    MemoryFileManager files;
    const QString folder = u"/Users/alex/Profiles/Here"_s;
    EXPECT_EQ(ProfileManager(files, folder).profilesDirectory(), folder);
    EXPECT_TRUE(files.exists(folder));

    MemoryFileManager refusing;
    refusing.failOn(Operation::CreateFolders, folder);
    ProfileManager manager(refusing, folder);
    EXPECT_EQ(manager.profilesDirectory(), folder);
    EXPECT_EQ(manager.listProfiles(), QList<UnifiedProfile>());
    EXPECT_THROW(manager.saveProfile(numberedProfile(1, u"Live"_s)), FileError);
}

// Listing

TEST(ProfileManager, profilesAreListedNewestFirstAndTiesInTheOrderOfTheFolder) {
    ProfileStore store;
    store.addFile(u"b.json"_s, numberedProfile(1, u"b"_s, 2));
    store.addFile(u"old.json"_s, numberedProfile(2, u"old"_s, 1));
    store.addFile(u"new.json"_s, numberedProfile(3, u"new"_s, 9));
    store.addFile(u"a.json"_s, numberedProfile(4, u"a"_s, 2));
    EXPECT_EQ(namesOf(store.manager.listProfiles()), (QStringList{u"new"_s, u"b"_s, u"a"_s, u"old"_s}));
}

TEST(ProfileManager, manyOfOneMomentKeepTheOrderOfTheFolder) {
    ProfileStore store(NameCase::Sensitive);
    QStringList names;
    for (int number = 1; number <= 24; ++number) {
        names.append(u"Live %1"_s.arg(number * 7 % 24));
        store.addFile(names.last() + u".json"_s, numberedProfile(number, names.last()));
    }
    EXPECT_EQ(namesOf(store.manager.listProfiles()), names);
    EXPECT_EQ(store.manager.listing().unreadable, QStringList());
}

TEST(ProfileManager, ofManyOfOneNameAndMomentTheFirstInTheFolderIsLoaded) {
    ProfileStore store;
    for (int number = 1; number <= 24; ++number) {
        store.addFile(u"Copy %1.json"_s.arg(number), numberedProfile(number, u"Live"_s));
    }
    EXPECT_EQ(store.manager.loadProfile(u"LIVE"_s), numberedProfile(1, {}));
}

TEST(ProfileManager, onlyReadableFilesWithTheExtensionAreListed) {
    ProfileStore store;
    const UnifiedProfile profile = numberedProfile(1, u"Live"_s);
    for (const QString& name : {u"upper.JSON"_s, u"mixed.Json"_s, u"none"_s, u".json"_s, u"copy.json.bak"_s}) {
        store.addFile(name, profile);
    }
    store.files.addFile(store.pathOf(u"broken.json"_s), "{");
    store.files.addFile(store.pathOf(u"empty.json"_s), "");
    store.files.addFolders(store.pathOf(u"folder.json"_s));
    store.addFile(u"locked.json"_s, profile);
    store.files.failOn(Operation::Read, store.pathOf(u"locked.json"_s));
    EXPECT_EQ(store.manager.listProfiles().size(), 0);
    EXPECT_EQ(store.manager.listing().unreadable, (QStringList{u"broken"_s, u"empty"_s, u"folder"_s, u"locked"_s}));

    store.addFile(u".hidden.json"_s, numberedProfile(2, u"Hidden"_s));
    EXPECT_EQ(namesOf(store.manager.listProfiles()), QStringList{u"Hidden"_s});
}

TEST(ProfileManager, aProfileIsListedByTheNameInsideItsFile) {
    ProfileStore store;
    store.addFile(u"Live.json"_s, numberedProfile(1, u"Gig"_s));
    EXPECT_EQ(namesOf(store.manager.listProfiles()), QStringList{u"Gig"_s});
}

TEST(ProfileManager, aFolderThatCannotBeListedIsEmpty) {
    ProfileStore store;
    store.addFile(u"Live.json"_s, numberedProfile(1, u"Live"_s));
    store.files.failOn(Operation::List, store.folder);
    EXPECT_EQ(store.manager.listProfiles().size(), 0);
}

// Loading

TEST(ProfileManager, aProfileIsLoadedByTheNameOfItsFile) {
    ProfileStore store;
    store.addFile(u"Live.json"_s, numberedProfile(1, u"Inside"_s));
    store.addFile(u"Other.json"_s, numberedProfile(2, u"Live"_s, 9));
    EXPECT_EQ(store.manager.loadProfile(u"Live"_s), numberedProfile(1, {}));
}

TEST(ProfileManager, aProfileIsFoundInAnotherCaseOnACaseSensitiveVolume) {
    ProfileStore store;
    store.addFile(u"Live.json"_s, numberedProfile(1, u"Live"_s));
    store.addFile(u"old.json"_s, numberedProfile(2, u"LIVE"_s, 1));
    store.addFile(u"new.json"_s, numberedProfile(3, u"lIVE"_s, 9));
    EXPECT_EQ(store.manager.loadProfile(u"live"_s), numberedProfile(3, {}));
    EXPECT_EQ(store.manager.loadProfile(u"liv"_s), std::nullopt);
}

TEST(ProfileManager, aProfileIsFoundByItsNameAsItIsSaved) {
    ProfileStore store;
    store.manager.saveProfile(numberedProfile(1, u"Caf\u00e9/Set"_s));
    for (const QString& name : {u"Caf\u00e9/Set"_s, u"  cafe\u0301:SET\n"_s, u"CAFE\u0301-set"_s}) {
        EXPECT_EQ(store.manager.loadProfile(name), numberedProfile(1, {})) << name.toStdString();
    }
}

TEST(ProfileManager, aNameThatAReaderTakesForAnotherIsNoneOfItsProfiles) {
    ProfileStore store;
    store.manager.saveProfile(numberedProfile(1, u"Li\u00adve"_s)); // a soft hyphen, which collation passes over
    EXPECT_EQ(store.manager.loadProfile(u"Live"_s), std::nullopt);
    store.manager.deleteProfile(u"Live"_s);
    EXPECT_EQ(store.fileNames().size(), 1);
}

TEST(ProfileManager, anUnreadableFileIsToldFromAMissingOne) {
    for (const NameCase names : {NameCase::Sensitive, NameCase::Ignored}) {
        ProfileStore store(names);
        store.files.addFile(store.pathOf(u"Live.json"_s), "{");
        store.addFile(u"Gig.json"_s, numberedProfile(1, u"Gig"_s));
        EXPECT_TRUE(store.manager.isUnreadable(u"Live"_s));
        EXPECT_TRUE(store.manager.isUnreadable(u" live"_s));
        EXPECT_FALSE(store.manager.isUnreadable(u"Gig"_s));
        EXPECT_FALSE(store.manager.isUnreadable(u"Club"_s));
        store.files.failOn(Operation::Read, store.pathOf(u"Gig.json"_s));
        EXPECT_TRUE(store.manager.isUnreadable(u"Gig"_s));
        store.files.failOn(Operation::List, store.folder);
        EXPECT_TRUE(store.manager.isUnreadable(u"Gig"_s)) << "a folder that can't be listed hides nothing";
    }
}

TEST(ProfileManager, anUnreadableFileIsPassedOverForOneThatTellsItsName) {
    ProfileStore store;
    store.files.addFile(store.pathOf(u"Live.json"_s), "{");
    store.addFile(u"Copy.json"_s, numberedProfile(1, u"Live"_s));
    EXPECT_EQ(store.manager.loadProfile(u"Live"_s), numberedProfile(1, {}));
}

TEST(ProfileManager, aMissingProfileIsNone) {
    ProfileStore store;
    EXPECT_EQ(store.manager.loadProfile(u"Live"_s), std::nullopt);
    EXPECT_EQ(store.manager.loadProfile(u""_s), std::nullopt);
}

// Saving

TEST(ProfileManager, aBlankNameIsRefused) {
    for (const QString& name : {u""_s, u" \n\t "_s, u"Live"_s + QChar(u'\0')}) {
        ProfileStore store;
        try {
            store.manager.saveProfile(numberedProfile(1, name));
            FAIL();
        } catch (const ProfileStoreError& error) {
            EXPECT_EQ(error.message(), u"Profile name is invalid."_s);
            EXPECT_EQ(static_cast<int>(error.code()), 1);
        }
        EXPECT_EQ(store.fileNames(), QStringList());
    }
}

TEST(ProfileManager, aProfileIsSavedUnderItsSanitizedName) {
    ProfileStore store;
    const UnifiedProfile profile = numberedProfile(1, u"  Live/Set \n"_s);
    store.manager.saveProfile(profile);
    EXPECT_EQ(store.fileNames(), QStringList{u"Live-Set.json"_s});
    EXPECT_EQ(profile.name, u"  Live/Set \n"_s);
    UnifiedProfile saved = profile;
    saved.name = u"Live-Set"_s;
    EXPECT_EQ(store.bytesOf(u"Live-Set.json"_s), encodeProfile(saved));
}

TEST(ProfileManager, aRenamedProfileLeavesOneFile) {
    for (const NameCase names : {NameCase::Sensitive, NameCase::Ignored}) {
        ProfileStore store(names);
        store.manager.saveProfile(numberedProfile(1, u"Live"_s));
        store.manager.saveProfile(numberedProfile(2, u"Other"_s));
        store.manager.saveProfile(numberedProfile(1, u"Gig"_s));
        EXPECT_EQ(store.fileNames(), (QStringList{u"Other.json"_s, u"Gig.json"_s}));
        EXPECT_EQ(store.profileIn(u"Gig.json"_s), numberedProfile(1, {}));
    }
}

TEST(ProfileManager, aNameThatChangesOnlyItsCaseLeavesOneFileInTheNewSpelling) {
    for (const NameCase names : {NameCase::Sensitive, NameCase::Ignored}) {
        ProfileStore store(names);
        store.manager.saveProfile(numberedProfile(1, u"live"_s));
        store.manager.saveProfile(numberedProfile(1, u"Live"_s, 5));
        EXPECT_EQ(store.fileNames(), QStringList{u"Live.json"_s});
        EXPECT_EQ(store.bytesOf(u"Live.json"_s), encodeProfile(numberedProfile(1, u"Live"_s, 5)));
    }
}

TEST(ProfileManager, aNameThatChangesOnlyItsCompositionLeavesOneFile) {
    for (const NameCase names : {NameCase::Sensitive, NameCase::Ignored}) {
        ProfileStore store(names);
        store.manager.saveProfile(numberedProfile(1, u"Cafe\u0301"_s));
        store.manager.saveProfile(numberedProfile(1, u"Caf\u00e9"_s));
        EXPECT_EQ(store.fileNames(), QStringList{u"Caf\u00e9.json"_s});
    }
}

TEST(ProfileManager, aNewProfileReplacesTheOneOfItsName) {
    ProfileStore store;
    store.manager.saveProfile(numberedProfile(1, u"Live"_s));
    store.manager.saveProfile(numberedProfile(2, u"Live"_s));
    EXPECT_EQ(store.fileNames(), QStringList{u"Live.json"_s});
    EXPECT_EQ(store.profileIn(u"Live.json"_s), numberedProfile(2, {}));
}

TEST(ProfileManager, aNewProfileGivesAnIgnoredCaseItsOwnSpelling) {
    ProfileStore store(NameCase::Ignored);
    store.manager.saveProfile(numberedProfile(1, u"live"_s));
    store.manager.saveProfile(numberedProfile(2, u"LIVE"_s));
    EXPECT_EQ(store.fileNames(), QStringList{u"LIVE.json"_s});
    EXPECT_EQ(store.profileIn(u"LIVE.json"_s), numberedProfile(2, {}));
}

TEST(ProfileManager, aProfileMovesOutOfAFileOfAnotherName) {
    ProfileStore store;
    store.addFile(u"Odd.json"_s, numberedProfile(1, u"Gig"_s));
    store.addFile(u"Gig.txt"_s, numberedProfile(1, u"Gig"_s));
    store.manager.saveProfile(numberedProfile(1, u"Gig"_s));
    EXPECT_EQ(store.fileNames(), (QStringList{u"Gig.txt"_s, u"Gig.json"_s}));

    store.addFile(u"Odd.json"_s, numberedProfile(2, u"Show"_s));
    store.manager.saveProfile(numberedProfile(2, u"Tour"_s));
    EXPECT_EQ(store.fileNames(), (QStringList{u"Gig.txt"_s, u"Gig.json"_s, u"Tour.json"_s}));
}

TEST(ProfileManager, aCopyThatTheUserMadeStays) {
    ProfileStore store;
    store.addFile(u"Live.json"_s, numberedProfile(1, u"Live"_s));
    store.addFile(u"Live copy.json"_s, numberedProfile(1, u"Live"_s));
    store.manager.saveProfile(numberedProfile(1, u"Live"_s));
    EXPECT_EQ(store.fileNames(), (QStringList{u"Live.json"_s, u"Live copy.json"_s}));
}

TEST(ProfileManager, aCopyWithANameOfItsOwnStaysWhenTheProfileIsSaved) {
    for (const NameCase names : {NameCase::Sensitive, NameCase::Ignored}) {
        ProfileStore store(names);
        store.addFile(u"Live.json"_s, numberedProfile(1, u"Live"_s));
        store.addFile(u"Live B.json"_s, numberedProfile(1, u"Live B"_s));
        store.manager.saveProfile(numberedProfile(1, u"Live"_s));
        EXPECT_EQ(store.fileNames(), (QStringList{u"Live.json"_s, u"Live B.json"_s}));
        store.manager.saveProfile(numberedProfile(1, u"Live B"_s, 3));
        EXPECT_EQ(store.fileNames(), (QStringList{u"Live.json"_s, u"Live B.json"_s}));
    }
}

TEST(ProfileManager, aCopyWithANameOfItsOwnStaysWhenTheProfilesNameChangesItsCase) {
    for (const NameCase names : {NameCase::Sensitive, NameCase::Ignored}) {
        ProfileStore store(names);
        store.addFile(u"live.json"_s, numberedProfile(1, u"live"_s));
        store.addFile(u"Live B.json"_s, numberedProfile(1, u"Live B"_s));
        store.manager.saveProfile(numberedProfile(1, u"Live"_s));
        QStringList left = store.fileNames();
        left.sort();
        EXPECT_EQ(left, (QStringList{u"Live B.json"_s, u"Live.json"_s}));
    }
}

TEST(ProfileManager, whereItCannotBeToldWhichFileTheProfileMovesOutOfAllStay) {
    ProfileStore store;
    store.addFile(u"Live.json"_s, numberedProfile(1, u"Live"_s));
    store.addFile(u"Live B.json"_s, numberedProfile(1, u"Live B"_s));
    store.manager.saveProfile(numberedProfile(1, u"Gig"_s));
    EXPECT_EQ(store.fileNames(), (QStringList{u"Live.json"_s, u"Live B.json"_s, u"Gig.json"_s}));
}

TEST(ProfileManager, aCopyThatTheUserMadeStaysWhenTheProfileIsRenamed) {
    ProfileStore store;
    store.addFile(u"Live.json"_s, numberedProfile(1, u"Live"_s));
    store.addFile(u"Live copy.json"_s, numberedProfile(1, u"Live"_s));
    store.manager.saveProfile(numberedProfile(1, u"Gig"_s));
    EXPECT_EQ(store.fileNames(), (QStringList{u"Live copy.json"_s, u"Gig.json"_s}));
}

TEST(ProfileManager, aRenameDoesNotTouchTheFileOfAnotherProfile) {
    ProfileStore store;
    store.addFile(u"Odd.json"_s, numberedProfile(1, u"Gig"_s));
    store.addFile(u"Gig.json"_s, numberedProfile(2, u"Other"_s));
    store.manager.saveProfile(numberedProfile(1, u"Tour"_s));
    EXPECT_EQ(store.fileNames(), (QStringList{u"Gig.json"_s, u"Tour.json"_s}));
    EXPECT_EQ(store.profileIn(u"Gig.json"_s), numberedProfile(2, {}));
}

TEST(ProfileManager, aFailureAtAnyChangeLosesNothing) {
    for (const NameCase names : {NameCase::Sensitive, NameCase::Ignored}) {
        for (const QString& newName : {u"live"_s, u"Live"_s, u"Gig"_s}) {
            for (int number = 1; number <= 4; ++number) {
                SCOPED_TRACE(newName.toStdString() + std::to_string(number));
                ProfileStore store(names);
                store.addFile(u"live.json"_s, numberedProfile(1, u"live"_s, 1));
                const QByteArray before = store.bytesOf(u"live.json"_s);
                const UnifiedProfile changed = numberedProfile(1, newName, 2);
                store.files.failAtChange(number);
                bool wasSaved = true;
                try {
                    store.manager.saveProfile(changed);
                } catch (const FileError&) {
                    wasSaved = false;
                }
                EXPECT_EQ(wasSaved, number > 1);
                if (wasSaved) {
                    ASSERT_FALSE(store.manager.listProfiles().isEmpty());
                    EXPECT_TRUE(store.manager.listProfiles().first().hasSameContent(changed));
                    EXPECT_EQ(store.manager.listProfiles().first().dateCreated, changed.dateCreated);
                } else {
                    EXPECT_EQ(store.fileNames(), QStringList{u"live.json"_s});
                    EXPECT_EQ(store.bytesOf(u"live.json"_s), before);
                }
            }
        }
    }
}

TEST(ProfileManager, anOldFileThatCannotBeRemovedIsNoFailure) {
    ProfileStore store;
    store.manager.saveProfile(numberedProfile(1, u"Live"_s));
    store.files.failOn(Operation::Remove, store.pathOf(u"Live.json"_s));
    store.manager.saveProfile(numberedProfile(1, u"Gig"_s));
    EXPECT_EQ(store.fileNames(), (QStringList{u"Live.json"_s, u"Gig.json"_s}));
}

TEST(ProfileManager, aSpellingThatCannotBeChangedKeepsTheFile) {
    ProfileStore store(NameCase::Ignored);
    store.manager.saveProfile(numberedProfile(1, u"live"_s));
    store.files.failOn(Operation::Move, store.pathOf(u"live.json"_s));
    store.manager.saveProfile(numberedProfile(1, u"Live"_s));
    EXPECT_EQ(store.fileNames(), QStringList{u"live.json"_s});
    EXPECT_EQ(store.profileIn(u"live.json"_s).name, u"Live"_s);
}

TEST(ProfileManager, aProfileIsSavedThoughTheFolderCannotBeListed) {
    ProfileStore store;
    store.files.failOn(Operation::List, store.folder);
    store.manager.saveProfile(numberedProfile(1, u"Live"_s));
    EXPECT_EQ(store.manager.loadProfile(u"Live"_s), numberedProfile(1, {}));
}

TEST(ProfileManager, aProfileThatCannotBeWrittenLeavesTheOldFile) {
    ProfileStore store;
    store.manager.saveProfile(numberedProfile(1, u"Live"_s));
    UnifiedProfile undated = numberedProfile(1, u"Live"_s);
    undated.dateCreated = QDateTime();
    EXPECT_THROW(store.manager.saveProfile(undated), EncodingError);
    EXPECT_EQ(store.bytesOf(u"Live.json"_s), encodeProfile(numberedProfile(1, u"Live"_s)));
}

// Deleting

TEST(ProfileManager, aProfileIsDeletedByTheNameOfItsFile) {
    ProfileStore store;
    store.manager.saveProfile(numberedProfile(1, u"Live"_s));
    store.manager.saveProfile(numberedProfile(2, u"Gig"_s));
    store.manager.deleteProfile(u"Live"_s);
    store.manager.deleteProfile(u"Missing"_s);
    EXPECT_EQ(store.fileNames(), QStringList{u"Gig.json"_s});
}

TEST(ProfileManager, aProfileIsDeletedInAnyCase) {
    for (const NameCase names : {NameCase::Sensitive, NameCase::Ignored}) {
        ProfileStore store(names);
        store.manager.saveProfile(numberedProfile(1, u"Live"_s));
        store.manager.deleteProfile(u"LIVE"_s);
        EXPECT_EQ(store.fileNames(), QStringList());
    }
}

TEST(ProfileManager, aProfileIsDeletedByItsNameAsItIsSaved) {
    for (const QString& name : {u" Caf\u00e9/Set"_s, u"cafe\u0301-set"_s}) {
        ProfileStore store;
        store.manager.saveProfile(numberedProfile(1, u"Caf\u00e9-Set"_s));
        store.manager.deleteProfile(name);
        EXPECT_EQ(store.fileNames(), QStringList()) << name.toStdString();
    }
}

TEST(ProfileManager, aFileThatCannotBeRemovedTakesNoneOfItsNameAlong) {
    ProfileStore store;
    store.addFile(u"Live.json"_s, numberedProfile(1, u"Live"_s));
    store.addFile(u"live.json"_s, numberedProfile(2, u"live"_s, 9));
    store.files.failOn(Operation::Remove, store.pathOf(u"Live.json"_s));
    store.manager.deleteProfile(u"Live"_s);
    EXPECT_EQ(store.fileNames(), (QStringList{u"Live.json"_s, u"live.json"_s}));
}

TEST(ProfileManager, oneOfTwoProfilesThatDifferInCaseIsDeleted) {
    ProfileStore store;
    store.manager.saveProfile(numberedProfile(1, u"gig"_s));
    store.manager.saveProfile(numberedProfile(2, u"Gig"_s));
    store.manager.deleteProfile(u"Gig"_s);
    EXPECT_EQ(store.fileNames(), QStringList{u"gig.json"_s});
}

TEST(ProfileManager, aProfileInAFileOfAnotherNameIsNotDeletedByItsName) {
    ProfileStore store;
    store.addFile(u"Live.json"_s, numberedProfile(1, u"Gig"_s));
    store.manager.deleteProfile(u"Gig"_s);
    EXPECT_EQ(store.fileNames(), QStringList{u"Live.json"_s});
}

TEST(ProfileManager, aFileThatHoldsAnotherProfileIsNotDeletedForItsName) {
    ProfileStore store;
    store.addFile(u"Live.json"_s, numberedProfile(1, u"Gig"_s));
    store.addFile(u"Gig.json"_s, numberedProfile(2, u"Other"_s));
    store.manager.deleteProfile(u"gig"_s);
    EXPECT_EQ(store.fileNames(), (QStringList{u"Live.json"_s, u"Gig.json"_s}));
}

TEST(ProfileManager, aFileThatCannotBeRemovedStaysAndSoDoOthers) {
    ProfileStore store;
    store.addFile(u"Live.json"_s, numberedProfile(1, u"Gig"_s));
    store.addFile(u"Gig.json"_s, numberedProfile(2, u"Gig 2"_s));
    store.files.failOn(Operation::Remove, store.pathOf(u"Live.json"_s));
    store.manager.deleteProfile(u"Live"_s);
    EXPECT_EQ(store.fileNames(), (QStringList{u"Live.json"_s, u"Gig.json"_s}));
}

} // namespace
} // namespace quorvane
