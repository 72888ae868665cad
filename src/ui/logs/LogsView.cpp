#include "ui/logs/LogsView.h"

#include "actions/Session.h"
#include "actions/WindowTexts.h"
#include "core/OneLine.h"
#include "ui/QuorvaneStyle.h"
#include "ui/ViewEnvironment.h"
#include "ui/logs/LogHighlighter.h"
#include "ui/pieces/AppCard.h"

#include <QEvent>
#include <QPainter>
#include <QPlainTextEdit>
#include <QVBoxLayout>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// The lines of a message as they may be shown.
QString plainLines(const QString& message) {
    QStringList lines;
    for (const QString& line : message.split(u'\n')) {
        lines.append(onOneLine(line));
    }
    return lines.join(u'\n');
}

} // namespace

LogsView::LogsView(const ViewEnvironment& environment, QWidget* parent)
    : QWidget(parent)
    , m_list(new QPlainTextEdit) {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(Theme::kGap24, Theme::kGap24, Theme::kGap24, Theme::kGap24);
    m_card = new AppCard;
    m_card->addRow(m_list);
    layout->addWidget(m_card);
    m_list->installEventFilter(this);
    m_list->setReadOnly(true);
    m_list->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->document()->setDocumentMargin(Theme::kGap12);
    m_list->viewport()->setAutoFillBackground(false);
    m_list->setPlaceholderText(kNoLogMessages);
    m_list->setUndoRedoEnabled(false);
    m_list->setTabChangesFocus(true);
    m_list->setAccessibleName(u"Log"_s);
    m_list->setAccessibleDescription(kNoLogMessages);
    new LogHighlighter(*m_list);
    takeTheme();
    const SystemManager& system = environment.session.system;
    append(system.logMessages().join(u'\n'));
    connect(&system, &SystemManager::messageLogged, this, &LogsView::append);
}

/// The text edit follows its end as long as the user hasn't scrolled away from it.
void LogsView::append(const QString& message) {
    if (!message.isEmpty()) {
        m_list->appendPlainText(plainLines(message));
        m_list->setAccessibleDescription({});
    }
}

void LogsView::takeTheme() {
    const Theme& theme = themeOf(this);
    m_list->setFont(theme.font(TextStyle::Fixed));
    QPalette palette = theme.palette();
    palette.setColor(QPalette::Base, Qt::transparent); // the card shows through, with its round corners
    m_list->setPalette(palette);
}

/// The ring stands around the card, where nothing scrolls over it.
bool LogsView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        update();
    }
    return QWidget::eventFilter(watched, event);
}

void LogsView::paintEvent(QPaintEvent*) {
    if (m_list->hasFocus() && window()->testAttribute(Qt::WA_KeyboardFocusChange)) {
        QPainter painter(this);
        drawFocusRing(painter, themeOf(this), m_card->geometry(), Theme::kCardRadius);
    }
}

void LogsView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::StyleChange) {
        takeTheme();
    }
}

} // namespace quorvane
