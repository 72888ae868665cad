#include "platform/macos/MacStatusItem.h"

#include <QMenu>

#import <AppKit/AppKit.h>

namespace quorvane {

/// Stands in the menu bar as long as it is held.
struct MacStatusItem::Item {
    Item() {
        item.button.title = @"QV";
        item.button.toolTip = @"Quorvane";
        item.autosaveName = @"com.quorvane.app.status"; // the place that its user has dragged it to
        item.visible = YES;
    }
    ~Item() { [NSStatusBar.systemStatusBar removeStatusItem:item]; }
    Item(const Item&) = delete;
    Item& operator=(const Item&) = delete;

    NSStatusItem* item = [NSStatusBar.systemStatusBar statusItemWithLength:NSVariableStatusItemLength];
};

MacStatusItem::MacStatusItem() = default;

MacStatusItem::~MacStatusItem() = default;

/// The NSMenu belongs to the QMenu, and keeps Qt's delegate: it is by that that the menu is filled when it opens.
void MacStatusItem::setMenu(QMenu& menu) {
    m_item = std::make_unique<Item>();
    m_item->item.menu = menu.toNSMenu();
}

void MacStatusItem::remove() {
    m_item.reset();
}

} // namespace quorvane
