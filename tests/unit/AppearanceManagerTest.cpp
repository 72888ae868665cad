#include "appearance/AppearanceManager.h"

#include "fakes/ManualSystemLook.h"
#include "fakes/MemoryUserDefaults.h"
#include "fakes/RecordingAppearance.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Schemes = QList<std::optional<ColorScheme>>;

const QString kAppearanceKey = u"appearanceMode"_s;

class AppearanceManagerTest : public ::testing::Test {
protected:
    AppearanceManagerTest() { start(); }

    /// Starts the program anew with the same preferences.
    void start() {
        manager = std::make_unique<AppearanceManager>(appearance, system, defaults);
        QObject::connect(manager.get(), &AppearanceManager::appearanceChanged, [this] {
            heard.append(manager->mode() + u", stored "_s + defaults.string(kAppearanceKey).value_or(u"nothing"_s) +
                         u", applied %1"_s.arg(appearance.schemes.size()));
        });
    }
    void startWith(const QString& mode) {
        defaults.values.insert(kAppearanceKey, mode);
        start();
    }
    void makeSystem(ColorScheme scheme) {
        system.systemScheme = scheme;
        system.tell();
    }
    /// What those who draw were told since the last call.
    QStringList takeHeard() { return std::exchange(heard, {}); }

    RecordingAppearance appearance;
    ManualSystemLook system;
    MemoryUserDefaults defaults;
    QStringList heard;
    std::unique_ptr<AppearanceManager> manager;
};

} // namespace

TEST_F(AppearanceManagerTest, followsTheSystemWhereNothingIsStored) {
    EXPECT_EQ(manager->mode(), u"system"_s);
    EXPECT_EQ(manager->preferredColorScheme(), std::nullopt);
    EXPECT_EQ(defaults.writtenKeys, QStringList()) << "reading writes nothing";
    EXPECT_EQ(appearance.schemes, Schemes()) << "nothing is applied before the window is there";
}

TEST_F(AppearanceManagerTest, keepsTheModeOverAStart) {
    manager->setMode(u"dark"_s);
    start();
    EXPECT_EQ(manager->mode(), u"dark"_s);
    EXPECT_EQ(manager->preferredColorScheme(), ColorScheme::Dark);
}

TEST_F(AppearanceManagerTest, appliesEachMode) {
    manager->setMode(u"light"_s);
    manager->setMode(u"dark"_s);
    manager->setMode(u"system"_s);
    EXPECT_EQ(appearance.schemes, Schemes({ColorScheme::Light, ColorScheme::Dark, std::nullopt}));
}

TEST_F(AppearanceManagerTest, whoDrawsFindsTheModeStoredAndApplied) {
    manager->setMode(u"light"_s);
    EXPECT_EQ(takeHeard(), QStringList(u"light, stored light, applied 1"_s));
}

TEST_F(AppearanceManagerTest, settingTheSameModeTwiceWritesAndAppliesItOnce) {
    manager->setMode(u"dark"_s);
    manager->setMode(u"dark"_s);
    EXPECT_EQ(defaults.writtenKeys, QStringList(kAppearanceKey));
    EXPECT_EQ(appearance.schemes.size(), 1);
    EXPECT_EQ(takeHeard().size(), 1);
}

TEST_F(AppearanceManagerTest, settingTheModeThatNothingStoredMeansWritesNothing) {
    manager->setMode(u"system"_s);
    EXPECT_EQ(defaults.writtenKeys, QStringList());
    EXPECT_EQ(takeHeard(), QStringList());
}

TEST_F(AppearanceManagerTest, applyingTellsWhoDrawsEachTime) {
    startWith(u"light"_s);
    manager->applyAppearance();
    manager->applyAppearance();
    EXPECT_EQ(appearance.schemes, Schemes({ColorScheme::Light, ColorScheme::Light}));
    EXPECT_EQ(takeHeard().size(), 2);
    EXPECT_EQ(defaults.writtenKeys, QStringList());
}

TEST_F(AppearanceManagerTest, anUnknownModeBehavesAsTheSystems) {
    for (const QString& mode : {u""_s, u"Dark"_s, u"sepia"_s, u" light"_s}) {
        startWith(mode);
        manager->applyAppearance();
        EXPECT_EQ(appearance.schemes.last(), std::nullopt) << mode.toStdString();
        takeHeard();
        makeSystem(ColorScheme::Dark);
        EXPECT_EQ(takeHeard().size(), 1) << mode.toStdString();
        EXPECT_EQ(manager->scheme(), ColorScheme::Dark) << mode.toStdString();
        makeSystem(ColorScheme::Light);
        EXPECT_EQ(defaults.string(kAppearanceKey), mode) << "it stays until the mode is set";
    }
    manager->setMode(u"system"_s);
    EXPECT_EQ(defaults.string(kAppearanceKey), u"system"_s);
}

TEST_F(AppearanceManagerTest, aValueThatIsNoTextCountsAsMissing) {
    defaults.values.insert(kAppearanceKey, true);
    start();
    EXPECT_EQ(manager->mode(), u"system"_s);
}

TEST_F(AppearanceManagerTest, aThemeOfTheSystemsIsDrawnWhileTheProgramFollowsIt) {
    makeSystem(ColorScheme::Dark);
    EXPECT_EQ(takeHeard(), QStringList(u"system, stored nothing, applied 0"_s));
    EXPECT_EQ(manager->scheme(), ColorScheme::Dark);
    makeSystem(ColorScheme::Dark);
    EXPECT_EQ(takeHeard(), QStringList()) << "nothing has changed";

    manager->setMode(u"dark"_s);
    takeHeard();
    makeSystem(ColorScheme::Light);
    EXPECT_EQ(takeHeard(), QStringList());
    EXPECT_EQ(manager->scheme(), ColorScheme::Dark);

    manager->setMode(u"light"_s);
    takeHeard();
    makeSystem(ColorScheme::Dark);
    EXPECT_EQ(takeHeard(), QStringList());
    EXPECT_EQ(manager->scheme(), ColorScheme::Light);

    manager->setMode(u"system"_s);
    EXPECT_EQ(manager->scheme(), ColorScheme::Dark) << "as the system has been meanwhile";
    takeHeard();
    makeSystem(ColorScheme::Light);
    EXPECT_EQ(takeHeard().size(), 1);
    EXPECT_EQ(manager->scheme(), ColorScheme::Light);
}

TEST_F(AppearanceManagerTest, motionAndContrastAreTheSystemsInEveryMode) {
    for (const QString& mode : {u"system"_s, u"light"_s, u"dark"_s}) {
        system.isMotionReduced = false;
        system.isContrastIncreased = false;
        startWith(mode);
        EXPECT_FALSE(manager->reducesMotion());
        EXPECT_FALSE(manager->increasesContrast());

        system.isMotionReduced = true;
        system.tell();
        EXPECT_EQ(takeHeard().size(), 1) << mode.toStdString();
        EXPECT_TRUE(manager->reducesMotion());
        EXPECT_FALSE(manager->increasesContrast());

        system.isContrastIncreased = true;
        system.tell();
        EXPECT_EQ(takeHeard().size(), 1) << mode.toStdString();
        EXPECT_TRUE(manager->increasesContrast());
    }
}

TEST_F(AppearanceManagerTest, aStartFindsTheSystemAsItIs) {
    system.systemScheme = ColorScheme::Dark;
    system.isMotionReduced = true;
    system.isContrastIncreased = true;
    start();
    EXPECT_EQ(manager->scheme(), ColorScheme::Dark);
    EXPECT_TRUE(manager->reducesMotion());
    EXPECT_TRUE(manager->increasesContrast());
}

TEST_F(AppearanceManagerTest, listensAsLongAsItLives) {
    EXPECT_EQ(system.observerCount(), 1);
    manager.reset();
    EXPECT_EQ(system.observerCount(), 0);
}

} // namespace quorvane
