#include "simulator/LaunchPlist.h"

#include "ToolRun.h"
#include "simulator/PropertyList.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

using Dictionary = PropertyList::Dictionary;

std::optional<LaunchPlist> readJob(Dictionary job) {
    job[u"Label"_s] = u"com.x"_s;
    SimulatedMacFolder mac;
    putFile(mac, u"/Users/alex/job.plist"_s, xmlPropertyList(job));
    return readLaunchPlist(mac.mac.volume(Actor::User), u"/Users/alex/job.plist"_s);
}

PropertyList words(const QStringList& list) {
    PropertyList::Array array;
    for (const QString& word : list) {
        array.push_back(word);
    }
    return array;
}

} // namespace

TEST(LaunchPlist, theProgramWinsOverTheArguments) {
    EXPECT_EQ(readJob({{u"Program"_s, u"/a"_s}, {u"ProgramArguments"_s, words({u"/b"_s})}})->program, u"/a"_s);
    EXPECT_EQ(readJob({{u"ProgramArguments"_s, words({u"/b"_s, u"-x"_s})}})->program, u"/b"_s);
    EXPECT_EQ(readJob({{u"ProgramArguments"_s, words({})}})->program, QString());
}

TEST(LaunchPlist, knowsWhenAJobStartsAndStartsAgain) {
    const Dictionary always{{u"SuccessfulExit"_s, false}};
    const Dictionary afterSuccess{{u"SuccessfulExit"_s, true}};
    const struct {
        Dictionary job;
        bool startsAtLoad;
        bool keepAlive;
    } cases[] = {{{}, false, false},
                 {{{u"RunAtLoad"_s, true}}, true, false},
                 {{{u"KeepAlive"_s, true}}, true, true},
                 {{{u"KeepAlive"_s, false}}, false, false},
                 {{{u"KeepAlive"_s, always}}, true, true},
                 {{{u"KeepAlive"_s, afterSuccess}, {u"RunAtLoad"_s, true}}, true, false}};
    for (const auto& one : cases) {
        const auto plist = readJob(one.job);
        ASSERT_TRUE(plist);
        EXPECT_EQ(plist->startsAtLoad, one.startsAtLoad);
        EXPECT_EQ(plist->keepAlive, one.keepAlive);
    }
}

TEST(LaunchPlist, givesThePathWithoutLinks) {
    SimulatedMacFolder mac;
    putFile(mac, u"/private/tmp/job.plist"_s, xmlPropertyList(Dictionary{{u"Label"_s, u"com.x"_s}}));
    EXPECT_EQ(readLaunchPlist(mac.mac.volume(Actor::User), u"/tmp/job.plist"_s)->path, u"/private/tmp/job.plist"_s);
}

TEST(LaunchPlist, whatHasNoLabelIsNoJob) {
    SimulatedMacFolder mac;
    putFile(mac, u"/Users/alex/job.plist"_s, xmlPropertyList(Dictionary{{u"Label"_s, 5}}));
    EXPECT_FALSE(readLaunchPlist(mac.mac.volume(Actor::User), u"/Users/alex/job.plist"_s));
    EXPECT_FALSE(readLaunchPlist(mac.mac.volume(Actor::User), u"/Users/alex/missing.plist"_s));
}

} // namespace macsim
