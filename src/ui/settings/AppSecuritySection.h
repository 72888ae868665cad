#pragma once

#include "lock/AppPasswordSheetMode.h"
#include "ui/pieces/AppSection.h"

namespace quorvane {

class InformationRow;
class RowButton;
struct ViewEnvironment;

/// The app lock.
class AppSecuritySection : public AppSection {
    Q_OBJECT

public:
    explicit AppSecuritySection(const ViewEnvironment& environment, QWidget* parent = nullptr);

private:
    void takeLock();
    void askPassword(AppPasswordSheetMode mode);

    const ViewEnvironment& m_environment;
    InformationRow* m_isActive;
    RowButton* m_lockNow;
    RowButton* m_change;
    RowButton* m_setOrRemove; ///< one for both, so that the focus has a place to come back to
};

} // namespace quorvane
