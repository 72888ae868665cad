#include "ui/startup/StartupItemsEditor.h"

#include "actions/ApplyReviewCoordinator.h"
#include "actions/Session.h"
#include "actions/StartupTexts.h"
#include "actions/WindowListener.h"
#include "ui/ViewEnvironment.h"
#include "ui/pieces/AppButtons.h"
#include "ui/pieces/PinnedBar.h"
#include "ui/pieces/ScrollPage.h"
#include "ui/pieces/SymbolButton.h"
#include "ui/pieces/SymbolView.h"
#include "ui/pieces/TextLabel.h"
#include "ui/startup/StartupItemsModel.h"
#include "ui/startup/StartupItemsView.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QVBoxLayout>

#include <QCoroTask>

namespace quorvane {

namespace {

constexpr int kSearchGlass = 14;
constexpr int kRoomForRows = 3 * Theme::kRow;

} // namespace

StartupItemsEditor::StartupItemsEditor(const ViewEnvironment& environment, const Options& options, QWidget* parent)
    : QWidget(parent)
    , m_environment(environment)
    , m_model(new StartupItemsModel(environment.session.startupEditing, environment.session.workingCopy, this))
    , m_view(new StartupItemsView(*m_model)) {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(makeTop());
    layout->addWidget(m_view, 1);
    if (options.showActions) {
        layout->addWidget(makeButtons(options));
    }
    setFocusProxy(m_search);
    m_view->installEventFilter(this);
    m_view->setAccessibleDescription(kStartupItemsFootnote); // also where there is no room for it
    setEnabled(!options.disabled);
    StartupEditing& editing = environment.session.startupEditing;
    connect(m_view, &StartupItemsView::pressed, this, &StartupItemsEditor::act);
    connect(m_view, &StartupItemsView::removalAsked, this,
            [this, &editing](const QModelIndex& index) { editing.remove(m_model->item(index).id); });
    connect(m_view, &StartupItemsView::hidingAsked, this,
            [this, &editing](const QModelIndex& index) { editing.toggleHidden(m_model->item(index).id); });
    connect(&editing, &StartupEditing::changed, this, &StartupItemsEditor::takeFindings);
    connect(&editing, &StartupEditing::changed, this, &StartupItemsEditor::takeStartup);
    connect(&editing, &StartupEditing::added, this, &StartupItemsEditor::showAdded);
    connect(&environment.session.workingCopy, &MasterProfileState::startupChanged, this,
            &StartupItemsEditor::takeStartup);
    takeFindings();
    takeStartup();
}

// ---- What it is made of

QWidget* StartupItemsEditor::makeAbout() {
    auto* const about = new QWidget;
    auto* const texts = new QVBoxLayout(about);
    texts->setContentsMargins(0, 0, 0, 0);
    texts->setSpacing(Theme::kGap8);
    texts->addWidget(new TextLabel(TextStyle::SectionTitle, TextTone::Normal, kStartupItemsTitle));
    texts->addWidget(new TextLabel(TextStyle::Secondary, TextTone::Secondary, kStartupItemsFootnote));
    return about;
}

QWidget* StartupItemsEditor::makeTop() {
    auto* const top = new QWidget;
    QVBoxLayout* const column = addColumn(*top, {Theme::kGap24, Theme::kGap16, Theme::kGap24, Theme::kGap8});
    column->setSpacing(Theme::kGap8);
    m_about = makeAbout();
    column->addWidget(m_about);
    m_search = new QLineEdit;
    m_search->setPlaceholderText(kSearchStartupItems);
    m_search->setAccessibleName(kSearchStartupItems);
    m_search->installEventFilter(this);
    connect(m_search, &QLineEdit::textChanged, m_model, &StartupItemsModel::setSearch);
    auto* const searchRow = new QHBoxLayout;
    searchRow->setSpacing(Theme::kGap8);
    searchRow->addWidget(new SymbolView(kSearchSymbol, kSearchGlass, nullptr, TextTone::Secondary));
    searchRow->addWidget(m_search, 1);
    column->addLayout(searchRow);
    m_count = new TextLabel(TextStyle::RowTitle);
    m_refresh = new SymbolButton(kRefreshSymbol, kRefresh);
    auto* const add = new SymbolButton(kAddApplicationSymbol, kAddApplication);
    auto* const countRow = new QHBoxLayout;
    countRow->setSpacing(Theme::kGap16);
    countRow->addWidget(m_count, 1);
    countRow->addWidget(m_refresh);
    countRow->addWidget(add);
    column->addLayout(countRow);
    m_unread = new TextLabel(TextStyle::Secondary, TextTone::Warning);
    column->addWidget(m_unread);
    const auto showCount = [this] { m_count->setText(runAtLoginHeading(m_model->runningCount())); };
    connect(m_model, &StartupItemsModel::runningCountChanged, this, showCount);
    showCount();
    Session& session = m_environment.session;
    ActionListener& listener = m_environment.listener;
    connect(m_refresh, &QPushButton::clicked, this, [&session] { session.startupEditing.refresh(); });
    connect(add, &QPushButton::clicked, this,
            [&session, &listener] { session.tasks.start(session.startupEditing.pickApplication(listener)); });
    return top;
}

QWidget* StartupItemsEditor::makeButtons(const Options& options) {
    auto* const bar = new PinnedBar;
    if (options.offersClearSelection) {
        auto* const clear = new AppSecondaryButton(kClearSelection);
        bar->addButton(clear);
        Session& session = m_environment.session;
        ActionListener& listener = m_environment.listener;
        connect(clear, &QPushButton::clicked, this,
                [&session, &listener] { session.tasks.start(session.startupEditing.clearSelection(listener)); });
    }
    m_review = new AppPrimaryButton(kReviewChanges);
    bar->addButton(m_review);
    connect(m_review, &QPushButton::clicked, this, &StartupItemsEditor::review);
    return bar;
}

// ---- What it shows

void StartupItemsEditor::takeFindings() {
    const Session& session = m_environment.session;
    m_refresh->setEnabled(!session.startupEditing.isRefreshing());
    const std::optional<DiscoveredStartup>& discovered = session.workingCopy.discovered();
    const QStringList unread = discovered ? unreadSourceTexts(*discovered) : QStringList();
    m_unread->setText(unread.join(u'\n'));
    const bool areLoginItemsRead = !discovered || discovered->loginItems == LoginItemsSource::Read;
    m_unread->setTone(areLoginItemsRead ? TextTone::Secondary : TextTone::Warning);
    m_unread->setVisible(!unread.isEmpty());
}

void StartupItemsEditor::takeStartup() {
    if (m_review != nullptr) {
        m_review->setEnabled(m_environment.session.startupEditing.canReview());
    }
}

/// In a low window, or with large text, what is told about the rows gives way to them.
void StartupItemsEditor::leaveRoomForRows() {
    const int width = m_about->parentWidget()->width();
    const int toTell = m_about->isHidden() ? m_about->heightForWidth(width) + Theme::kGap8 : 0;
    m_about->setVisible(m_view->height() - toTell >= kRoomForRows);
}

/// Also where the search would hide it.
void StartupItemsEditor::showAdded(const QString& id) {
    if (!m_model->indexOf(id).isValid()) {
        m_search->clear();
    }
    const QModelIndex added = m_model->indexOf(id);
    m_view->setCurrentIndex(added);
    m_view->scrollTo(added);
}

// ---- What is done in it

void StartupItemsEditor::act(const QModelIndex& index) {
    StartupEditing& editing = m_environment.session.startupEditing;
    switch (m_model->kind(index.row())) {
    case StartupItemsModel::Kind::Item:
        editing.switchItem(m_model->item(index).id, m_environment.listener);
        break;
    case StartupItemsModel::Kind::Suggestion:
        editing.add(m_model->suggestion(index));
        break;
    case StartupItemsModel::Kind::Service:
        editing.setServiceDisabled(m_model->service(index).service, m_model->service(index).isOn);
        break;
    case StartupItemsModel::Kind::Network:
        editing.setNetworkDisabled(!m_environment.session.workingCopy.startup().disableNetworkAtStartup);
        break;
    case StartupItemsModel::Kind::Note:
    case StartupItemsModel::Kind::Heading:
    case StartupItemsModel::Kind::ServicesHeading:
        break;
    }
}

void StartupItemsEditor::review() {
    m_environment.reviews.presentStartup(m_environment.session.workingCopy.startup(), m_environment.listener, {});
}

/// Escape empties the search, then goes back.
void StartupItemsEditor::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape) {
        QWidget::keyPressEvent(event);
    } else if (!m_search->text().isEmpty()) {
        m_search->clear();
    } else {
        Q_EMIT backRequested();
    }
}

bool StartupItemsEditor::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_view && event->type() == QEvent::Resize) {
        leaveRoomForRows();
    }
    const bool isDownKey =
        event->type() == QEvent::KeyPress && static_cast<const QKeyEvent*>(event)->key() == Qt::Key_Down;
    if (watched == m_search && isDownKey) {
        m_view->setFocus(Qt::TabFocusReason);
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void StartupItemsEditor::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    m_environment.session.startupEditing.load();
}

} // namespace quorvane
