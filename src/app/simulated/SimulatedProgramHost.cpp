#include "app/simulated/SimulatedProgramHost.h"

#include "app/simulated/MacOfUser.h"

namespace quorvane {

SimulatedProgramHost::SimulatedProgramHost(const QString& dataFolder)
    : m_host(macOfUser(dataFolder, macsimBesideProgram()), m_authorization,
             {macsimBesideProgram(), {}, {}, &m_finger, &m_panels}) {
    m_authorization.setMachine(m_host.mac().machine());
    m_panels.setMac(m_host.mac());
}

std::unique_ptr<ProgramHost> SimulatedProgramHost::make(const QString& dataFolder) {
    return std::make_unique<SimulatedProgramHost>(dataFolder);
}

AppParts SimulatedProgramHost::parts() {
    return {m_host.host(), m_host.systemLook(), m_appearance, m_workspace,
            m_statusItem,  m_documentation,     m_activity,   [this] { shutDown(); }};
}

void SimulatedProgramHost::shutDown() {
    m_host.shutDown();
    m_authorization.shutDown();
    m_finger.shutDown();
    m_panels.shutDown();
}

} // namespace quorvane
