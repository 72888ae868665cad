#include "readings/PowerSettings.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

TEST(PowerSettings, areReadFromTheFirstSectionThatHasThem) {
    const PowerSettings settings = parsedPowerSettings(u"Battery Power:\n"
                                                       " standby              1\n"
                                                       " disksleep            10\n"
                                                       "AC Power:\n"
                                                       " standby              0\n"
                                                       " sleep                0 (sleep prevented by coreaudiod)\n"
                                                       " sms                  1\n"_s);
    EXPECT_EQ(settings, (PowerSettings{u"1"_s, u"10"_s, u"coreaudiod)"_s, u"1"_s}));
}

TEST(PowerSettings, aLongerNameThatComesFirstSatisfiesTheField) {
    const PowerSettings settings =
        parsedPowerSettings(u"AC Power:\n standbydelaylow      10800\n standby              0\n"_s);
    EXPECT_EQ(settings.standby, u"10800"_s);
}

TEST(PowerSettings, otherNamesThatEndInSleepDoNotCount) {
    const PowerSettings settings =
        parsedPowerSettings(u" displaysleep         5\n Sleep On Power Button 1\n disksleep            10\n"_s);
    EXPECT_FALSE(settings.sleep.has_value());
    EXPECT_EQ(settings.disksleep, u"10"_s);
}

TEST(PowerSettings, areNoneInTextWithoutThem) {
    EXPECT_EQ(parsedPowerSettings(QString()), PowerSettings());
    EXPECT_EQ(parsedPowerSettings(u"\n\n   \nAC Power:\n"_s), PowerSettings());
}

} // namespace quorvane
