#include "app/macos/MacProgramHost.h"

#include "documentation/DocumentationPage.h"
#include "ui/documentation/ShippedDocumentation.h"

#include <QCoreApplication>

namespace quorvane {

namespace {

QString shippedPage() {
    return documentationPage(shippedDocumentation(), webViewHead());
}

} // namespace

MacProgramHost::MacProgramHost(const QProcessEnvironment& environment)
    : m_host(environment)
    , m_filePanels(m_host.files())
    , m_documentation(kDocumentationTitle, &shippedPage) {
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, &m_untilTheEnd, [this] { m_host.defaults().synchronize(); });
}

AppParts MacProgramHost::parts() {
    return {m_host.host(m_filePanels), m_systemLook, m_appearance,          m_workspace, m_statusItem,
            m_documentation,           m_activity,   [this] { shutDown(); }};
}

void MacProgramHost::shutDown() {
    m_host.shutDown();
    m_filePanels.shutDown();
}

} // namespace quorvane
