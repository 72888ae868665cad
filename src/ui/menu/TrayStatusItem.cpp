#include "ui/menu/TrayStatusItem.h"

#include "ui/symbols/Logo.h"

#include <QCursor>
#include <QMenu>

namespace quorvane {

using namespace Qt::StringLiterals;

TrayStatusItem::TrayStatusItem()
    : m_icon(statusIcon()) {
    m_icon.setToolTip(u"Quorvane"_s);
    // The other button opens the menu by itself.
    QObject::connect(&m_icon, &QSystemTrayIcon::activated, &m_icon, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger && m_icon.contextMenu() != nullptr) {
            m_icon.contextMenu()->popup(QCursor::pos());
        }
    });
}

void TrayStatusItem::setMenu(QMenu& menu) {
    m_icon.setContextMenu(&menu);
    m_icon.show();
}

bool TrayStatusItem::isShown() const {
    return QSystemTrayIcon::isSystemTrayAvailable();
}

} // namespace quorvane
