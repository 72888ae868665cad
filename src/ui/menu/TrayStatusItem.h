#pragma once

#include "platform/StatusItem.h"

#include <QSystemTrayIcon>

#include <optional>

namespace quorvane {

/// The item in a status area.
class TrayStatusItem final : public StatusItem {
public:
    void setMenu(QMenu& menu) override;
    void remove() override { m_icon.reset(); }
    bool isShown() const override;

private:
    std::optional<QSystemTrayIcon> m_icon;
};

} // namespace quorvane
