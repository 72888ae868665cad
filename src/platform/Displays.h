#pragma once

#include "platform/Display.h"
#include "platform/NotificationObservation.h"

#include <QFuture>
#include <QImage>
#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace quorvane {

/// In which moments a display may show another picture though no notification tells of it.
enum class DesktopChange {
    Space, ///< another Space is visible
    Other, ///< the program came to the front, the Mac woke, or displays came, went or changed their size
};

/// The displays, and the pictures on their desktops. Of a display with several Spaces the visible one is meant; the others
/// can neither be read nor changed. Main thread.
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
    /// Shows a picture on a display, scaled proportionally up or down until it fills the display, and clipped. A path that
    /// was set before is drawn as the file was then, whatever is in it now. Gives the system's words for a failure.
    virtual std::optional<QString> setDesktopPicture(const Display& display, const QString& path) = 0;

    /// Any image file that the system reads, in its natural size and upright, off the main thread; the first picture of a
    /// file that holds several. Null for what can't be read. The future is never cancelled and holds no exception.
    virtual QFuture<QImage> loadPicture(const QString& path) = 0;

    /// Calls the handler from the event loop in each such moment; several of one kind at once may be one call. The
    /// observation ends before the port does; the handler may end it.
    virtual std::unique_ptr<NotificationObservation> observe(std::function<void(DesktopChange)> handler) = 0;
};

} // namespace quorvane
