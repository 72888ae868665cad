#pragma once

#include "ui/pieces/AppSection.h"

namespace quorvane {

class InformationRow;
struct ViewEnvironment;

/// What the system's privacy settings have to grant.
class PermissionsSection : public AppSection {
    Q_OBJECT

public:
    explicit PermissionsSection(const ViewEnvironment& environment, QWidget* parent = nullptr);

private:
    void takeStatus();

    const ViewEnvironment& m_environment;
    InformationRow* m_access;
};

} // namespace quorvane
