#include "fakes/InProcessMac.h"

namespace quorvane {

InProcessTools::InProcessTools(const macsim::Mac& mac, const QString& faultsFile)
    : m_mac(mac)
    , m_faults(faultsFile.isEmpty() ? macsim::Faults() : macsim::Faults::fromFile(faultsFile)) {}

InProcessHost::InProcessHost(const QString& macFolder, const QString& program, Clock* clock, const QString& faultsFile)
    : m_base(macFolder, m_authorization, {program, faultsFile, {}})
    , m_tools(m_base.mac(), faultsFile)
    , m_counter(faultsFile)
    , m_clock(clock) {}

InProcessHost::~InProcessHost() = default;

macsim::ToolContext InProcessTools::context(const QStringList& arguments) {
    const QString home = m_mac.homeFolder(macsim::Actor::User);
    macsim::ToolContext made{
        m_mac, macsim::simulatorTools(), m_authorizer, m_mac.volume(macsim::Actor::User), arguments, {}, home, {}, {},
        {}};
    made.environment = {{QStringLiteral("HOME"), home},
                        {QStringLiteral("PATH"), QStringLiteral("/usr/bin:/bin:/usr/sbin:/sbin")},
                        {QStringLiteral("TMPDIR"), m_mac.temporaryFolder()},
                        {QStringLiteral("USER"), m_mac.machine().userName}};
    made.faults = &m_faults;
    return made;
}

QFuture<CommandOutcome> InProcessCommandLauncher::run(QStringList arguments, OutputCapture) {
    arguments.prepend(QStringLiteral("/usr/bin/env"));
    macsim::ToolContext context = m_tools.context(arguments);
    CommandOutcome outcome;
    outcome.ending = CommandOutcome::Ending::Exited;
    try {
        outcome.code = macsim::runCommand(macsim::findCommand(arguments.first(), context), context);
    } catch (const std::exception& error) {
        ADD_FAILURE() << commandLine(arguments).toStdString() << ": " << error.what();
    }
    outcome.standardOutput = context.output;
    outcome.standardError = context.error;
    return QtFuture::makeReadyFuture(outcome);
}

QFuture<ScriptOutcome> InProcessScriptEngine::run(QString source) {
    macsim::ToolContext context = m_tools.context({QStringLiteral("scriptengine")});
    const auto result = macsim::runScriptOnMac(source, context);
    if (const auto* error = std::get_if<macsim::ScriptError>(&result)) {
        return QtFuture::makeReadyFuture(ScriptOutcome{std::nullopt, error->message, error->number});
    }
    return QtFuture::makeReadyFuture(ScriptOutcome{std::get<macsim::ScriptResult>(result).text});
}

Host InProcessHost::host() {
    const Host base = m_base.host();
    return {m_faultyCommands, m_faultyScripts,
            base.files,       base.defaults,
            base.machine,     base.propertyLists,
            base.bundles,     base.backgroundTaskPermissions,
            base.cloud,       m_clock != nullptr ? *m_clock : base.clock,
            base.keychain,    base.biometrics,
            base.displays,    base.notifications,
            base.filePanels,  base.loginService};
}

} // namespace quorvane
