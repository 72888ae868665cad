#pragma once

#include <QPushButton>

namespace quorvane {

/// The button that Return presses, filled.
class AppPrimaryButton : public QPushButton {
    Q_OBJECT

public:
    explicit AppPrimaryButton(const QString& title, QWidget* parent = nullptr)
        : QPushButton(title, parent) {
        setAutoDefault(false); // or it would be the default only while it has the focus, in what isn't a window
        setDefault(true);
    }
};

/// Any other button.
class AppSecondaryButton : public QPushButton {
    Q_OBJECT

public:
    explicit AppSecondaryButton(const QString& title, QWidget* parent = nullptr)
        : QPushButton(title, parent) {
        setAutoDefault(false);
    }
};

} // namespace quorvane
