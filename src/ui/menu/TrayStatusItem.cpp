#include "ui/menu/TrayStatusItem.h"

#include "ui/symbols/Logo.h"

#include <QCursor>
#include <QMenu>

namespace quorvane {

using namespace Qt::StringLiterals;

/// Not before there is a menu: to make the icon is to ask the desktop, which may take its time.
void TrayStatusItem::setMenu(QMenu& menu) {
    m_icon.emplace(statusIcon());
    m_icon->setToolTip(u"Quorvane"_s);
    m_icon->setContextMenu(&menu);
    // The other button opens the menu by itself.
    QObject::connect(&*m_icon, &QSystemTrayIcon::activated, &menu, [&menu](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger) {
            menu.popup(QCursor::pos());
        }
    });
    m_icon->show();
}

bool TrayStatusItem::isShown() const {
    return QSystemTrayIcon::isSystemTrayAvailable();
}

} // namespace quorvane
