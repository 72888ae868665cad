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

    Authorization ask(const QString& prompt) override {
        prompts.append(prompt);
        return answer;
    }
};

/// A bare simulated Mac in a temporary folder, for tests of one tool: no preferences, no state but the machine's.
/// Commands of the given table are started in this process.
class SimulatedMacFolder {
public:
    explicit SimulatedMacFolder(ToolTable commands = {}, const Json& machine = defaultMachine())
        : tools(std::move(commands))
        , m_created(create(machine))
        , mac(m_folder.path() + QStringLiteral("/Mac")) {}

    static Json defaultMachine() {
        return {{"userName", "alex"}, {"userId", 501}, {"hardwareUuid", "11111111-2222-3333-4444-555555555555"}};
    }

    /// A run of a command by the user or by root, in the user's home folder.
    ToolContext context(const QStringList& arguments, Actor actor = Actor::User) {
        ToolContext made{mac, tools, authorizer, mac.volume(actor), arguments, {}, mac.homeFolder(actor), {}, {}, {}};
        made.environment = {
            {QStringLiteral("HOME"), mac.homeFolder(actor)},
            {QStringLiteral("PATH"), QStringLiteral("/usr/bin:/bin:/usr/sbin:/sbin")},
            {QStringLiteral("USER"), actor == Actor::Root ? QStringLiteral("root") : mac.machine().userName}};
        return made;
    }

    QString hostFolder() const { return m_folder.path() + QStringLiteral("/Mac"); }
    /// A folder on the host beside the Mac, outside of it.
    QString outside() const { return m_folder.path(); }

    ToolTable tools;
    ScriptedAuthorizer authorizer;

private:
    bool create(const Json& machine) {
        createMacSkeleton(hostFolder(), machine, tools.keys(), QStringLiteral("/nowhere/macsim"));
        return true;
    }

    QTemporaryDir m_folder;
    bool m_created;

public:
    Mac mac;
};

} // namespace macsim
