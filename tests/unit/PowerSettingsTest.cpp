#include "readings/PowerSettings.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

std::optional<PowerSettings> powerIn(const QString& customSettings) {
    const auto sources = parsedPowerSources(customSettings);
    return sources ? std::optional(firstListed(*sources)) : std::nullopt;
}

QList<PowerSource> sourcesIn(const QString& customSettings) {
    return parsedPowerSources(customSettings).value_or(QList<PowerSource>());
}

} // namespace

TEST(PowerSettings, areReadFromTheFirstSectionThatHasThem) {
    const auto settings = powerIn(u"Battery Power:\n"
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
    const auto settings = powerIn(u"Battery Power:\n"
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
    const auto settings = powerIn(u"AC Power:\n"
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
    EXPECT_EQ(powerIn(u"AC Power:\n standby\n sms \n womp 1\n"_s), PowerSettings());
}

TEST(PowerSettings, otherNamesThatEndInSleepDoNotCount) {
    const auto settings = powerIn(u" displaysleep         5\n Sleep On Power Button 1\n disksleep            10\n"_s);
    EXPECT_EQ(settings, (PowerSettings{std::nullopt, u"10"_s, std::nullopt, std::nullopt}));
}

TEST(PowerSettings, areUnknownInATextThatListsNothing) {
    EXPECT_EQ(powerIn(QString()), std::nullopt);
    EXPECT_EQ(powerIn(u"\n\n   \nAC Power:\n"_s), std::nullopt);
}

// ---- By source

TEST(PowerSettings, areKeptApartByTheSourceOfPower) {
    EXPECT_EQ(sourcesIn(u"Battery Power:\n sleep 1\n disksleep 10\nAC Power:\n sleep 0\n sms 1\n"_s),
              (QList<PowerSource>{{u"Battery Power"_s, {std::nullopt, u"10"_s, u"1"_s, std::nullopt}},
                                  {u"AC Power"_s, {std::nullopt, std::nullopt, u"0"_s, u"1"_s}}}));
}

TEST(PowerSettings, keepAMacAwakeOnlyWhereEverySourceDoes) {
    const QString battery = u"Battery Power:\n standby 0\n sleep 0\n disksleep 0\n"_s;
    EXPECT_TRUE(isKeptAwake(sourcesIn(battery + u"AC Power:\n sleep 0\n disksleep 0\n"_s)));
    const auto sleepsOnMains = sourcesIn(battery + u"AC Power:\n standby 0\n sleep 0\n disksleep 10\n"_s);
    EXPECT_FALSE(isKeptAwake(sleepsOnMains));
    EXPECT_EQ(sourcesThatSleep(sleepsOnMains), QStringList(u"AC Power"_s));
    EXPECT_FALSE(isKeptAwake(sourcesIn(u"AC Power:\n womp 1\n"_s))) << "of sleep nothing is said";
}

TEST(PowerSettings, thatLetAMacSleepAreNamedTheMainsFirst) {
    EXPECT_EQ(sourcesThatSleep(sourcesIn(u"Battery Power:\n sleep 1\nAC Power:\n sleep 1\nUPS Power:\n sleep 1\n"_s)),
              (QStringList{u"AC Power"_s, u"Battery Power"_s, u"UPS Power"_s}));
}

} // namespace quorvane
