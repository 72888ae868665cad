#include "platform/simulated/SimulatedHost.h"

#include "simulator/Faults.h"
#include "simulator/MacSkeleton.h"
#include "simulator/SessionEnvironment.h"

#include <QCoreApplication>

namespace quorvane {

using namespace Qt::StringLiterals;

SimulatedHost::SimulatedHost(const QString& macFolder, AuthorizationPrompt& authorization,
                             const SimulatedHostOptions& options)
    : m_mac(macFolder)
    , m_environment(simulatedEnvironment(m_mac, options))
    , m_files(m_mac.volume(macsim::Actor::User), [this](AtomicWriteStep step) { m_faultyFiles.beforeStep(step); })
    , m_faultyFiles(m_files, fileFaultsFromFile(options.faultsFile))
    , m_defaults(m_mac)
    , m_machine(m_mac)
    , m_propertyLists(m_mac)
    , m_bundles(m_mac, m_propertyLists)
    , m_permissions(m_mac)
    , m_cloud(m_mac, m_faultyFiles)
    , m_keychain(m_mac, options.finger != nullptr ? *options.finger : m_nobody)
    , m_biometrics(m_mac)
    , m_displays(m_mac)
    , m_notifications(m_mac)
    , m_filePanels(options.filePanels != nullptr ? *options.filePanels : m_noPanels)
    , m_loginService(m_mac)
    , m_systemLook(m_mac)
    , m_commands(m_mac.hostFolder() + u"/usr/bin/env"_s, m_environment)
    , m_scripts(m_mac.hostFolder() + u"/usr/libexec/scriptengine"_s, m_environment, authorization)
    , m_counter(options.faultsFile) {
    macsim::relinkCommands(m_mac.hostFolder(), options.program);
}

Host SimulatedHost::host() {
    return {m_faultyCommands, m_faultyScripts, m_faultyFiles, m_defaults,    m_machine,  m_propertyLists,
            m_bundles,        m_permissions,   m_cloud,       m_clock,       m_keychain, m_biometrics,
            m_displays,       m_notifications, m_filePanels,  m_loginService};
}

void SimulatedHost::shutDown() {
    m_commands.shutDown();
    m_scripts.shutDown();
    m_cloud.shutDown();
    m_keychain.shutDown();
    m_clock.shutDown();
}

QString macsimBesideProgram() {
    return QCoreApplication::applicationDirPath() + u"/macsim"_s;
}

QProcessEnvironment simulatedEnvironment(const macsim::Mac& mac, const SimulatedHostOptions& options) {
    QProcessEnvironment environment;
    environment.insert(u"HOME"_s, mac.homeFolder(macsim::Actor::User));
    environment.insert(u"LANG"_s, u"en_US.UTF-8"_s);
    environment.insert(u"PATH"_s, u"/usr/bin:/bin:/usr/sbin:/sbin"_s);
    environment.insert(u"TMPDIR"_s, mac.temporaryFolder());
    environment.insert(u"USER"_s, mac.machine().userName);
    const QMap<QString, QString> ofSession = macsim::sessionEnvironment(mac.state());
    for (auto variable = ofSession.begin(); variable != ofSession.end(); ++variable) {
        environment.insert(variable.key(), *variable);
    }
    if (!options.faultsFile.isEmpty()) {
        macsim::Faults::fromFile(options.faultsFile); // refused here, and not by each tool for itself
        environment.insert(u"MACSIM_FAULTS"_s, options.faultsFile);
    }
    if (!options.journalFile.isEmpty()) {
        environment.insert(u"MACSIM_JOURNAL"_s, options.journalFile);
    }
    return environment;
}

} // namespace quorvane
