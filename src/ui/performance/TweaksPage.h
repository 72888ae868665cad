#pragma once

#include <QHash>
#include <QWidget>

class QVBoxLayout;

namespace quorvane {

class ScrollPage;
class TweakToggle;
struct TweakSection;
struct ViewEnvironment;

/// The twelve tweaks of the working copy, and what can be done with them.
class TweaksPage : public QWidget {
    Q_OBJECT

public:
    explicit TweaksPage(const ViewEnvironment& environment, QWidget* parent = nullptr);

Q_SIGNALS:
    void backRequested();

private:
    QWidget* makeSection(const TweakSection& section);
    QWidget* makeButtons();
    void takeSettings();
    void execute();

    const ViewEnvironment& m_environment;
    QHash<QString, TweakToggle*> m_toggles; ///< by tweak key
};

} // namespace quorvane
