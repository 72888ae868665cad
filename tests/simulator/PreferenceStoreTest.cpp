#include "simulator/PreferenceStore.h"

#include "fakes/SimulatedMacFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <thread>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

using StoreOutcome = PreferenceStore::Outcome;
using Dictionary = PropertyList::Dictionary;

const PreferenceDomain kExample{u"com.example"_s};
const PreferenceDomain kExampleHere{u"com.example"_s, PreferenceHost::Current};
const QString kExampleFile = u"/Users/alex/Library/Preferences/com.example.plist"_s;

class PreferenceStoreTest : public testing::Test {
protected:
    SimulatedMacFolder folder;
    Volume disk = folder.mac.volume(Actor::User);
    Volume rootsDisk = folder.mac.volume(Actor::Root);
    PreferenceStore store{folder.mac, disk};
    PreferenceStore rootsStore{folder.mac, rootsDisk};
};

} // namespace

TEST_F(PreferenceStoreTest, everyDomainHasItsFile) {
    const QString home = u"/Users/alex/Library/Preferences/"_s;
    const QString here = u".11111111-2222-3333-4444-555555555555.plist"_s;
    const QString global = kGlobalDomain.toString();
    const std::vector<std::pair<PreferenceDomain, QString>> cases{
        {{u"com.example"_s}, home + u"com.example.plist"_s},
        {{u"com.example.plist"_s}, home + u"com.example.plist"_s},
        {{u"com.example"_s, PreferenceHost::Current}, home + u"ByHost/com.example"_s + here},
        {{global}, home + u".GlobalPreferences.plist"_s},
        {{global, PreferenceHost::Current}, home + u"ByHost/.GlobalPreferences"_s + here},
        {{u"/tmp/x"_s}, u"/tmp/x.plist"_s},
        {{u"/tmp/x.plist"_s}, u"/tmp/x.plist"_s},
        {{u"/tmp/x"_s, PreferenceHost::Current}, u"/tmp/x"_s + here},
        {{u"/tmp/x.plist"_s, PreferenceHost::Current}, u"/tmp/x"_s + here},
    };
    for (const auto& [domain, path] : cases) {
        EXPECT_EQ(store.filePath(domain), path);
    }
    EXPECT_EQ(rootsStore.filePath(kExample), u"/var/root/Library/Preferences/com.example.plist"_s);
}

TEST_F(PreferenceStoreTest, aWrittenValueIsReadWithItsType) {
    for (const PropertyList& value : {PropertyList(true), PropertyList(1), PropertyList(1.0), PropertyList(u"1"_s)}) {
        EXPECT_EQ(store.write(kExample, u"key"_s, value), StoreOutcome::Done);
        EXPECT_EQ(store.read(kExample, u"key"_s), value);
    }
    EXPECT_TRUE(disk.read(kExampleFile).startsWith("bplist00"));
}

TEST_F(PreferenceStoreTest, otherKeysStay) {
    disk.write(kExampleFile, xmlPropertyList(Dictionary{{u"a"_s, 1}, {u"b"_s, 2}}));
    EXPECT_EQ(store.write(kExample, u"c"_s, 3), StoreOutcome::Done);
    EXPECT_EQ(store.remove(kExample, u"a"_s), StoreOutcome::Done);
    EXPECT_EQ(store.readDomain(kExample), (Dictionary{{u"b"_s, 2}, {u"c"_s, 3}}));
}

TEST_F(PreferenceStoreTest, theHostsOwnValuesAreASeparateStore) {
    store.write(kExampleHere, u"key"_s, 1);
    EXPECT_EQ(store.read(kExample, u"key"_s), std::nullopt);
    EXPECT_EQ(store.read(kExampleHere, u"key"_s), 1);
    const QString path = u"/Users/alex/Library/Preferences/ByHost/com.example"_s;
    EXPECT_EQ(store.read({path, PreferenceHost::Current}, u"key"_s), 1);
    EXPECT_EQ(store.read({path}, u"key"_s), std::nullopt);
}

TEST_F(PreferenceStoreTest, rootWritesItsOwnPreferences) {
    store.write(kExample, u"key"_s, u"user"_s);
    EXPECT_EQ(rootsStore.write(kExample, u"key"_s, u"root"_s), StoreOutcome::Done);
    EXPECT_EQ(store.read(kExample, u"key"_s), u"user"_s);
    EXPECT_EQ(rootsStore.read(kExample, u"key"_s), u"root"_s);
    EXPECT_TRUE(rootsDisk.exists(u"/private/var/root/Library/Preferences/com.example.plist"_s));
}

TEST_F(PreferenceStoreTest, aDomainWithoutKeysIsMissing) {
    EXPECT_EQ(store.readDomain(kExample), std::nullopt);
    store.write(kExample, u"key"_s, 1);
    EXPECT_EQ(store.remove(kExample, u"key"_s), StoreOutcome::Done);
    EXPECT_EQ(store.readDomain(kExample), std::nullopt);
    EXPECT_EQ(store.remove(kExample, u"key"_s), StoreOutcome::Missing);
    EXPECT_EQ(store.removeDomain(kExample), StoreOutcome::Missing);
}

TEST_F(PreferenceStoreTest, removingWhatIsMissingWritesNothing) {
    EXPECT_EQ(store.remove(kExample, u"key"_s), StoreOutcome::Missing);
    EXPECT_EQ(store.removeDomain(kExample), StoreOutcome::Missing);
    EXPECT_FALSE(disk.exists(kExampleFile));
}

TEST_F(PreferenceStoreTest, aWholeDomainIsReplacedOrRemoved) {
    store.write(kExample, u"old"_s, 1);
    EXPECT_EQ(store.writeDomain(kExample, {{u"new"_s, 2}}), StoreOutcome::Done);
    EXPECT_EQ(store.readDomain(kExample), (Dictionary{{u"new"_s, 2}}));
    EXPECT_EQ(store.removeDomain(kExample), StoreOutcome::Done);
    EXPECT_EQ(store.readDomain(kExample), std::nullopt);
}

TEST_F(PreferenceStoreTest, aDamagedFileReadsAsMissingAndKeepsItsContent) {
    for (const QByteArray& content : {QByteArray("damaged"), QByteArray(), xmlPropertyList(PropertyList::Array{1})}) {
        disk.write(kExampleFile, content);
        EXPECT_EQ(store.readDomain(kExample), std::nullopt);
        EXPECT_EQ(store.read(kExample, u"key"_s), std::nullopt);
        EXPECT_EQ(store.write(kExample, u"key"_s, 1), StoreOutcome::Refused);
        EXPECT_EQ(store.removeDomain(kExample), StoreOutcome::Refused);
        EXPECT_EQ(disk.read(kExampleFile), content);
    }
}

TEST_F(PreferenceStoreTest, aFullDiskLeavesTheOldContent) {
    store.write(kExample, u"key"_s, 1);
    const QByteArray before = disk.read(kExampleFile);
    const PreferenceStore full(folder.mac, disk.full());
    EXPECT_EQ(full.write(kExample, u"key"_s, 2), StoreOutcome::Refused);
    EXPECT_EQ(full.remove(kExample, u"key"_s), StoreOutcome::Refused);
    EXPECT_EQ(disk.read(kExampleFile), before);
}

TEST_F(PreferenceStoreTest, aFileThatIsNotTheActorsIsRefused) {
    const PreferenceDomain shared{u"/Library/Preferences/com.example"_s};
    EXPECT_EQ(store.write(shared, u"key"_s, 1), StoreOutcome::Refused);
    EXPECT_EQ(rootsStore.write(shared, u"key"_s, 1), StoreOutcome::Done);
    EXPECT_EQ(store.read(shared, u"key"_s), 1);
    EXPECT_EQ(store.remove(shared, u"key"_s), StoreOutcome::Refused);
    EXPECT_EQ(rootsStore.write({u"/System/Library/x"_s}, u"key"_s, 1), StoreOutcome::Refused);
}

TEST_F(PreferenceStoreTest, anUnreadableFileIsMissing) {
    rootsStore.write(kExample, u"key"_s, 1);
    const PreferenceDomain roots{u"/var/root/Library/Preferences/com.example"_s};
    EXPECT_EQ(store.read(roots, u"key"_s), std::nullopt);
    EXPECT_EQ(store.remove(roots, u"key"_s), StoreOutcome::Refused);
}

TEST_F(PreferenceStoreTest, aValueThatNoFileHoldsIsRefused) {
    store.write(kExample, u"key"_s, 1);
    EXPECT_EQ(store.write(kExample, u"key"_s, u"a\0b"_s), StoreOutcome::Refused);
    EXPECT_EQ(store.read(kExample, u"key"_s), 1);
}

TEST_F(PreferenceStoreTest, missingFoldersAreMade) {
    disk.remove(u"/Users/alex/Library/Preferences/ByHost"_s);
    EXPECT_EQ(store.write(kExampleHere, u"key"_s, 1), StoreOutcome::Done);
    EXPECT_EQ(store.read(kExampleHere, u"key"_s), 1);
}

TEST_F(PreferenceStoreTest, domainsAreListedForTheirHost) {
    store.write({u"com.b"_s}, u"key"_s, 1);
    store.write({u"com.a"_s}, u"key"_s, 1);
    store.write({kGlobalDomain.toString()}, u"key"_s, 1);
    store.write({u"com.c"_s, PreferenceHost::Current}, u"key"_s, 1);
    disk.write(u"/Users/alex/Library/Preferences/notes.txt"_s, "no preferences");
    EXPECT_EQ(store.domains(PreferenceHost::Any), (QStringList{u"NSGlobalDomain"_s, u"com.a"_s, u"com.b"_s}));
    EXPECT_EQ(store.domains(PreferenceHost::Current), QStringList{u"com.c"_s});
    EXPECT_EQ(rootsStore.domains(PreferenceHost::Any), QStringList());
}

TEST_F(PreferenceStoreTest, writersAtTheSameTimeLoseNothing) {
    const auto writeKeys = [this](const QString& prefix) {
        for (int i = 0; i < 50; ++i) {
            PreferenceStore(folder.mac, disk).write(kExample, prefix + QString::number(i), i);
        }
    };
    std::thread other(writeKeys, u"a"_s);
    writeKeys(u"b"_s);
    other.join();
    EXPECT_EQ(store.readDomain(kExample).value_or(Dictionary()).size(), 100U);
}

} // namespace macsim
