#pragma once

#include <QWidget>

#include <memory>

class QHBoxLayout;
class QPushButton;
class QStackedWidget;

namespace quorvane {

class ProfileWizard;
class TextLabel;
struct ViewEnvironment;

/// Composes a profile in three steps. It begins anew each time that it is made.
class ProfileWizardView : public QWidget {
    Q_OBJECT

public:
    ProfileWizardView(const ViewEnvironment& environment, std::unique_ptr<ProfileWizard> wizard,
                      QWidget* parent = nullptr);
    ~ProfileWizardView() override;

Q_SIGNALS:
    /// Back from the first step, or saved.
    void left();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QWidget* makeHeader();
    QWidget* makeSteps();
    QWidget* makeTweaksStep();
    QWidget* makeStartupStep();
    QWidget* makeButtons();
    void showStep();
    void update();
    void goBack();
    void goOn();
    void save();

    const ViewEnvironment& m_environment;
    std::shared_ptr<ProfileWizard> m_wizard;
    TextLabel* m_count = nullptr;
    TextLabel* m_stepTitle = nullptr;
    QList<QPushButton*> m_stepButtons;
    QStackedWidget* m_steps = nullptr;
    QPushButton* m_continue = nullptr;
};

} // namespace quorvane
