#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace quorvane {

struct CommandResult;

/// Whether this Mac makes automatic backups, by what is stored: that a backup happens to run, or not, tells nothing of it.
enum class TimeMachineState {
    On,
    Off,
    NotSetUp,     ///< nothing is stored, and there is no disk to back up to
    NotPermitted, ///< what is stored may not be read
};

// Where it is stored: as a file, and as a domain and a key of the `defaults` tool. The file needs Full Disk Access. Without
// it `defaults` fails as if the key weren't set, so that only opening the file tells the two apart.
inline constexpr QStringView kTimeMachineFile = u"/Library/Preferences/com.apple.TimeMachine.plist";
inline constexpr QStringView kTimeMachineDomain = u"/Library/Preferences/com.apple.TimeMachine";
inline constexpr QStringView kAutomaticBackupsKey = u"AutoBackup";

/// By the preference as `defaults` prints it; none for a text that is no switch.
std::optional<TimeMachineState> timeMachineStateOf(const QString& stored);

/// By the output of `tmutil destinationinfo`: whether there is a disk to back up to; none when it doesn't say.
std::optional<bool> hasBackupDestination(const CommandResult& destinations);

/// By the output of `tmutil status`.
bool isBackupRunning(const CommandResult& status);

/// What a snapshot keeps: none where nothing is known, or there is nothing to keep.
std::optional<bool> automaticBackups(const std::optional<TimeMachineState>& state);

/// False where there is nothing to switch, and where the switch would be refused: what may not be read may not be written.
bool isSwitchable(const std::optional<TimeMachineState>& state);

} // namespace quorvane
