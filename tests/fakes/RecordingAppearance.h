#pragma once

#include "platform/Appearance.h"

#include <QList>

namespace quorvane {

/// Remembers every look that the program was given.
class RecordingAppearance final : public Appearance {
public:
    QList<std::optional<ColorScheme>> schemes;

    void setAppearance(std::optional<ColorScheme> scheme) override { schemes.append(scheme); }
};

} // namespace quorvane
