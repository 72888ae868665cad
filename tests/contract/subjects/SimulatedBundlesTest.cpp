// Bundles on a simulated Mac: the contract, and where applications count as installed.

#include "platform/simulated/SimulatedBundles.h"
#include "contract/BundlesContract.h"
#include "fakes/MacSetUp.h"
#include "fakes/SimulatedMacFolder.h"
#include "platform/simulated/SimulatedPropertyLists.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <array>
#include <thread>

namespace quorvane {

namespace {

class SimulatedBundlesSubject final : public BundlesSubject {
public:
    SimulatedBundlesSubject() {
        macsim::setPermission(m_mac.mac, "appManagement", true);
        put(installedPath() + u"/Contents/Info.plist"_s,
            "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>" + installedIdentifier().toUtf8() +
                "</string></dict></plist>");
        m_mac.mac.volume(macsim::Actor::User).createFolders(folder());
    }
    const Bundles& bundles() const override { return m_bundles; }
    QString installedIdentifier() const override { return u"com.ableton.live"_s; }
    QString installedPath() const override { return u"/Applications/Live.app"_s; }
    QString folder() const override { return u"/Users/alex/Documents"_s; }
    void put(const QString& path, const QByteArray& bytes) override {
        const macsim::Volume volume = m_mac.mac.volume(macsim::Actor::User);
        volume.createFolders(path.left(path.lastIndexOf(u'/')));
        volume.write(path, bytes);
    }

private:
    macsim::SimulatedMacFolder m_mac;
    SimulatedPropertyLists m_lists{m_mac.mac};
    SimulatedBundles m_bundles{m_mac.mac, m_lists};
};

class SimulatedBundlesFolder : public ::testing::Test {
protected:
    /// Writes a file anywhere, the sealed system included.
    void put(const QString& path, const QByteArray& bytes) {
        QFile file(mac.hostFolder() + path);
        ASSERT_TRUE(QDir().mkpath(QFileInfo(file.fileName()).path()));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    void install(const QString& bundle, const QString& identifier) {
        put(bundle + u"/Contents/Info.plist"_s, "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>" +
                                                    identifier.toUtf8() + "</string><key>Path</key><string>" +
                                                    bundle.toUtf8() + "</string></dict></plist>");
    }
    /// Where the application is that is found by an identifier; empty when there is none.
    QString found(const QString& identifier) const {
        const std::optional<QVariantMap> info = bundles.infoDictionaryWithIdentifier(identifier);
        return info ? info->value(u"Path"_s).toString() : QString();
    }

    macsim::SimulatedMacFolder mac;
    SimulatedPropertyLists lists{mac.mac};
    SimulatedBundles bundles{mac.mac, lists};
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Simulated, BundlesContract,
                         ::testing::Values(&makeSubject<BundlesSubject, SimulatedBundlesSubject>));

TEST_F(SimulatedBundlesFolder, anApplicationIsFoundByItsIdentifierInAnyCase) {
    install(u"/Applications/Live.app"_s, u"com.ableton.live"_s);
    install(u"/Applications/Utilities/Meter.app"_s, u"com.example.Meter"_s);
    install(u"/Users/alex/Applications/Own.app"_s, u"com.example.own"_s);
    install(u"/System/Applications/Music.app"_s, u"com.apple.Music"_s);
    install(u"/Users/alex/Documents/Elsewhere.app"_s, u"com.example.elsewhere"_s);
    EXPECT_EQ(found(u"com.ableton.live"_s), u"/Applications/Live.app"_s);
    EXPECT_EQ(found(u"COM.example.meter"_s), u"/Applications/Utilities/Meter.app"_s);
    EXPECT_EQ(found(u"com.example.own"_s), u"/Users/alex/Applications/Own.app"_s);
    EXPECT_EQ(found(u"com.apple.Music"_s), u"/System/Applications/Music.app"_s);
    EXPECT_EQ(bundles.infoDictionaryWithIdentifier(u"com.example.elsewhere"_s), std::nullopt);
    EXPECT_EQ(bundles.infoDictionaryWithIdentifier(u"com.example"_s), std::nullopt);
    EXPECT_EQ(bundles.infoDictionaryWithIdentifier(QString()), std::nullopt);
}

TEST_F(SimulatedBundlesFolder, ofTwoWithOneIdentifierTheFirstPlaceCounts) {
    install(u"/Users/alex/Applications/Live.app"_s, u"com.ableton.live"_s);
    install(u"/Applications/Live.app"_s, u"com.ableton.live"_s);
    EXPECT_EQ(found(u"com.ableton.live"_s), u"/Applications/Live.app"_s);
}

TEST_F(SimulatedBundlesFolder, whatIsInstalledMovedOrRemovedLaterIsNoticed) {
    install(u"/Applications/Live.app"_s, u"com.ableton.live"_s);
    EXPECT_EQ(found(u"com.example.later"_s), QString());
    install(u"/Applications/Later.app"_s, u"com.example.later"_s);
    EXPECT_EQ(found(u"com.example.later"_s), u"/Applications/Later.app"_s);
    const macsim::Volume volume = mac.mac.volume(macsim::Actor::User);
    macsim::setPermission(mac.mac, "appManagement", true);
    volume.move(u"/Applications/Live.app"_s, u"/Applications/Live 12.app"_s);
    EXPECT_TRUE(bundles.infoDictionaryWithIdentifier(u"com.ableton.live"_s));
    volume.move(u"/Applications/Live 12.app"_s, u"/Users/alex/Documents/Live 12.app"_s);
    EXPECT_EQ(bundles.infoDictionaryWithIdentifier(u"com.ableton.live"_s), std::nullopt);
}

TEST_F(SimulatedBundlesFolder, severalThreadsAskAtOnce) {
    constexpr int kApplications = 50;
    for (int index = 0; index < kApplications; ++index) {
        install(u"/Applications/%1.app"_s.arg(index), u"com.example.%1"_s.arg(index));
    }
    std::array<int, 4> right{};
    std::array<std::thread, 4> threads;
    for (std::size_t number = 0; number < threads.size(); ++number) {
        threads[number] = std::thread([this, &right, number] {
            for (int index = 0; index < kApplications; ++index) {
                right[number] += found(u"com.example.%1"_s.arg(index)) == u"/Applications/%1.app"_s.arg(index) ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const int count : right) {
        EXPECT_EQ(count, kApplications);
    }
}

TEST_F(SimulatedBundlesFolder, theInfoDictionaryIsReadAnywhere) {
    install(u"/Users/alex/Documents/Set.app"_s, u"com.example.set"_s);
    EXPECT_EQ(bundles.infoDictionary(u"/Users/alex/Documents/Set.app"_s),
              (QVariantMap{{u"CFBundleIdentifier"_s, u"com.example.set"_s},
                           {u"Path"_s, u"/Users/alex/Documents/Set.app"_s}}));
}

TEST_F(SimulatedBundlesFolder, whereThereIsNoFolderThereIsNoDictionary) {
    put(u"/Applications/File.app"_s, "x");
    for (const QString& path :
         {u"/Applications/Gone.app"_s, u"/Applications/File.app"_s, u"/var/root/x.app"_s, u"Gone.app"_s, QString()}) {
        EXPECT_EQ(bundles.infoDictionary(path), std::nullopt) << path.toStdString();
    }
}

TEST_F(SimulatedBundlesFolder, aFolderWithoutAReadableInfoDictionaryHasAnEmptyOne) {
    put(u"/Applications/Bare.app/Contents/MacOS/Bare"_s, "x");
    put(u"/Applications/Damaged.app/Contents/Info.plist"_s, "<plist><dict>");
    put(u"/Applications/Array.app/Contents/Info.plist"_s, "<plist><array/></plist>");
    for (const QString& path :
         {u"/Applications/Bare.app"_s, u"/Applications/Damaged.app/"_s, u"/Applications/Array.app"_s, u"/Library"_s}) {
        EXPECT_EQ(bundles.infoDictionary(path), QVariantMap()) << path.toStdString();
    }
}

} // namespace quorvane
