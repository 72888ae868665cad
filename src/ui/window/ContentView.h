#pragma once

#include "actions/WindowTexts.h"
#include "ui/pieces/Layers.h"

#include <QPointer>

class QSplitter;

namespace quorvane {

class LockScreenView;
class MainContentArea;
class Sheet;
class SheetLayer;
class SidebarView;
class WaitingDialogOverlay;
struct ViewEnvironment;

/// The whole of the window: sidebar and page, over them what waits, the sheets, and on top of all the lock.
class ContentView : public Layers {
    Q_OBJECT

public:
    explicit ContentView(const ViewEnvironment& environment, QWidget* parent = nullptr);
    ~ContentView() override;

    void setSelectedTab(Tab tab);
    Tab selectedTab() const { return m_selectedTab; }
    /// How wide sidebar and page are; see QSplitter::saveState.
    QByteArray columns() const;
    void setColumns(const QByteArray& columns);

Q_SIGNALS:
    void selectedTabChanged();

protected:
    bool event(QEvent* event) override;

private:
    QWidget* makeDetail();
    void followSheets();
    Sheet* makeSheet() const;
    void followLock();
    void cover();
    void uncover();
    void keepFocusOnLock();
    static void closePopups();

    const ViewEnvironment& m_environment;
    Tab m_selectedTab = Tab::performance;
    QWidget* m_underLock; ///< everything but the lock screen
    QSplitter* m_split;
    SidebarView* m_sidebar;
    MainContentArea* m_pages = nullptr;
    WaitingDialogOverlay* m_waiting = nullptr;
    SheetLayer* m_sheets;
    LockScreenView* m_lockScreen = nullptr; ///< from the first time on that it is needed
    bool m_isCovered = false;
    QPointer<QWidget> m_focusBeforeLock;
};

} // namespace quorvane
