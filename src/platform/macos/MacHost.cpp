#include "platform/macos/MacHost.h"

namespace quorvane {

using namespace Qt::StringLiterals;

MacHost::MacHost(const QProcessEnvironment& environment)
    : m_commands(u"/usr/bin/env"_s, environment) {}

Host MacHost::host(FilePanels& filePanels) {
    return {m_commands, m_scripts, m_files,    m_defaults,   m_machine,  m_propertyLists, m_bundles,  m_permissions,
            m_cloud,    m_clock,   m_keychain, m_biometrics, m_displays, m_notifications, filePanels, m_loginService};
}

void MacHost::shutDown() {
    m_commands.shutDown();
    m_scripts.shutDown();
    m_cloud.shutDown();
    m_keychain.shutDown();
    m_clock.shutDown();
}

} // namespace quorvane
