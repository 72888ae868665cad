#pragma once

#include "platform/Display.h"

#include <QFuture>
#include <QImage>
#include <QList>
#include <QString>

#include <optional>

namespace quorvane {

/// The displays, and the pictures on their desktops. Main thread.
class Displays {
public:
    Displays() = default;
    Displays(const Displays&) = delete;
    Displays& operator=(const Displays&) = delete;
    virtual ~Displays() = default;

    /// Those that are connected now, the one with the menu bar first.
    virtual QList<Display> screens() const = 0;

    /// The file that a display shows; none when the system doesn't say, or for a display that is gone. It may be a folder,
    /// of which the system shows one picture after the other.
    virtual std::optional<QString> desktopPicture(const Display& display) const = 0;
    /// Shows a picture on a display, scaled proportionally up or down until it fills the display, and clipped. Gives the
    /// system's words for a failure.
    virtual std::optional<QString> setDesktopPicture(const Display& display, const QString& path) = 0;

    /// Any image file that the system reads, in its natural size and upright, off the main thread; the first picture of a
    /// file that holds several. Null for what can't be read. The future is never cancelled and holds no exception.
    virtual QFuture<QImage> loadPicture(const QString& path) = 0;
};

} // namespace quorvane
