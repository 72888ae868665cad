#include "tweaks/ModeManager.h"

#include "fakes/ScriptedSystem.h"

namespace quorvane {

namespace {

const QString kKey = u"QuorvaneCurrentMode"_s;

class ModeManagerTest : public ::testing::Test {
protected:
    QString stored() const { return defaults.string(kKey).value_or(u"nothing"_s); }

    MemoryUserDefaults defaults;
};

} // namespace

TEST_F(ModeManagerTest, theOneModeIsKnownByItsRawValue) {
    EXPECT_EQ(rawValue(AppMode::default_), u"Default"_s);
    EXPECT_EQ(appModeNamed(u"Default"_s), std::optional(AppMode::default_));
    for (const QString& text : {u"default"_s, u""_s, u"Default "_s, u"Stage"_s}) {
        EXPECT_EQ(appModeNamed(text), std::nullopt) << text.toStdString();
    }
}

TEST_F(ModeManagerTest, withNothingStoredTheModeIsTheDefaultOne) {
    EXPECT_EQ(ModeManager(defaults).currentMode(), AppMode::default_);
    EXPECT_EQ(stored(), u"nothing"_s) << "reading writes nothing";
}

TEST_F(ModeManagerTest, aStoredModeThatIsUnknownStaysUntilTheModeIsSet) {
    defaults.setString(kKey, u"Stage"_s);
    ModeManager modes(defaults);
    EXPECT_EQ(modes.currentMode(), AppMode::default_);
    EXPECT_EQ(stored(), u"Stage"_s);
    modes.setCurrentMode(AppMode::default_);
    EXPECT_EQ(stored(), u"Default"_s);
}

TEST_F(ModeManagerTest, whoHearsOfAModeFindsItStored) {
    ModeManager modes(defaults);
    QStringList heard;
    QObject::connect(&modes, &ModeManager::modeDidChange, [&](AppMode mode) {
        heard.append(rawValue(mode) + u", current "_s + rawValue(modes.currentMode()) + u", stored "_s + stored());
    });
    modes.setCurrentMode(AppMode::default_);
    modes.setCurrentMode(AppMode::default_);
    const QString each = u"Default, current Default, stored Default"_s;
    EXPECT_EQ(heard, QStringList({each, each}));
}

TEST_F(ModeManagerTest, aSubscriberIsNotToldOfWhatWasSetBefore) {
    ModeManager modes(defaults);
    modes.setCurrentMode(AppMode::default_);
    int count = 0;
    QObject::connect(&modes, &ModeManager::modeDidChange, [&count] { ++count; });
    EXPECT_EQ(count, 0);
}

} // namespace quorvane
