#include "readings/PowerSettings.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

TEST(PowerSettings, areReadFromTheFirstSectionThatHasThem) {
    const auto settings = parsedPowerSettings(u"Battery Power:\n"
                                              " standby              1\n"
                                              " disksleep            10\n"
                                              "AC Power:\n"
                                              " standby              0\n"
                                              " sleep                0 (sleep prevented by coreaudiod)\n"
                                              " sms                  1\n"_s);
    EXPECT_EQ(settings, (PowerSettings{u"1"_s, u"10"_s, u"coreaudiod)"_s, u"1"_s}));
}

TEST(PowerSettings, aLongerNameThatComesFirstIsAnotherSetting) {
    // As notebooks with two delays of standby print it, in the order that theirs happens to have.
    const auto settings = parsedPowerSettings(u"Battery Power:\n"
                                              " lidwake              1\n"
                                              " autopoweroff         1\n"
                                              " standbydelayhigh     86400\n"
                                              " autopoweroffdelay    28800\n"
                                              " proximitywake        0\n"
                                              " standby              1\n"
                                              " standbydelaylow      10800\n"
                                              " ttyskeepawake        1\n"
                                              " highstandbythreshold 50\n"
                                              " powernap             0\n"
                                              " gpuswitch            2\n"
                                              " hibernatemode        3\n"
                                              " hibernatefile        /var/vm/sleepimage\n"
                                              " displaysleep         2\n"
                                              " sleep                1\n"
                                              " tcpkeepalive         1\n"
                                              " halfdim              1\n"
                                              " lessbright           1\n"
                                              " disksleep            10\n"
                                              "AC Power:\n"
                                              " standbydelayhigh     86400\n"
                                              " standby              0\n"
                                              " sleep                0\n"
                                              " disksleep            0\n"_s);
    EXPECT_EQ(settings, (PowerSettings{u"1"_s, u"10"_s, u"1"_s, std::nullopt}));
}

TEST(PowerSettings, ofADesktopWithoutStandbyAreTheOthersAlone) {
    const auto settings = parsedPowerSettings(u"AC Power:\n"
                                              " Sleep On Power Button 1\n"
                                              " standbydelay         10800\n"
                                              " autorestartatconnect 0\n"
                                              " autorestart          0\n"
                                              " disksleep            10\n"
                                              " sleep                0\n"
                                              " smsx                 1\n"_s);
    EXPECT_EQ(settings, (PowerSettings{std::nullopt, u"10"_s, u"0"_s, std::nullopt}));
}

TEST(PowerSettings, aNameWithoutAValueIsNone) {
    EXPECT_EQ(parsedPowerSettings(u"AC Power:\n standby\n sms \n womp 1\n"_s), PowerSettings());
}

TEST(PowerSettings, otherNamesThatEndInSleepDoNotCount) {
    const auto settings =
        parsedPowerSettings(u" displaysleep         5\n Sleep On Power Button 1\n disksleep            10\n"_s);
    EXPECT_EQ(settings, (PowerSettings{std::nullopt, u"10"_s, std::nullopt, std::nullopt}));
}

TEST(PowerSettings, areUnknownInATextThatListsNothing) {
    EXPECT_EQ(parsedPowerSettings(QString()), std::nullopt);
    EXPECT_EQ(parsedPowerSettings(u"\n\n   \nAC Power:\n"_s), std::nullopt);
}

} // namespace quorvane
