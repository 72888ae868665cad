#pragma once

#include "actions/BackupChoice.h"
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

/// Lets choose a backup in iCloud whose profiles are brought back.
class ProfileCloudRestoreSheet : public Sheet {
    Q_OBJECT

public:
    explicit ProfileCloudRestoreSheet(std::shared_ptr<BackupChoice> choice, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* makeContents();
    QWidget* makeState();
    QWidget* makeRow(const BackupRow& row);
    void takeChoice();
    void takeRows();
    void takeRestoring();
    std::optional<QString> focusedBackup() const;
    void focusBackup(const std::optional<QString>& id);
    void orderTabs();

    std::shared_ptr<BackupChoice> m_choice;
    QList<BackupRow> m_shownRows;
    QVBoxLayout* m_contents = nullptr;
    AppCard* m_card = nullptr; ///< none without rows
    QList<QPushButton*> m_restoreButtons;
    ProgressRing* m_ring = nullptr;
    TextLabel* m_text = nullptr;
    QPushButton* m_close = nullptr;
    bool m_isRestoring = false;
    std::optional<QString> m_pressedBackup; ///< while it restores: what had the focus
};

} // namespace quorvane
