// The system's look changes while the program runs, by whoever writes its preferences.

#include "fakes/WindowOnMac.h"
#include "ui/Theme.h"

#include <QImage>

namespace quorvane {

namespace {

class SystemLookByWindow : public WindowOnMac {
protected:
    void SetUp() override {
        keepBaseline();
        launchAndScan();
    }
    static const Look& look() { return themeOf(mainWindow()).look(); }
    static QRgb ground() {
        return mainWindow()->grab().toImage().convertToFormat(QImage::Format_RGB32).pixel(mainWindow()->width() - 3, 200);
    }
};

} // namespace

TEST_F(SystemLookByWindow, darkAndLightAreFollowed) {
    const QRgb light = ground();
    EXPECT_EQ(light, themeOf(mainWindow()).window.rgb());
    shell(u"defaults write NSGlobalDomain AppleInterfaceStyle Dark"_s);
    processEventsUntil([] { return look().scheme == ColorScheme::Dark; });
    EXPECT_NE(ground(), light);
    EXPECT_EQ(ground(), themeOf(mainWindow()).window.rgb());
    shell(u"defaults delete NSGlobalDomain AppleInterfaceStyle"_s);
    processEventsUntil([] { return look().scheme == ColorScheme::Light; });
    EXPECT_EQ(ground(), light);
}

TEST_F(SystemLookByWindow, reducedMotionAndIncreasedContrastAreFollowed) {
    const QColor border = themeOf(mainWindow()).border;
    shell(u"defaults write com.apple.universalaccess reduceMotion -bool true"_s);
    processEventsUntil([] { return look().reducesMotion; });
    shell(u"defaults write com.apple.universalaccess increaseContrast -bool true"_s);
    processEventsUntil([] { return look().increasesContrast; });
    EXPECT_NE(themeOf(mainWindow()).border, border);
    shell(u"defaults write com.apple.universalaccess reduceMotion -bool false"_s);
    processEventsUntil([] { return !look().reducesMotion; });
    EXPECT_TRUE(look().increasesContrast);
}

} // namespace quorvane
