#include "ui/logs/LogsView.h"

#include "actions/Session.h"
#include "actions/WindowListener.h"
#include "actions/WindowTexts.h"
#include "ui/QuorvaneStyle.h"
#include "ui/ViewEnvironment.h"
#include "ui/logs/LogLinesView.h"
#include "ui/pieces/Announcement.h"
#include "ui/pieces/AppButtons.h"
#include "ui/pieces/AppCard.h"
#include "ui/pieces/AppSwitch.h"
#include "ui/pieces/MenuButton.h"
#include "ui/pieces/TextLabel.h"
#include "ui/pieces/WrappingRow.h"

#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QShortcut>
#include <QVBoxLayout>

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Direction = LogSearch::Direction;

/// The switch with its text, as wide as there is room.
QWidget* labelled(AppSwitch* toggle, const QString& text) {
    auto* const both = new QWidget;
    both->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    auto* const layout = new QHBoxLayout(both);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Theme::kGap8);
    auto* const label = new TextLabel(TextStyle::Body, TextTone::Normal, text);
    label->setWordWrap(false);
    layout->addWidget(toggle);
    layout->addWidget(label, 1);
    return both;
}

} // namespace

LogsView::LogsView(const ViewEnvironment& environment, QWidget* parent)
    : QWidget(parent)
    , m_environment(environment)
    , m_model(environment.session.system)
    , m_lines(new LogLinesView(m_model))
    , m_card(new AppCard)
    , m_searchField(new QLineEdit)
    , m_searchOutcome(new TextLabel(TextStyle::Secondary, TextTone::Secondary))
    , m_previous(new AppSecondaryButton(kPreviousMatch))
    , m_next(new AppSecondaryButton(kNextMatch))
    , m_run(new MenuButton(kThisRun))
    , m_tag(new MenuButton(kAllMessages))
    , m_debug(new AppSwitch)
    , m_clear(new AppSecondaryButton(kClearLog))
    , m_export(new AppSecondaryButton(kExportLog)) {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(Theme::kGap24, Theme::kGap24, Theme::kGap24, Theme::kGap24);
    layout->setSpacing(Theme::kGap12);
    layout->addWidget(makeSearchBar());
    layout->addWidget(makeActionBar());
    layout->addWidget(m_card, 1);
    m_card->addRow(m_lines);
    m_lines->setAccessibleName(u"Log"_s);
    m_lines->installEventFilter(this);
    makeLatestButton();
    makeShortcuts();
    connect(&environment.session.turnstile, &Turnstile::idleChanged, this, &LogsView::followIdle);
    showThisRun();
}

LogsView::~LogsView() = default;

// ---- Searching and choosing

QWidget* LogsView::makeSearchBar() {
    auto* const bar = new QWidget;
    auto* const row = new WrappingRow(bar);
    row->addWidget(m_searchField);
    row->addWidget(m_searchOutcome);
    row->addWidget(m_previous);
    row->addWidget(m_next);
    row->addWidget(m_run);
    row->addWidget(m_tag);
    m_searchField->setPlaceholderText(kSearchLog);
    m_searchField->setAccessibleName(kSearchLogLabel);
    m_searchField->installEventFilter(this);
    m_searchOutcome->setWordWrap(false);
    m_searchOutcome->hide();
    connect(&m_run->choices(), &QMenu::aboutToShow, this, &LogsView::fillRunMenu);
    connect(&m_tag->choices(), &QMenu::aboutToShow, this, &LogsView::fillTagMenu);
    connect(m_searchField, &QLineEdit::textChanged, this, &LogsView::beginSearch);
    connect(m_previous, &QPushButton::clicked, this, [this] { searchOn(Direction::Up); });
    connect(m_next, &QPushButton::clicked, this, [this] { searchOn(Direction::Down); });
    connect(&m_search, &LogSearch::found, m_lines, &LogLinesView::showRow);
    connect(&m_search, &LogSearch::notFound, this, [this] {
        m_searchOutcome->show();
        announce(m_searchOutcome, kNoMatch);
    });
    beginSearch({});
    return bar;
}

void LogsView::beginSearch(const QString& text) {
    m_search.cancel();
    m_searchOutcome->setText(kNoMatch);
    m_searchOutcome->hide();
    m_previous->setEnabled(!text.isEmpty());
    m_next->setEnabled(!text.isEmpty());
    m_lines->setMarkedText(text);
    if (!text.isEmpty()) {
        const QModelIndex current = m_lines->currentIndex();
        m_search.find(text, current.isValid() ? current.row() : m_lines->firstRowInView(), Direction::Down);
    }
}

void LogsView::searchOn(Direction direction) {
    const QString text = m_searchField->text();
    if (text.isEmpty()) {
        return;
    }
    m_searchOutcome->hide();
    const QModelIndex current = m_lines->currentIndex();
    const int from = current.isValid() ? current.row() : m_lines->firstRowInView();
    m_search.find(text, direction == Direction::Down ? from + 1 : from - 1, direction);
}

void LogsView::fillTagMenu() {
    QMenu& menu = m_tag->choices();
    menu.clear();
    const QString shown = m_tag->text();
    const auto add = [this, &menu, &shown](const QString& title, const std::optional<QString>& tag) {
        QAction* const action = menu.addAction(title, this, [this, tag] { showTag(tag); });
        action->setCheckable(true);
        action->setChecked(title == shown);
    };
    add(kAllMessages, std::nullopt);
    for (const QString& tag : m_model.tags()) {
        add(u'[' + tag + u']', tag);
    }
}

void LogsView::showTag(const std::optional<QString>& tag) {
    m_tag->setText(tag ? u'[' + *tag + u']' : kAllMessages);
    m_tag->setAccessibleName(kShownMessages + m_tag->text());
    m_lines->setEmptyText(tag ? kNoMessagesOfTag : m_whenEmpty);
    m_model.setTag(tag);
}

void LogsView::makeShortcuts() {
    const auto add = [this](const QKeySequence& keys, auto act) {
        auto* const shortcut = new QShortcut(keys, this, act);
        shortcut->setContext(Qt::WidgetWithChildrenShortcut);
    };
    add(QKeySequence::Find, [this] { m_searchField->setFocus(Qt::ShortcutFocusReason); });
    add(QKeySequence::FindNext, [this] { searchOn(Direction::Down); });
    add(QKeySequence::FindPrevious, [this] { searchOn(Direction::Up); });
}

// ---- This run and earlier ones

void LogsView::fillRunMenu() {
    QMenu& menu = m_run->choices();
    menu.clear();
    QAction* const thisRun = menu.addAction(kThisRun, this, &LogsView::showThisRun);
    thisRun->setCheckable(true);
    thisRun->setChecked(!m_kept);
    const KeptRuns kept = m_environment.session.logActions.keptRuns();
    for (const KeptRun& run : kept.runs) {
        QAction* const action = menu.addAction(run.title, this, [this, run] { chooseRun(run); });
        action->setCheckable(true);
        action->setChecked(m_kept && m_kept->file == run.file);
    }
    if (!kept.problem.isEmpty()) {
        menu.addAction(kept.problem)->setEnabled(false);
    }
}

void LogsView::showThisRun() {
    m_kept.reset();
    m_isReading = false;
    m_model.showThisRun();
    followRun(kNoLogMessages);
}

void LogsView::chooseRun(const KeptRun& run) {
    m_kept = std::make_unique<KeptRun>(run);
    m_isReading = true;
    m_model.showKept({});
    followRun(kReadingLogOfRun);
    m_environment.session.tasks.start(readRun(this, run));
}

/// Another run may be chosen meanwhile, and the window may go.
QCoro::Task<void> LogsView::readRun(QPointer<LogsView> view, KeptRun run) {
    const KeptLog log = co_await view->m_environment.session.logActions.readKept(run);
    if (!view || !view->m_isReading || view->m_kept->file != run.file) {
        co_return;
    }
    view->m_isReading = false;
    view->m_model.showKept(log.lines);
    view->followRun(log.problem.isEmpty() ? kEmptyLogOfRun : log.problem);
}

/// Another run has tags and matches of its own.
/// @param whenEmpty  what stands in the place of lines where there are none
void LogsView::followRun(const QString& whenEmpty) {
    const QString title = m_kept ? m_kept->title : kThisRun;
    m_run->setText(title);
    m_run->setAccessibleName(kShownRun + title);
    m_whenEmpty = whenEmpty;
    showTag(std::nullopt);
    m_searchOutcome->hide();
    m_clear->setEnabled(!m_kept);
    followIdle();
}

// ---- What is done with the log

QWidget* LogsView::makeActionBar() {
    auto* const bar = new QWidget;
    auto* const row = new WrappingRow(bar);
    auto* const copy = new AppSecondaryButton(kCopyLog);
    row->addWidget(labelled(m_debug, kVerboseLogging));
    row->addWidget(copy);
    row->addWidget(m_clear);
    row->addWidget(m_export);
    Session& session = m_environment.session;
    m_debug->setAccessibleName(kVerboseLogging);
    m_debug->setChecked(session.system.debugMode());
    connect(m_debug, &QAbstractButton::clicked, this, [&session](bool isOn) { session.logActions.setDebugMode(isOn); });
    connect(&session.system, &SystemManager::debugModeChanged, m_debug, &QAbstractButton::setChecked);
    connect(copy, &QPushButton::clicked, this,
            [this] { QGuiApplication::clipboard()->setText(m_lines->copiedText()); });
    connect(m_clear, &QPushButton::clicked, this, [&session] { session.logActions.clearLog(); });
    connect(m_export, &QPushButton::clicked, this, &LogsView::exportLog);
    return bar;
}

void LogsView::exportLog() {
    Session& session = m_environment.session;
    if (m_kept) {
        session.tasks.start(session.logActions.exportKept(*m_kept, m_model.kept(), m_environment.listener));
    } else {
        session.tasks.start(session.logActions.exportLog(m_environment.listener));
    }
}

/// What asks for a file waits for what runs, and for what is to be exported.
void LogsView::followIdle() {
    m_export->setEnabled(m_environment.session.turnstile.isIdle() && !m_isReading);
}

// ---- The newest line

void LogsView::makeLatestButton() {
    m_latest = new AppSecondaryButton({}, this); // behind the lines for the Tab key, too
    m_latest->hide();
    connect(m_lines, &LogLinesView::linesBelowChanged, this, &LogsView::placeLatest);
    connect(m_latest, &QPushButton::clicked, this, [this] {
        m_lines->setFocus(Qt::OtherFocusReason); // the button goes
        m_lines->scrollToLatest();
    });
}

void LogsView::placeLatest() {
    const int below = m_lines->linesBelow();
    m_latest->setVisible(below > 0);
    m_latest->setText(latestText(below));
    m_latest->adjustSize();
    const QRect card = m_card->geometry();
    m_latest->move(card.center().x() - m_latest->width() / 2, card.bottom() - m_latest->height() - Theme::kGap16);
    m_latest->raise();
}

void LogsView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    placeLatest();
}

// ---- Focus

/// The ring of the lines stands around the card, where nothing scrolls over it. Return goes on in the search.
bool LogsView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        update();
    }
    if (watched == m_searchField && event->type() == QEvent::KeyPress) {
        const auto* const key = static_cast<const QKeyEvent*>(event);
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            searchOn(key->modifiers().testFlag(Qt::ShiftModifier) ? Direction::Up : Direction::Down);
            return true;
        }
        if (key->key() == Qt::Key_Escape && !m_searchField->text().isEmpty()) {
            m_searchField->clear();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void LogsView::paintEvent(QPaintEvent*) {
    if (m_lines->hasFocus() && window()->testAttribute(Qt::WA_KeyboardFocusChange)) {
        QPainter painter(this);
        drawFocusRing(painter, themeOf(this), m_card->geometry(), Theme::kCardRadius);
    }
}

} // namespace quorvane
