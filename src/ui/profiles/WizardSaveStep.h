#pragma once

#include "ui/pieces/ScrollPage.h"

class QLineEdit;

namespace quorvane {

class MasterProfileState;
class ProfileWizard;
class OptionRow;
class TextLabel;

/// The wizard's last step: the name, what the profile holds, and what happens when it is saved.
class WizardSaveStep : public ScrollPage {
    Q_OBJECT

public:
    /// Both outlive it.
    WizardSaveStep(ProfileWizard& wizard, const MasterProfileState& workingCopy, QWidget* parent = nullptr);

private:
    QWidget* makeName();
    QWidget* makeSummary();
    QWidget* makeOptions();
    void update();

    ProfileWizard& m_wizard;
    const MasterProfileState& m_workingCopy;
    QLineEdit* m_name = nullptr;
    TextLabel* m_note = nullptr;
    TextLabel* m_tweaks = nullptr;
    TextLabel* m_startup = nullptr;
    QWidget* m_cleanReboot = nullptr; ///< its line
    OptionRow* m_baseline = nullptr;
    OptionRow* m_applies = nullptr;
};

} // namespace quorvane
