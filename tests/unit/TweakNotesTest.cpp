#include "tweaks/TweakNotes.h"

#include "tweaks/TweakCatalogue.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// "key: note" of the tweaks that have one on a version of macOS.
QStringList notesOn(const QString& systemVersion) {
    QStringList lines;
    for (const Tweak& tweak : tweakCatalogue()) {
        if (const QString note = tweakNote(tweak.key, systemVersion); !note.isEmpty()) {
            lines.append(tweak.key + u": "_s + note);
        }
    }
    return lines;
}

} // namespace

TEST(TweakNotes, theTableNamesEachTweakOnceInTheOrderOfTheCatalogue) {
    QStringList named;
    for (const TweakNote& note : tweakNotes()) {
        named.append(note.key);
    }
    QStringList tweaks;
    for (const Tweak& tweak : tweakCatalogue()) {
        tweaks.append(tweak.key);
    }
    EXPECT_EQ(named, tweaks);
}

TEST(TweakNotes, eachSystemThatTheProgramRunsOnHasTheSame) {
    const QStringList all{u"appNap: After the restart"_s, u"sms: No effect on this Mac"_s,
                          u"notifications: Stored; turn on a Focus as well"_s, u"airdrop: After the restart"_s,
                          u"cleanReboot: After the restart"_s};
    for (const QString& version : {u"14.0"_s, u"14.7.2"_s, u"15.5"_s, u"26.1"_s}) {
        EXPECT_EQ(notesOn(version), all) << version.toStdString();
    }
}

TEST(TweakNotes, whatAnEarlierSystemObeysHasNone) {
    EXPECT_EQ(tweakNote(u"notifications"_s, u"12.0"_s), u"Stored; turn on a Focus as well"_s);
    EXPECT_EQ(tweakNote(u"notifications"_s, u"11.7"_s), QString());
    EXPECT_EQ(tweakNote(u"sms"_s, u"11"_s), u"No effect on this Mac"_s);
    EXPECT_EQ(tweakNote(u"sms"_s, u"10.15.7"_s), QString());
}

TEST(TweakNotes, anUnknownSystemOrTweakHasOnlyWhatHoldsForAll) {
    EXPECT_EQ(notesOn({}), QStringList({u"appNap: After the restart"_s, u"airdrop: After the restart"_s,
                                        u"cleanReboot: After the restart"_s}));
    EXPECT_EQ(tweakNote(u"warp"_s, u"26.1"_s), QString());
}

} // namespace quorvane
