#pragma once

#include "core/JsonForward.h"
#include "profiles/UnifiedProfile.h"
#include "snapshots/RestoreBaseline.h"
#include "snapshots/SystemSnapshot.h"
#include "startup/background/StartupMemory.h"
#include "startup/items/CleanReboot.h"
#include "startup/launchd/KeptOff.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <optional>

namespace quorvane {

class UserDefaults;

/// A flow that changes the Mac step by step, and that can be taken up again where it was cut off.
enum class RecordedFlow {
    Profile,
    Tweaks, ///< alone, and only those that are selected
    Startup,
    Undo,
    Default,
    Reinstate,
};
/// True for those that bring the user's own settings back. To go back from one of them is to finish it.
bool isWayBack(RecordedFlow flow);
/// As it stands in files: "profile".
QString nameOfFlow(RecordedFlow flow);
/// Throws DecodingError.
RecordedFlow flowNamed(const QString& name);

/// What the program notes of itself in its preferences, and a flow changes.
struct ProgramNotes {
    std::optional<QString> lastAppliedName;
    QStringList changedTweaks;
    QStringList managedPaths; ///< of the applications that the program has put into the login items
    bool hasSwitchedBackupsOff = false;

    bool operator==(const ProgramNotes&) const = default;
};
ProgramNotes readProgramNotes(const UserDefaults& defaults);
/// Puts them back as they were, without a preference where there was none.
void writeProgramNotes(const ProgramNotes& notes, UserDefaults& defaults);

/// What was there before a flow, as far as it was to change it.
struct StateBefore {
    /// The settings, where the flow changes any. The login items once they were listed, which is before the first of them changes.
    std::optional<SystemSnapshot> settings;
    std::optional<QList<LoginItemSnapshot>> loginItems;
    KeptOff keptOff;               ///< what the program had switched off of what runs at login
    QList<WaitingService> waiting; ///< for the next apply
    ProgramNotes notes;

    bool operator==(const StateBefore&) const = default;
};

/// A flow that is under way, or was cut off: what it was to do, how far it came, and what was there before.
struct FlowRecord {
    RecordedFlow flow = RecordedFlow::Profile;
    QString name;    ///< of the profile, or of the flow where it is of none
    QString process; ///< that carries it out; see Machine::processName
    QDateTime began;

    UnifiedProfile profile;                  ///< of an apply; of tweaks and of startup alone the half that counts
    std::optional<CleanReboot> cleanReboot;  ///< of tweaks
    std::optional<RestoreBaseline> baseline; ///< what a way back goes by; none where that is what a fresh macOS has

    QStringList steps;     ///< what it is about to do, in its order
    qsizetype done = 0;    ///< how many of them are done
    bool hasEnded = false; ///< nothing is left to do
    StateBefore before;
};

Json encodeJson(const ProgramNotes& notes);
Json encodeJson(const StateBefore& before);
// Each throws DecodingError.
void decodeJson(const Json& json, ProgramNotes& notes);
void decodeJson(const Json& json, StateBefore& before);

// Its file: a line of JSON each for what it is about to do, and for what happens then. Only the last may be torn.

/// The first line. Throws EncodingError for a date that no file can hold.
QByteArray beginningOf(const FlowRecord& record);
QByteArray loginItemsLine(const QList<LoginItemSnapshot>& items);
/// Of a step that is done.
QByteArray doneLine(const QString& step);
QByteArray endLine();

/// None where the first line isn't whole: nothing was changed then. A later line that can't be read, and what is behind it, never
/// happened.
std::optional<FlowRecord> parsedFlowRecord(const QByteArray& bytes);

} // namespace quorvane
