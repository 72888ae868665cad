#pragma once

#include "simulator/Authorizer.h"
#include "simulator/MacSkeleton.h"
#include "simulator/Tool.h"

#include <QTemporaryDir>

namespace macsim {

/// Gives every prompt the same answer and counts them.
class ScriptedAuthorizer final : public Authorizer {
public:
    Authorization answer = Authorization::Allow;
    QStringList prompts;

    Authorization ask(const QString& prompt) override;
};

/// A bare simulated Mac in a temporary folder, for tests of one tool: no preferences, no state but the machine's.
/// Commands of the given table are started in this process.
class SimulatedMacFolder {
public:
    explicit SimulatedMacFolder(ToolTable commands = {}, const Json& machine = defaultMachine());
    ~SimulatedMacFolder();

    static Json defaultMachine();

    /// A run of a command by the user or by root, in the user's home folder.
    ToolContext context(const QStringList& arguments, Actor actor = Actor::User);
    QString hostFolder() const;
    /// A folder on the host beside the Mac, outside of it.
    QString outside() const { return m_folder.path(); }

    ToolTable tools;
    ScriptedAuthorizer authorizer;

private:
    bool create(const Json& machine);

    QTemporaryDir m_folder;
    bool m_created;

public:
    Mac mac;
};

} // namespace macsim
