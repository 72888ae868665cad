#include "core/AudioMakers.h"

#include "core/ExcludedNames.h"

#include <QRandomGenerator>
#include <QSet>
#include <QStringList>

#include <gtest/gtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

TEST(AudioMakers, atLeastFortyAreKnownEachWithItsName) {
    QSet<QString> prefixes;
    QSet<QString> makers;
    for (const AudioMaker& maker : audioMakers()) {
        SCOPED_TRACE(maker.prefix.toStdString());
        const QStringList components = maker.prefix.split(u'.');
        EXPECT_TRUE(components.size() == 2 || components.size() == 3);
        EXPECT_FALSE(components.contains(QString()));
        EXPECT_EQ(maker.prefix, maker.prefix.toLower());
        EXPECT_FALSE(maker.maker.trimmed().isEmpty());
        EXPECT_FALSE(prefixes.contains(maker.prefix)) << "twice";
        prefixes.insert(maker.prefix);
        makers.insert(maker.maker);
    }
    EXPECT_GE(prefixes.size(), 40);
    EXPECT_GE(makers.size(), 40);
}

TEST(AudioMakers, whatTheyInstallIsTheirs) {
    for (const QString& text :
         {u"com.native-instruments.NTKDaemon"_s, u"com.focusrite.ControlServer"_s, u"com.uaudio.bsd.helper"_s,
          u"com.motu.coreuac.reenumerator.plist"_s, u"/Library/LaunchDaemons/com.paceap.eden.licensed.plist"_s,
          u"16.com.paceap.eden.licensed"_s, u"com.WavesAudio.central"_s, u"de.rme-audio.TotalmixFX"_s,
          u"asp.se.elektron.overbridge.coreaudio2"_s, u"VJXTL73S8G.com.algoriddim.userdata"_s,
          u"ua mixer engine 16.com.uaudio.ua-mixer-engine file:///Library/LaunchDaemons/x.plist"_s, u"com.motu"_s,
          u"file:///Library/LaunchAgents/com.Arturia.ArturiaSoftwareCenterAgent.plist"_s}) {
        EXPECT_TRUE(isOfAudioMaker(text)) << text.toStdString();
        EXPECT_TRUE(isExcludedName(text)) << text.toStdString();
    }
}

TEST(AudioMakers, whatOthersInstallIsNot) {
    for (const QString& text : {u""_s, u"."_s, u"com"_s, u"com."_s, u"com.avidxchange.agent"_s, u"com.avid-x.agent"_s,
                                u"us.zoom.ZoomDaemon"_s, u"telecom.avid"_s, u"my-com.motu.x"_s, u"com.motus.app"_s,
                                u"com motu x"_s, u"com..motu.x"_s, u"com.apple.audio.coreaudiod"_s,
                                u"com.spotify.webhelper"_s, u"com.dropbox.agent"_s, u"com/motu/x"_s}) {
        EXPECT_FALSE(isOfAudioMaker(text)) << text.toStdString();
        EXPECT_FALSE(isExcludedName(text)) << text.toStdString();
    }
}

TEST(AudioMakers, everyPrefixProtectsAtItsDotAndNowhereElse) {
    QRandomGenerator random(14);
    const QStringList before{u""_s, u"4."_s, u"/Library/LaunchAgents/"_s, u"a name "_s, u"file:///x/"_s};
    const QStringList inside{u"x"_s, u"_"_s, u"-"_s, u"9"_s};
    for (const AudioMaker& maker : audioMakers()) {
        SCOPED_TRACE(maker.prefix.toStdString());
        const QString& lead = before.at(random.bounded(before.size()));
        QString spelled = maker.prefix;
        for (QChar& c : spelled) {
            c = random.bounded(2) == 0 ? c.toUpper() : c;
        }
        EXPECT_TRUE(isOfAudioMaker(lead + spelled + u".helper.plist"_s));
        const QString other = lead + spelled + inside.at(random.bounded(inside.size())) + u".helper.plist"_s;
        const bool isOfAnother = std::any_of(audioMakers().begin(), audioMakers().end(), [&](const AudioMaker& each) {
            return other.contains(each.prefix + u'.', Qt::CaseInsensitive);
        });
        EXPECT_EQ(isOfAudioMaker(other), isOfAnother);
    }
}

} // namespace
} // namespace quorvane
