#pragma once

#include <QVariantAnimation>
#include <QWidget>

class QLineEdit;
class QPushButton;

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class LockManager;
class Tasks;
class TextLabel;
class Workspace;

/// Covers the window while the program is locked. It is there at once, and fades when it goes.
class LockScreenView : public QWidget {
    Q_OBJECT

public:
    LockScreenView(LockManager& lock, Workspace& workspace, Tasks& tasks, QWidget* parent);

    /// Covers what lies beneath, and asks for a finger where that can be done.
    void appear();
    /// Keys are for the password.
    void takeFocus();
    /// Uncovers it.
    void disappear();

Q_SIGNALS:
    /// Nothing of it is seen any more.
    void gone();

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    QWidget* makeColumn();
    void submit();
    void askForFinger();
    QCoro::Task<void> unlockWithFinger();
    void askForFingerWhenActive();
    void showError(const QString& text);
    void updateButtons();

    LockManager& m_lock;
    Workspace& m_workspace;
    Tasks& m_tasks;
    QWidget* m_column = nullptr;
    TextLabel* m_line = nullptr;
    QLineEdit* m_password = nullptr;
    QPushButton* m_unlock = nullptr;
    QPushButton* m_finger = nullptr;
    TextLabel* m_error = nullptr;
    QVariantAnimation m_fade; ///< 1 covers, 0 is gone
    bool m_isAuthenticatingBiometrics = false;
    bool m_owesFinger = false; ///< the program wasn't the active one when it should have asked
};

} // namespace quorvane
