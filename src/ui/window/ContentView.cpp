#include "ui/window/ContentView.h"

#include "actions/AppPasswordEntry.h"
#include "actions/ApplyReviewCoordinator.h"
#include "actions/MasterBaselineOffer.h"
#include "actions/ProfileSaveOffer.h"
#include "actions/RowChoice.h"
#include "actions/Session.h"
#include "actions/WindowListener.h"
#include "lock/LockManager.h"
#include "ui/Theme.h"
#include "ui/ViewEnvironment.h"
#include "ui/documentation/DocumentationOpener.h"
#include "ui/lock/LockScreenView.h"
#include "ui/pieces/Layers.h"
#include "ui/pieces/SheetLayer.h"
#include "ui/profiles/SaveProfileSheet.h"
#include "ui/review/ApplyReviewSheet.h"
#include "ui/review/MasterSystemBaselinePrompt.h"
#include "ui/settings/AppPasswordSheet.h"
#include "ui/settings/RowChoiceSheet.h"
#include "ui/window/MainContentArea.h"
#include "ui/window/SidebarView.h"
#include "ui/window/WaitingDialogOverlay.h"

#include <QApplication>
#include <QSplitter>

#include <algorithm>
#include <chrono>

namespace quorvane {

using namespace std::chrono_literals;

namespace {

constexpr auto kPresentationDelay = 400ms;
constexpr int kSidebarMinimum = 180;
constexpr int kSidebarIdeal = 200;
constexpr int kSidebarMaximum = 250;

} // namespace

ContentView::ContentView(const ViewEnvironment& environment, QWidget* parent)
    : Layers(parent)
    , m_environment(environment)
    , m_underLock(new Layers(this))
    , m_split(new QSplitter(m_underLock))
    , m_sidebar(new SidebarView)
    , m_sheets(new SheetLayer(m_split, m_underLock)) {
    const int ofTexts = m_sidebar->widthOfTexts();
    m_sidebar->setMinimumWidth(std::max(kSidebarMinimum, ofTexts));
    m_sidebar->setMaximumWidth(std::max(kSidebarMaximum, ofTexts));
    m_split->setChildrenCollapsible(false);
    m_split->addWidget(m_sidebar);
    m_split->addWidget(makeDetail());
    m_sidebar->lower(); // comes first for screen readers, too
    m_split->setStretchFactor(1, 1);
    m_split->setSizes({kSidebarIdeal, Theme::kColumn});
    m_sidebar->setSelectedTab(m_selectedTab);
    connect(m_sidebar, &SidebarView::tabSelected, this, &ContentView::setSelectedTab);
    connect(m_sidebar, &SidebarView::documentationRequested, this,
            [&environment] { environment.documentation.showDocumentationWindow(); });
    connect(&environment.lock, &LockManager::isUnlockedChanged, this, &ContentView::followLock);
    connect(&environment.reviews, &ApplyReviewCoordinator::requestChanged, this, &ContentView::followSheets);
    connect(&environment.listener, &WindowListener::sheetChanged, this, &ContentView::followSheets);
    connect(qApp, &QApplication::focusChanged, this, &ContentView::keepFocusOnLock);
    followLock();
    followSheets();
}

/// What it holds gives up the focus while it goes.
ContentView::~ContentView() {
    disconnect(qApp, nullptr, this, nullptr);
}

/// The page, and what waits over it.
QWidget* ContentView::makeDetail() {
    auto* const detail = new Layers;
    m_pages = new MainContentArea(m_environment, detail);
    m_waiting = new WaitingDialogOverlay(m_environment.session.system, m_environment.clock, kPresentationDelay, m_pages,
                                         detail);
    return detail;
}

void ContentView::setSelectedTab(Tab tab) {
    if (tab == m_selectedTab) {
        return;
    }
    m_selectedTab = tab;
    m_sidebar->setSelectedTab(tab);
    m_pages->setSelectedTab(tab);
    Q_EMIT selectedTabChanged();
}

QByteArray ContentView::columns() const {
    return m_split->saveState();
}

void ContentView::setColumns(const QByteArray& columns) {
    m_split->restoreState(columns);
}

// ---- Sheets

/// One at a time: an action opens it, and there is one action at a time.
void ContentView::followSheets() {
    const WindowListener& listener = m_environment.listener;
    m_waiting->setSuppressed(listener.sheet() != nullptr);
    if (Sheet* const sheet = makeSheet()) {
        m_sheets->show(sheet);
    } else {
        m_sheets->clear();
    }
}

/// Null where none is open.
Sheet* ContentView::makeSheet() const {
    const WindowListener& listener = m_environment.listener;
    if (const std::optional<ApplyReviewRequest>& request = m_environment.reviews.request()) {
        return new ApplyReviewSheet(request->review, m_environment.clock);
    }
    if (auto offer = std::dynamic_pointer_cast<MasterBaselineOffer>(listener.sheet())) {
        return new MasterSystemBaselinePrompt(offer);
    }
    if (auto offer = std::dynamic_pointer_cast<ProfileSaveOffer>(listener.sheet())) {
        return new SaveProfileSheet(offer);
    }
    if (auto entry = std::dynamic_pointer_cast<AppPasswordEntry>(listener.sheet())) {
        return new AppPasswordSheet(entry, m_environment.lock);
    }
    if (auto choice = std::dynamic_pointer_cast<RowChoice>(listener.sheet())) {
        return new RowChoiceSheet(choice);
    }
    return nullptr;
}

// ---- The lock

void ContentView::followLock() {
    const bool isLocked = !m_environment.lock.isUnlocked();
    if (isLocked == m_isCovered) {
        return;
    }
    m_isCovered = isLocked;
    if (isLocked) {
        cover();
    } else {
        uncover();
    }
}

/// Hidden as a whole, what lies beneath is out of reach of eyes, keys and screen readers, and comes back as it was.
void ContentView::cover() {
    closePopups();
    if (m_lockScreen == nullptr) {
        m_lockScreen =
            new LockScreenView(m_environment.lock, m_environment.workspace, m_environment.session.tasks, this);
    }
    m_focusBeforeLock = m_underLock->focusWidget();
    m_underLock->hide();
    m_lockScreen->appear();
}

void ContentView::uncover() {
    m_lockScreen->disappear(); // and leaves the focus to what is shown again
    m_underLock->show();
    m_lockScreen->raise();
    if (m_focusBeforeLock != nullptr && m_focusBeforeLock->isEnabled()) {
        m_focusBeforeLock->setFocus(Qt::OtherFocusReason);
    }
}

/// What opens or goes on beneath asks for the focus. It gets it when the lock goes; until then keys are for the lock.
void ContentView::keepFocusOnLock() {
    QWidget* const focused = window()->focusWidget();
    if (m_isCovered && focused != nullptr && m_underLock->isAncestorOf(focused)) {
        m_focusBeforeLock = focused;
        m_lockScreen->takeFocus();
    }
}

/// A window that isn't the active one tells of no change of its focus.
bool ContentView::event(QEvent* event) {
    if (event->type() == QEvent::WindowActivate) {
        keepFocusOnLock();
    }
    return Layers::event(event);
}

/// Menus of the window would stay above it.
void ContentView::closePopups() {
    while (QWidget* const popup = QApplication::activePopupWidget()) {
        if (!popup->close()) {
            return;
        }
    }
}

} // namespace quorvane
