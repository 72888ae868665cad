// What bundles say of themselves, on every system.

#include "contract/BundlesContract.h"

#include <array>
#include <thread>

namespace quorvane {

namespace {

const QString kIdentifierKey = u"CFBundleIdentifier"_s;

} // namespace

TEST_P(BundlesContract, theInfoDictionaryIsReadAnywhere) {
    subject->put(path(u"Set.app/Contents/Info.plist"_s),
                 "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>com.example.set</string>"
                 "<key>LSUIElement</key><true/></dict></plist>");
    const std::optional<QVariantMap> info = bundles.infoDictionary(path(u"Set.app"_s));
    ASSERT_TRUE(info);
    EXPECT_EQ(info->value(kIdentifierKey), QVariant(u"com.example.set"_s));
    EXPECT_EQ(info->value(u"LSUIElement"_s), QVariant(true));
}

TEST_P(BundlesContract, aFolderWithoutAReadableInfoDictionaryHasAnEmptyOne) {
    subject->put(path(u"Bare.app/Contents/MacOS/Bare"_s), "x");
    subject->put(path(u"Damaged.app/Contents/Info.plist"_s), "<plist><dict>");
    subject->put(path(u"Array.app/Contents/Info.plist"_s), "<plist><array/></plist>");
    for (const QString& name : {u"Bare.app"_s, u"Damaged.app/"_s, u"Array.app"_s}) {
        EXPECT_EQ(bundles.infoDictionary(path(name)), QVariantMap()) << name.toStdString();
    }
    EXPECT_EQ(bundles.infoDictionary(subject->folder()), QVariantMap());
}

TEST_P(BundlesContract, whereThereIsNoFolderThereIsNoDictionary) {
    subject->put(path(u"File.app"_s), "x");
    EXPECT_EQ(bundles.infoDictionary(path(u"File.app"_s)), std::nullopt);
    EXPECT_EQ(bundles.infoDictionary(path(u"Gone.app"_s)), std::nullopt);
    EXPECT_EQ(bundles.infoDictionary(QString()), std::nullopt);
}

TEST_P(BundlesContract, anUpdatedBundleSaysWhatItIsNow) {
    for (const QByteArray& version : {QByteArray("11.3"), QByteArray("12.0")}) {
        subject->put(path(u"Live.app/Contents/Info.plist"_s),
                     "<plist version=\"1.0\"><dict><key>CFBundleShortVersionString</key><string>" + version +
                         "</string></dict></plist>");
        const std::optional<QVariantMap> info = bundles.infoDictionary(path(u"Live.app"_s));
        ASSERT_TRUE(info);
        EXPECT_EQ(info->value(u"CFBundleShortVersionString"_s), QVariant(QString::fromLatin1(version)));
    }
}

TEST_P(BundlesContract, anInstalledApplicationIsFoundByItsIdentifierInAnyCase) {
    const std::optional<QVariantMap> info = bundles.infoDictionary(subject->installedPath());
    ASSERT_TRUE(info);
    EXPECT_EQ(info->value(kIdentifierKey).toString(), subject->installedIdentifier());
    EXPECT_EQ(bundles.infoDictionaryWithIdentifier(subject->installedIdentifier()), info);
    EXPECT_EQ(bundles.infoDictionaryWithIdentifier(subject->installedIdentifier().toUpper()), info);
}

TEST_P(BundlesContract, anIdentifierOfNothingIsNone) {
    for (const QString& identifier : {u"com.quorvane.nothing-has-this-identifier"_s, u"com"_s, QString()}) {
        EXPECT_EQ(bundles.infoDictionaryWithIdentifier(identifier), std::nullopt) << identifier.toStdString();
    }
}

TEST_P(BundlesContract, severalThreadsAskAtOnce) {
    constexpr int kRounds = 50;
    const std::optional<QVariantMap> wanted = bundles.infoDictionary(subject->installedPath());
    ASSERT_TRUE(wanted);
    std::array<int, 4> right{};
    std::array<std::thread, 4> threads;
    for (std::size_t number = 0; number < threads.size(); ++number) {
        threads[number] = std::thread([this, &right, &wanted, number] {
            for (int round = 0; round < kRounds; ++round) {
                right[number] += bundles.infoDictionaryWithIdentifier(subject->installedIdentifier()) == wanted ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const int count : right) {
        EXPECT_EQ(count, kRounds);
    }
}

} // namespace quorvane
