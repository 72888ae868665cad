#pragma once

class QMenu;

namespace quorvane {

/// The program's item in the system's menu bar, or in the status area of another system. It shows "QV". Main thread.
class StatusItem {
public:
    StatusItem() = default;
    StatusItem(const StatusItem&) = delete;
    StatusItem& operator=(const StatusItem&) = delete;
    virtual ~StatusItem() = default;

    /// Shows the item with this menu, which stays until the item is removed.
    virtual void setMenu(QMenu& menu) = 0;
    /// The item goes, where it is there.
    virtual void remove() = 0;
    /// False where there is no place for it.
    virtual bool isShown() const = 0;
};

} // namespace quorvane
