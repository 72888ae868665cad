#pragma once

#include "ui/pieces/Sheet.h"

#include <memory>

class QLineEdit;
class QPushButton;

namespace quorvane {

class AppPasswordEntry;
class LockManager;
class TextLabel;

/// Asks for the passwords that set, change or take off the app lock. What stands in its fields goes with it, and when the
/// program is locked.
class AppPasswordSheet : public Sheet {
    Q_OBJECT

public:
    AppPasswordSheet(std::shared_ptr<AppPasswordEntry> entry, const LockManager& lock, QWidget* parent = nullptr);
    ~AppPasswordSheet() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* makeFields();
    QLineEdit* addField(const QString& name, QWidget* fields);
    void makeButtons();
    QList<QLineEdit*> fields() const;
    void takeEntry();
    void updateConfirm();
    void submit();
    void empty();

    std::shared_ptr<AppPasswordEntry> m_entry;
    // Null where the mode has no such field.
    QLineEdit* m_current = nullptr;
    QLineEdit* m_new = nullptr;
    QLineEdit* m_confirmation = nullptr;
    TextLabel* m_error = nullptr;
    QPushButton* m_finger = nullptr;
    QPushButton* m_confirm = nullptr;
};

} // namespace quorvane
