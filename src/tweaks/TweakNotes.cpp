#include "tweaks/TweakNotes.h"

#include <QVersionNumber>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kAfterRestart = u"After the restart"_s;
const QString kNoEffect = u"No effect on this Mac"_s;
const QString kStored = u"Stored; turn on a Focus as well"_s;

constexpr int kBigSur = 11;
constexpr int kMonterey = 12;

} // namespace

const QList<TweakNote>& tweakNotes() {
    static const QList<TweakNote> notes{
        // A program reads NSAppSleepDisabled when it starts: those that run keep to what they have read.
        {u"appNap"_s, 0, kAfterRestart},
        {u"spotlight"_s},
        {u"usbPower"_s}, // pmset's values hold at once
        // The sensor guarded hard disks. The last portable Mac with one got no system after 10.15; pmset still takes the command.
        {u"sms"_s, kBigSur, kNoEffect},
        {u"timeMachine"_s},
        {u"updates"_s}, // softwareupdated reads its keys each time
        // Focus has taken the place of Do Not Disturb. No program may switch one on, and the stored key hushes nothing by itself.
        {u"notifications"_s, kMonterey, kStored},
        {u"crashReporter"_s}, // its program is started anew for each crash
        // The Finder reads the key when it starts.
        {u"airdrop"_s, 0, kAfterRestart},
        {u"siri"_s},
        {u"uiSounds"_s},
        // The login window goes by its keys when somebody logs in.
        {u"cleanReboot"_s, 0, kAfterRestart}};
    return notes;
}

QString tweakNote(const QString& key, const QString& systemVersion) {
    const QList<TweakNote>& notes = tweakNotes();
    const auto note = std::find_if(notes.begin(), notes.end(), [&key](const TweakNote& one) { return one.key == key; });
    const bool isDue =
        note != notes.end() && QVersionNumber::fromString(systemVersion).majorVersion() >= note->firstSystem;
    return isDue ? note->text : QString();
}

} // namespace quorvane
