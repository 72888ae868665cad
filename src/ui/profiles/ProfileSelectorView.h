#pragma once

#include <QWidget>

namespace quorvane {

class MenuButton;
class SymbolButton;
class TextLabel;
struct UnifiedProfile;
struct ViewEnvironment;

/// Which profile the working copy is, a menu of what can be done with it and the saved ones, and beside it the ways to and from
/// a file.
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
    void connectExchange();

    const ViewEnvironment& m_environment;
    TextLabel* m_edited;
    MenuButton* m_button;
    SymbolButton* m_export;
    SymbolButton* m_import;
};

} // namespace quorvane
