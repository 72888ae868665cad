#pragma once

#include "simulator/LoginItems.h"
#include "simulator/applescript/AppleScript.h"

namespace macsim {

/// System Events as scripts see it. Of its objects there are the login items; the words of all others don't compile.
///
/// Every event needs the Automation permission, which the program has or lacks for the whole of a script.
class SystemEvents final : public ScriptApplication {
public:
    explicit SystemEvents(const Mac& mac);

    static const ScriptDictionary& dictionary();

    QString name() const override { return QStringLiteral("System Events"); }
    QList<applescript::ScriptObject> objects(const QString& className) override;
    std::optional<applescript::Value> property(const applescript::ScriptObject& object,
                                               const QString& property) override;
    bool setProperty(const applescript::ScriptObject& object, const QString& property,
                     const applescript::Value& value) override;
    applescript::ScriptObject make(const QString& className, const applescript::Record& properties) override;
    bool remove(const applescript::ScriptObject& object) override;

private:
    void requireAutomation();

    const Mac& m_mac;
    LoginItems m_items;
    std::optional<bool> m_mayBeAutomated; ///< none until the first event
};

/// The error of an event that the user's privacy settings refuse.
ScriptError automationRefused(const QString& application);

} // namespace macsim
