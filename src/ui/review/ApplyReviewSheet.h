#pragma once

#include "ui/pieces/Sheet.h"

#include <memory>

class QPushButton;
class QVBoxLayout;

namespace quorvane {

class ApplyReview;
class Clock;
class ProgressRing;
class TextLabel;
struct ResultPanel;
struct ReviewSection;

/// Shows what an apply would change, that it runs, and what came of it.
class ApplyReviewSheet : public Sheet {
    Q_OBJECT

public:
    ApplyReviewSheet(std::shared_ptr<ApplyReview> review, Clock& clock, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void makeButtons();
    void update();
    void updateButtons();
    void showLoading();
    void showPreview();
    void showResult(const ResultPanel& result);

    std::shared_ptr<ApplyReview> m_review;
    Clock& m_clock;
    QPushButton* m_close = nullptr;
    QPushButton* m_apply = nullptr;
    QPushButton* m_done = nullptr;
    ProgressRing* m_ring = nullptr;
    TextLabel* m_waiting = nullptr;
};

} // namespace quorvane
