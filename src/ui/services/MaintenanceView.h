#pragma once

#include "ui/services/CheckPage.h"

namespace quorvane {

/// A check box of the maintenance page.
class MaintenanceToggle : public CheckRow {
public:
    explicit MaintenanceToggle(const RowText& text)
        : CheckRow(
              {.symbol = text.symbol, .tint = BadgeColor::Orange, .title = text.title, .description = text.subtitle}) {}
};

/// Clears caches, the Trash and the Downloads folder.
class MaintenanceView : public CheckPage {
    Q_OBJECT

public:
    explicit MaintenanceView(const ViewEnvironment& environment, QWidget* parent = nullptr);

protected:
    bool canExecute() const override { return m_selection != MaintenanceSelection(); }

private:
    void execute();

    const ViewEnvironment& m_environment;
    MaintenanceSelection m_selection;
};

} // namespace quorvane
