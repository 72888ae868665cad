#include "ui/menu/TrayStatusItem.h"

#include "ui/symbols/Logo.h"

#include <QMenu>

namespace quorvane {

using namespace Qt::StringLiterals;

TrayStatusItem::TrayStatusItem()
    : m_icon(statusIcon()) {
    m_icon.setToolTip(u"Quorvane"_s);
}

void TrayStatusItem::setMenu(QMenu& menu) {
    m_icon.setContextMenu(&menu);
    m_icon.show();
}

bool TrayStatusItem::isShown() const {
    return QSystemTrayIcon::isSystemTrayAvailable();
}

} // namespace quorvane
