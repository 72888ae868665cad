#pragma once

#include "ui/pieces/Sheet.h"

#include <memory>
#include <optional>

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
    enum class Contents { Loading, Preview, Result };

    void makeButtons();
    void update();
    void updateContents();
    void updateButtons();
    void showLoading();
    void showPreview();
    void showResult(const ResultPanel& result);

    std::shared_ptr<ApplyReview> m_review;
    Clock& m_clock;
    std::optional<Contents> m_shown;
    QPushButton* m_close = nullptr;
    QPushButton* m_apply = nullptr;
    QPushButton* m_done = nullptr;
    ProgressRing* m_ring = nullptr;
    TextLabel* m_waiting = nullptr;
};

} // namespace quorvane
