#pragma once

#include "ui/pieces/Sheet.h"

#include <memory>

class QPushButton;

namespace quorvane {

class MasterBaselineOffer;
class ProgressRing;
class TextLabel;

/// Offers to keep the Mac as it is now.
class MasterSystemBaselinePrompt : public Sheet {
    Q_OBJECT

public:
    explicit MasterSystemBaselinePrompt(std::shared_ptr<MasterBaselineOffer> offer, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* makePoints();
    void makeButtons();
    void update();

    std::shared_ptr<MasterBaselineOffer> m_offer;
    TextLabel* m_text = nullptr;
    ProgressRing* m_ring = nullptr;
    QPushButton* m_notNow = nullptr;
    QPushButton* m_create = nullptr;
};

} // namespace quorvane
