#pragma once

#include "ui/pieces/AppSection.h"

namespace quorvane {

class InformationRow;
class RowButton;
struct ViewEnvironment;

/// The profiles in iCloud.
class ProfileBackupSection : public AppSection {
    Q_OBJECT

public:
    explicit ProfileBackupSection(const ViewEnvironment& environment, QWidget* parent = nullptr);

private:
    void takeBackups();

    const ViewEnvironment& m_environment;
    InformationRow* m_status;
    RowButton* m_backUp;
    RowButton* m_restore;
};

} // namespace quorvane
