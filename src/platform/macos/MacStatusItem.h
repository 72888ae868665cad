#pragma once

#include "platform/StatusItem.h"

#include <memory>

namespace quorvane {

/// The item in the menu bar, which shows the program's menu as the system's own. QSystemTrayIcon isn't used on a Mac: with a
/// menu it ends the program on macOS 27 (QTBUG-147449).
class MacStatusItem final : public StatusItem {
public:
    MacStatusItem();
    ~MacStatusItem() override;

    void setMenu(QMenu& menu) override;
    void remove() override;
    /// Always: where a full menu bar hides the item, the program is still in the Dock.
    bool isShown() const override { return true; }

private:
    struct Item;
    std::unique_ptr<Item> m_item;
};

} // namespace quorvane
