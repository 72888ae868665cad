#pragma once

#include "ui/pieces/AppSection.h"

namespace quorvane {

class SwitchRow;
struct ViewEnvironment;

/// Whether the program is launched at login.
class StartupSection : public AppSection {
    Q_OBJECT

public:
    explicit StartupSection(const ViewEnvironment& environment, QWidget* parent = nullptr);

private:
    void takeStatus();

    const ViewEnvironment& m_environment;
    SwitchRow* m_row;
};

} // namespace quorvane
