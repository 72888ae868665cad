#pragma once

#include "ui/pieces/AppSection.h"

namespace quorvane {

class SwitchRow;
struct ViewEnvironment;

/// The label on the wallpaper.
class WallpaperSection : public AppSection {
    Q_OBJECT

public:
    explicit WallpaperSection(const ViewEnvironment& environment, QWidget* parent = nullptr);

private:
    void takeStatus();
    void change(bool isWanted);

    const ViewEnvironment& m_environment;
    SwitchRow* m_row;
};

} // namespace quorvane
