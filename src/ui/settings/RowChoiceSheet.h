#pragma once

#include "actions/RowChoice.h"
#include "ui/pieces/Sheet.h"

#include <QList>

#include <memory>
#include <optional>

class QPushButton;
class QVBoxLayout;

namespace quorvane {

class AppCard;
class ProgressRing;
class TextLabel;

/// Lets choose one of several rows: a backup, or a restore baseline.
class RowChoiceSheet : public Sheet {
    Q_OBJECT

public:
    explicit RowChoiceSheet(std::shared_ptr<RowChoice> choice, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* makeContents();
    QWidget* makeState();
    QWidget* makeRow(const ChoosableRow& row);
    void takeChoice();
    void takeRows();
    void takeCarryingOut();
    QWidget* makeEnd(const ChoosableRow& row);
    std::optional<QString> focusedRow() const;
    void focusRow(const std::optional<QString>& id);
    void orderTabs();

    std::shared_ptr<RowChoice> m_choice;
    QList<ChoosableRow> m_shownRows;
    QVBoxLayout* m_contents = nullptr;
    AppCard* m_card = nullptr;        ///< none without rows
    QList<QPushButton*> m_rowButtons; ///< in the order of the rows; null where one has none
    ProgressRing* m_ring = nullptr;
    TextLabel* m_text = nullptr;
    QPushButton* m_close = nullptr;
    bool m_isCarryingOut = false;
    std::optional<QString> m_pressedRow; ///< while it carries one out: what had the focus
};

} // namespace quorvane
