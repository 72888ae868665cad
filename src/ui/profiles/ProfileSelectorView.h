#pragma once

#include <QWidget>

namespace quorvane {

class MenuButton;
class TextLabel;
struct UnifiedProfile;
struct ViewEnvironment;

/// Which profile the working copy is, and a menu of what can be done with it and the saved ones.
class ProfileSelectorView : public QWidget {
    Q_OBJECT

public:
    explicit ProfileSelectorView(const ViewEnvironment& environment, QWidget* parent = nullptr);

Q_SIGNALS:
    /// "Edit Current"
    void editorRequested();

private:
    void update();
    void fillMenu();
    void addProfiles();
    void addProfile(const UnifiedProfile& profile);
    void addCommands();

    const ViewEnvironment& m_environment;
    TextLabel* m_edited;
    MenuButton* m_button;
};

} // namespace quorvane
