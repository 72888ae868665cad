#pragma once

#include <QWidget>

namespace quorvane {

struct ViewEnvironment;

/// The twelve tweaks of the working copy, and what can be done with them.
class TweaksPage : public QWidget {
    Q_OBJECT

public:
    explicit TweaksPage(const ViewEnvironment& environment, QWidget* parent = nullptr);

Q_SIGNALS:
    void backRequested();
    /// The loaded profile is to be edited.
    void editorRequested();

private:
    QWidget* makeButtons();
    void execute();

    const ViewEnvironment& m_environment;
};

} // namespace quorvane
