#pragma once

#include "simulator/LoginItems.h"
#include "simulator/applescript/AppleScript.h"
#include "simulator/tools/ScriptRights.h"

namespace macsim {

/// System Events as scripts see it. Of its objects there are the login items; the words of all others don't compile.
///
/// Every event needs the Automation permission. An event finds the items that it is for by itself; those that a script keeps in a
/// variable are known by their names, so that of two of one name the first is always meant.
class SystemEvents final : public ScriptApplication {
public:
    /// @param eventLimit  as it is at each event
    SystemEvents(ToolContext& context, const std::chrono::seconds& eventLimit);

    static const ScriptDictionary& dictionary();

    QString name() const override { return QStringLiteral("System Events"); }
    QList<applescript::ScriptObject> objects(const QString& className) override;
    std::optional<applescript::ScriptObject> objectAt(const QString& className, qsizetype position) override;
    applescript::ScriptObject asKept(const applescript::ScriptObject& object) override;
    std::optional<applescript::Value> property(const applescript::ScriptObject& object,
                                               const QString& property) override;
    bool setProperty(const applescript::ScriptObject& object, const QString& property,
                     const applescript::Value& value) override;
    applescript::ScriptObject make(const QString& className, const applescript::Record& properties) override;
    bool remove(const applescript::ScriptObject& object) override;

private:
    LoginItems m_items;
    AutomationRight m_automation;
};

} // namespace macsim
