#include "ui/review/ApplyReviewSheet.h"

#include "actions/ActionTexts.h"
#include "actions/ApplyReview.h"
#include "actions/WindowTexts.h"
#include "core/OneLine.h"
#include "platform/Clock.h"
#include "ui/pieces/Announcement.h"
#include "ui/pieces/AppButtons.h"
#include "ui/pieces/AppCard.h"
#include "ui/pieces/ProgressRing.h"
#include "ui/pieces/SymbolView.h"
#include "ui/pieces/WhenFinished.h"
#include "ui/review/ReviewRows.h"

#include <QHBoxLayout>
#include <QPointer>
#include <QVBoxLayout>

#include <chrono>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kLoadingDelay = 400ms;
constexpr int kRing = 20;

/// Contents of the sheet, from top to bottom.
class Column {
public:
    Column()
        : m_widget(new QWidget)
        , m_layout(new QVBoxLayout(m_widget)) {
        m_layout->setContentsMargins(0, 0, 0, 0);
        m_layout->setSpacing(Theme::kGap12);
    }
    void add(QWidget* widget) { m_layout->addWidget(widget); }
    QWidget* finished() {
        m_layout->addStretch(1);
        return m_widget;
    }

private:
    QWidget* m_widget;
    QVBoxLayout* m_layout;
};

} // namespace

ApplyReviewSheet::ApplyReviewSheet(std::shared_ptr<ApplyReview> review, Clock& clock, QWidget* parent)
    : Sheet(parent)
    , m_review(std::move(review))
    , m_clock(clock) {
    setTitle(m_review->review().title, m_review->review().subtitle);
    makeButtons();
    connect(this, &Sheet::closeRequested, m_review.get(), &ApplyReview::close);
    connect(m_review.get(), &ApplyReview::changed, this, &ApplyReviewSheet::update);
    update();
}

void ApplyReviewSheet::makeButtons() {
    m_ring = new ProgressRing(kRing);
    m_waiting = new TextLabel(TextStyle::Body, TextTone::Secondary, m_review->review().busyText);
    m_waiting->setWordWrap(false);
    m_close = new AppSecondaryButton(kClose);
    m_apply = new AppPrimaryButton(m_review->review().button);
    m_done = new AppPrimaryButton(kDone);
    addButtonAside(m_waiting);
    addButtonAside(m_ring);
    for (QPushButton* const button : {m_close, m_apply, m_done}) {
        addButton(button);
    }
    connect(m_close, &QPushButton::clicked, m_review.get(), &ApplyReview::close);
    connect(m_apply, &QPushButton::clicked, m_review.get(), &ApplyReview::apply);
    connect(m_done, &QPushButton::clicked, m_review.get(), &ApplyReview::close);
}

void ApplyReviewSheet::showEvent(QShowEvent* event) {
    Sheet::showEvent(event);
    if (focusWidget() == nullptr) {
        (m_apply->isEnabled() ? m_apply : m_close)->setFocus(Qt::OtherFocusReason);
    }
}

void ApplyReviewSheet::update() {
    updateContents();
    updateButtons();
    QWidget::update();
}

/// The preview stays as it stands while it is applied.
void ApplyReviewSheet::updateContents() {
    const Contents wanted = m_review->result()    ? Contents::Result
                            : m_review->preview() ? Contents::Preview
                                                  : Contents::Loading;
    if (std::exchange(m_shown, wanted) == wanted) {
        return;
    }
    switch (wanted) {
    case Contents::Loading:
        return showLoading();
    case Contents::Preview:
        return showPreview();
    case Contents::Result:
        return showResult(*m_review->result());
    }
}

void ApplyReviewSheet::updateButtons() {
    const bool isApplying = m_review->state() == ApplyReview::State::Applying;
    const bool isFinished = m_review->state() == ApplyReview::State::Finished;
    m_ring->setVisible(isApplying);
    m_waiting->setVisible(isApplying);
    m_apply->setVisible(!isFinished);
    m_apply->setEnabled(m_review->canApply());
    m_apply->setDefault(!isFinished);
    m_close->setEnabled(!isApplying);
    m_close->setVisible(!isFinished);
    m_done->setVisible(isFinished);
    m_done->setDefault(isFinished);
    if (isFinished) {
        m_done->setFocus(Qt::OtherFocusReason);
    } else if (m_apply->isEnabled()) {
        m_apply->setFocus(Qt::OtherFocusReason);
    }
}

/// Only what takes a moment says that it does.
void ApplyReviewSheet::showLoading() {
    setContents(Column().finished());
    whenFinished(m_clock.sleepFor(kLoadingDelay), this, [this](const QFuture<void>&) {
        if (!m_review->preview() && !m_review->result()) {
            Column column;
            TextLabel* const text = new TextLabel(TextStyle::Body, TextTone::Secondary, kPreparingReview);
            column.add(text);
            setContents(column.finished());
            announce(text, kPreparingReview);
        }
    });
}

void ApplyReviewSheet::showPreview() {
    Column column;
    const QList<ReviewSection> sections =
        std::visit([](const auto& preview) { return reviewSections(preview); }, *m_review->preview());
    for (const ReviewSection& section : sections) {
        column.add(new ReviewSectionView(section));
    }
    if (!quorvane::canApply(*m_review->preview())) {
        column.add(new TextLabel(TextStyle::Body, TextTone::Secondary, m_review->review().nothingToDo));
    }
    setContents(column.finished());
}

/// What was to be reviewed is no news any more.
void ApplyReviewSheet::showResult(const ResultPanel& result) {
    setTitle(m_review->review().title, {});
    Column column;
    auto* const heading = new ResultHeading(result);
    column.add(heading);
    column.add(new VerificationView(result.verification));
    setContents(column.finished());
    announce(heading, result.title + u". "_s + result.text);
}

} // namespace quorvane
