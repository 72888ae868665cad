#pragma once

#include "platform/AlertPresenter.h"
#include "ui/pieces/SystemDialog.h"

class QPushButton;

namespace quorvane {

/// One alert. Return presses its button, or cancel where that destroys something; Escape and closing press cancel.
class AlertDialog final : public SystemDialog {
    Q_OBJECT

public:
    explicit AlertDialog(const Alert& alert);

    /// Shows it, over a window where there is one. It doesn't go with that.
    void showOver(QWidget* window);

    /// Presses the cancel button.
    void reject() override;

Q_SIGNALS:
    /// Once, whatever closes it.
    void answered(int button);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void press(int button);
    QWidget* makeTexts();
    QWidget* makeButtons();

    Alert m_alert;
    QPushButton* m_onReturn = nullptr;
    bool m_isAnswered = false;
};

} // namespace quorvane
