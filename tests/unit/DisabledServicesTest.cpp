#include "startup/launchd/DisabledServices.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

using State = OverrideState;

DisabledServices servicesIn(const QString& output) {
    const std::optional<DisabledServices> services = DisabledServices::parse(output);
    EXPECT_TRUE(services);
    return services.value_or(DisabledServices());
}

TEST(DisabledServices, bothSpellingsMeanTheSame) {
    const DisabledServices services = servicesIn(u"\tdisabled services = {\n"
                                                 "\t\t\"com.new.off\" => disabled\n"
                                                 "\t\t\"com.new.on\" => enabled\n"
                                                 "\t\t\"com.old.off\" => true\n"
                                                 "\t\t\"com.old.on\" => false\n"
                                                 "\t}\n"_s);
    EXPECT_EQ(services.stateOf(u"com.new.off"_s), State::Disabled);
    EXPECT_EQ(services.stateOf(u"com.new.on"_s), State::Enabled);
    EXPECT_EQ(services.stateOf(u"com.old.off"_s), State::Disabled);
    EXPECT_EQ(services.stateOf(u"com.old.on"_s), State::Enabled);
    EXPECT_EQ(services.stateOf(u"com.other"_s), State::NotListed);
}

TEST(DisabledServices, theHeaderMayStandAtTheBeginningOfItsLine) {
    EXPECT_EQ(servicesIn(u"disabled services = {\n\t\"com.x\" => true\n}\n"_s).stateOf(u"com.x"_s), State::Disabled);
}

TEST(DisabledServices, anUnknownWordIsNotRead) {
    for (const QString& word : {u"Disabled"_s, u"1"_s, u"disabled (by profile)"_s, u""_s, u"null"_s}) {
        SCOPED_TRACE(word.toStdString());
        EXPECT_EQ(servicesIn(u"disabled services = {\n\"com.x\" => "_s + word + u"\n}\n"_s).stateOf(u"com.x"_s),
                  word.isEmpty() ? State::NotListed : State::Unknown);
    }
}

TEST(DisabledServices, theOtherBlocksMeanSomethingElse) {
    const DisabledServices services = servicesIn(u"\tlogin item associations = {\n"
                                                 "\t\t\"com.before\" => disabled\n"
                                                 "\t}\n"
                                                 "\tdisabled services = {\n"
                                                 "\t\t\"com.x\" => disabled\n"
                                                 "\t}\n"
                                                 "\tlogin item associations = {\n"
                                                 "\t\t\"com.behind\" => disabled\n"
                                                 "\t}\n"_s);
    EXPECT_EQ(services.stateOf(u"com.before"_s), State::NotListed);
    EXPECT_EQ(services.stateOf(u"com.x"_s), State::Disabled);
    EXPECT_EQ(services.stateOf(u"com.behind"_s), State::NotListed);
}

TEST(DisabledServices, anEmptyBlockIsAnAnswer) {
    EXPECT_EQ(servicesIn(u"\tdisabled services = {\n\t}\n"_s), DisabledServices());
}

TEST(DisabledServices, whatIsNotWholeIsNotRead) {
    for (const QString& output :
         {u""_s, u"\n"_s, u"Could not find domain for user gui: 501\n"_s, u"disabled services = {\n"_s,
          u"disabled services = {\n\t\t\"com.x\" => disabled\n"_s, u"disabled services = {\n\t\t\"com.x\" => disab"_s,
          u"login item associations = {\n\"com.x\" => disabled\n}\n"_s, u"disabled services = { }\n"_s,
          u"\"com.x\" => disabled\n}\n"_s}) {
        SCOPED_TRACE(output.toStdString());
        EXPECT_FALSE(DisabledServices::parse(output));
    }
}

TEST(DisabledServices, aLabelMayHoldQuotesArrowsAndBlanks) {
    const DisabledServices services = servicesIn(u"disabled services = {\n"
                                                 "\t\"com.\"quoted\"\" => disabled\n"
                                                 "\t\"a\" => enabled\" => disabled\n"
                                                 "\t\"My Helper => x\" => enabled\n"
                                                 "\t\"\" => disabled\n"
                                                 "}\n"_s);
    EXPECT_EQ(services.stateOf(u"com.\"quoted\""_s), State::Disabled);
    EXPECT_EQ(services.stateOf(u"a\" => enabled"_s), State::Disabled);
    EXPECT_EQ(services.stateOf(u"My Helper => x"_s), State::Enabled);
    EXPECT_EQ(services.stateOf(u"a"_s), State::NotListed);
}

TEST(DisabledServices, linesOfAnotherFormAreLeftOut) {
    const DisabledServices services =
        servicesIn(u"disabled services = {\n\tcom.x => disabled\n\t\"com.y\" = disabled\n\tgarbage\n\n}\n"_s);
    EXPECT_EQ(services, DisabledServices());
}

TEST(DisabledServices, eachDomainSpeaksForItsOwnServices) {
    LaunchdOverrides overrides;
    overrides.user = servicesIn(u"disabled services = {\n\"com.x\" => disabled\n}\n"_s);
    EXPECT_TRUE(overrides.isDisabled({LaunchdDomain::User, u"com.x"_s}));
    EXPECT_EQ(overrides.stateOf({LaunchdDomain::System, u"com.x"_s}), State::Unknown);
    overrides.system = DisabledServices();
    EXPECT_EQ(overrides.stateOf({LaunchdDomain::System, u"com.x"_s}), State::NotListed);
}

} // namespace
} // namespace quorvane
