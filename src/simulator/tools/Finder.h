#pragma once

#include "simulator/Tool.h"
#include "simulator/applescript/AppleScript.h"
#include "simulator/tools/ScriptRights.h"

namespace macsim {

/// The Finder as scripts see it: the trash, the items in it, and `empty`. The words of all else don't compile. Every event
/// needs the Automation permission. The Finder acts as the user, whoever runs the script.
///
/// The trash is the user's own, "~/.Trash". Those of other volumes, which a Mac's Finder shows along with it, are left out.
/// Names that begin with a dot are not counted, and go with the rest when it is emptied. The question whether the user
/// is sure, which they can switch off, counts as answered with yes.
///
/// What they have no right to remove (what is in a folder of root's; a single file of root's they may) the Finder can
/// only remove with an administrator's password, for which it asks. What it does first is not established: here all the
/// rest is gone by then. An empty trash is emptied without complaint.
class Finder final : public ScriptApplication {
public:
    /// @param eventLimit  as it is at each event
    Finder(ToolContext& context, const std::chrono::seconds& eventLimit);

    static const ScriptDictionary& dictionary();

    QString name() const override { return QStringLiteral("Finder"); }
    std::optional<applescript::Value> property(const applescript::ScriptObject& object,
                                               const QString& property) override;
    applescript::Value ownProperty(const QString& property) override;
    std::optional<QList<applescript::ScriptObject>> itemsIn(const applescript::ScriptObject& container) override;
    bool perform(const QString& command, const applescript::ScriptObject* object) override;

private:
    QString trashFolder() const;
    void emptyTrash();

    ToolContext& m_context;
    AutomationRight m_automation;
};

} // namespace macsim
