#include "fakes/SimulatedMacFolder.h"

namespace macsim {

SimulatedMacFolder::SimulatedMacFolder(ToolTable commands, const Json& machine)
    : tools(std::move(commands))
    , m_created(create(machine))
    , mac(m_folder.path() + QStringLiteral("/Mac")) {}

SimulatedMacFolder::~SimulatedMacFolder() = default;

Authorization ScriptedAuthorizer::ask(const QString& prompt) {
    prompts.append(prompt);
    return answer;
}

Json SimulatedMacFolder::defaultMachine() {
    return {{"userName", "alex"}, {"userId", 501}, {"hardwareUuid", "11111111-2222-3333-4444-555555555555"}};
}

ToolContext SimulatedMacFolder::context(const QStringList& arguments, Actor actor) {
    ToolContext made{mac, tools, authorizer, mac.volume(actor), arguments, {}, mac.homeFolder(actor), {}, {}, {}};
    made.environment = {
        {QStringLiteral("HOME"), mac.homeFolder(actor)},
        {QStringLiteral("PATH"), QStringLiteral("/usr/bin:/bin:/usr/sbin:/sbin")},
        {QStringLiteral("USER"), actor == Actor::Root ? QStringLiteral("root") : mac.machine().userName}};
    return made;
}

QString SimulatedMacFolder::hostFolder() const {
    return m_folder.path() + QStringLiteral("/Mac");
}

bool SimulatedMacFolder::create(const Json& machine) {
    createMacSkeleton(hostFolder(), machine, tools.keys(), QStringLiteral("/nowhere/macsim"));
    return true;
}

} // namespace macsim
