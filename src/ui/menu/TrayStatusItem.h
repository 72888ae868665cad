#pragma once

#include "ui/menu/StatusItem.h"

#include <QSystemTrayIcon>

namespace quorvane {

/// The item in a status area.
class TrayStatusItem final : public StatusItem {
public:
    TrayStatusItem();

    void setMenu(QMenu& menu) override;
    bool isShown() const override;

private:
    QSystemTrayIcon m_icon;
};

} // namespace quorvane
