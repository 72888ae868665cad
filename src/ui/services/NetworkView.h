#pragma once

#include "ui/services/CheckPage.h"

namespace quorvane {

/// A check box of the network page.
class NetworkToggle : public CheckRow {
public:
    explicit NetworkToggle(const RowText& text)
        : CheckRow(
              {.symbol = text.symbol, .tint = BadgeColor::Blue, .title = text.title, .description = text.subtitle}) {}
};

/// Flushes and resets the network, and switches its services off and on.
class NetworkView : public CheckPage {
    Q_OBJECT

public:
    explicit NetworkView(const ViewEnvironment& environment, QWidget* parent = nullptr);

private:
    void execute();

    const ViewEnvironment& m_environment;
    NetworkOperations m_operations;
};

} // namespace quorvane
