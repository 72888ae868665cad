#pragma once

#include <QRectF>
#include <QString>

#include <optional>

namespace quorvane {

/// A connected display.
struct Display {
    std::optional<quint32> number; ///< the system's number for it, "NSScreenNumber"; none when the system doesn't say
    QString localizedName;         ///< "Built-in Retina Display"
    QRectF frame;                  ///< its place on the desktop, in points
    double backingScaleFactor = 1; ///< device pixels per point

    bool operator==(const Display&) const = default;
};

} // namespace quorvane
