#pragma once

#include "ui/pieces/ScrollPage.h"

namespace quorvane {

struct ViewEnvironment;

/// The Settings tab.
class SettingsView : public ScrollPage {
    Q_OBJECT

public:
    explicit SettingsView(const ViewEnvironment& environment, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void lookAround();
    void lookAroundWhenActive();
    void readAnewWhenIdle();

    const ViewEnvironment& m_environment;
};

} // namespace quorvane
