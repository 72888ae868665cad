#include "ui/window/WaitingDialogOverlay.h"

#include "actions/PageTexts.h"
#include "actions/WindowTexts.h"
#include "core/OneLine.h"
#include "platform/Clock.h"
#include "system/SystemManager.h"
#include "ui/pieces/Announcement.h"
#include "ui/pieces/ProgressRing.h"
#include "ui/pieces/TextLabel.h"
#include "ui/pieces/WhenFinished.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int kCardWidth = 320;
constexpr int kWaitingRing = 36;

/// The ground of the message.
class WaitingCard : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent*) override {
        const Theme& theme = themeOf(this);
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(theme.border);
        painter.setBrush(theme.card);
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Theme::kCardRadius, Theme::kCardRadius);
    }
};

} // namespace

WaitingDialogOverlay::WaitingDialogOverlay(const SystemManager& system, Clock& clock,
                                           std::chrono::milliseconds presentationDelay, QWidget* beneath,
                                           QWidget* parent)
    : QWidget(parent)
    , m_system(system)
    , m_clock(clock)
    , m_beneath(beneath, this)
    , m_presentationDelay(presentationDelay)
    , m_card(new WaitingCard)
    , m_ring(new ProgressRing(kWaitingRing))
    , m_message(TextLabel::centred(TextStyle::SectionTitle, TextTone::Normal))
    , m_hint(TextLabel::centred(TextStyle::Secondary, TextTone::Secondary))
    , m_line(TextLabel::centred(TextStyle::Secondary, TextTone::Secondary)) {
    m_hint->setText(u"This may take a moment."_s);
    m_card->setFixedWidth(kCardWidth);
    auto* const texts = new QVBoxLayout(m_card);
    texts->setContentsMargins(Theme::kGap24, Theme::kGap24, Theme::kGap24, Theme::kGap24);
    texts->setSpacing(Theme::kGap8);
    texts->addWidget(m_ring, 0, Qt::AlignHCenter);
    texts->addSpacing(Theme::kGap4);
    for (TextLabel* const label : {m_message, m_hint, m_line}) {
        texts->addWidget(label);
    }
    auto* const centre = new QVBoxLayout(this);
    centre->addWidget(m_card, 0, Qt::AlignCenter);
    connect(&system, &SystemManager::isBusyChanged, this, &WaitingDialogOverlay::follow);
    connect(&system, &SystemManager::busyMessageChanged, this, &WaitingDialogOverlay::takeText);
    connect(&system, &SystemManager::messageLogged, this, &WaitingDialogOverlay::takeText);
    hide();
    follow();
}

void WaitingDialogOverlay::setSuppressed(bool isSuppressed) {
    m_isSuppressed = isSuppressed;
    follow();
}

bool WaitingDialogOverlay::isActive() const {
    return m_system.isBusy() && !m_isSuppressed;
}

void WaitingDialogOverlay::follow() {
    if (isActive() && !m_isWaiting) {
        beginWaiting();
    } else if (!isActive()) {
        conceal();
    }
}

void WaitingDialogOverlay::beginWaiting() {
    m_isWaiting = true;
    const int round = ++m_round;
    whenFinished(m_clock.sleepFor(m_presentationDelay), this, [this, round](const QFuture<void>&) {
        if (round == m_round) {
            reveal();
        }
    });
    whenFinished(m_clock.sleepFor(kLineDelay), this, [this, round](const QFuture<void>&) {
        if (round == m_round) {
            m_showsLine = true;
            takeText();
        }
    });
}

void WaitingDialogOverlay::reveal() {
    takeText();
    m_beneath.begin();
    show();
    raise();
    announce(this, m_message->text());
}

void WaitingDialogOverlay::conceal() {
    ++m_round;
    m_isWaiting = false;
    m_showsLine = false;
    hide();
    m_beneath.end();
}

void WaitingDialogOverlay::takeText() {
    if (!isActive()) {
        return;
    }
    m_message->setText(waitingText(m_system.isBusy(), m_system.busyMessage(), m_system.isVerifyingSystem()));
    const bool showsLine = m_showsLine && !m_system.logMessages().isEmpty();
    m_line->setText(showsLine ? nameOnOneLine(m_system.logMessages().last().trimmed()) : QString());
    m_line->setVisible(showsLine);
    setAccessibleName(m_message->text());
    setAccessibleDescription(m_hint->text());
}

void WaitingDialogOverlay::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), themeOf(this).shade);
}

} // namespace quorvane
