#pragma once

#include <QWidget>

namespace quorvane {

struct ViewEnvironment;

/// The startup editor as a page behind the performance page.
class StartupPage : public QWidget {
    Q_OBJECT

public:
    explicit StartupPage(const ViewEnvironment& environment, QWidget* parent = nullptr);

Q_SIGNALS:
    void backRequested();
    /// The loaded profile is to be edited.
    void editorRequested();
};

} // namespace quorvane
