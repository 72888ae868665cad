#pragma once

#include "ui/pieces/Sheet.h"

#include <memory>

class QLineEdit;
class QPushButton;

namespace quorvane {

class ProfileSaveOffer;
class ProgressRing;
class OptionRow;
class TextLabel;

/// Asks what the working copy is to be saved as.
class SaveProfileSheet : public Sheet {
    Q_OBJECT

public:
    explicit SaveProfileSheet(std::shared_ptr<ProfileSaveOffer> offer, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* makeFields();
    void makeButtons();
    void update();

    std::shared_ptr<ProfileSaveOffer> m_offer;
    QWidget* m_fields = nullptr;
    QLineEdit* m_name = nullptr;
    TextLabel* m_note = nullptr;
    OptionRow* m_tweaks = nullptr;
    OptionRow* m_startup = nullptr;
    OptionRow* m_baseline = nullptr;
    ProgressRing* m_ring = nullptr;
    TextLabel* m_waiting = nullptr;
    QPushButton* m_cancel = nullptr;
    QPushButton* m_save = nullptr;
};

} // namespace quorvane
