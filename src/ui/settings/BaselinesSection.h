#pragma once

#include "ui/pieces/AppSection.h"

namespace quorvane {

class InformationRow;
struct ViewEnvironment;

/// What the ways back go by.
class BaselinesSection : public AppSection {
    Q_OBJECT

public:
    explicit BaselinesSection(const ViewEnvironment& environment, QWidget* parent = nullptr);

private:
    void takeStatus();

    const ViewEnvironment& m_environment;
    InformationRow* m_used;
};

} // namespace quorvane
