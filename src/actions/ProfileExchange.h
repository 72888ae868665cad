#pragma once

#include "actions/ActionListener.h"
#include "actions/ActionOutcome.h"
#include "profiles/ProfileManager.h"

#include <optional>

namespace quorvane {

class Action;
class ActionStage;
class Clock;
class FilePanels;
class MasterProfileState;
class ProfileChanges;
class SavedProfiles;

/// Profiles as files of their user's: so they leave the Mac, and come to it, without iCloud too.
class ProfileExchange {
public:
    struct Parts {
        Clock& clock;
        FilePanels& panels;
        ProfileManager& store;
        SavedProfiles& saved;
        MasterProfileState& workingCopy;
        ProfileChanges& changes;
    };
    ProfileExchange(ActionStage& stage, const Parts& parts)
        : m_stage(stage)
        , m_parts(parts) {}

    /// "Export Profile…": the one that is loaded, as the pages show it. Nothing without one.
    QCoro::Task<ActionOutcome> exportCurrent(ActionListener& listener);
    /// "Import Profile…": asks for a file, and takes its profile in among the saved ones.
    QCoro::Task<ActionOutcome> importChosen(ActionListener& listener);
    /// The same of a file that was opened with the program.
    /// @param path  as FilePanels::files has it
    QCoro::Task<ActionOutcome> importFile(const QString& path, ActionListener& listener);

private:
    std::optional<QString> problemOfExport(const QString& path, const UnifiedProfile& profile);
    QCoro::Task<void> carryOutImport(Action& action, QString path);
    QCoro::Task<void> takeIn(Action& action, UnifiedProfile profile, QString fileName);

    ActionStage& m_stage;
    Parts m_parts;
};

} // namespace quorvane
