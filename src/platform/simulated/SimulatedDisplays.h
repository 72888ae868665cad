#pragma once

#include "platform/Displays.h"
#include "simulator/Mac.h"

namespace quorvane {

/// The displays of a simulated Mac, by the state subject "displays"; without it the Mac has none:
///
///     [{"number": 1, "localizedName": "Built-in Retina Display", "frame": [0, 0, 1512, 982], "scale": 2,
///       "picture": "/System/Library/Desktop Pictures/Stage.png", "scaling": 3, "allowClipping": true,
///       "isConnected": true, "settingFails": "The picture could not be set."}, …]
///
/// "number"        may be missing, as a screen's may
/// "picture"       may be missing: the system doesn't say what the display shows
/// "animation"     the system animates the picture "Sonoma Horizon": it says that the display shows DefaultDesktop.heic, and
///                 whatever is set takes the animation's place, that file included
/// "isConnected"   false while the display is unplugged; it keeps its picture meanwhile
/// "settingFails"  why no picture can be set on it; without it every file that exists can
/// "spaces"        what it shows on its Spaces but the first, by their numbers: {"2": {"picture": …}}
///
/// "scaling" and "allowClipping" are what the last picture was set with. A change tells SimulatedNotifications.
///
/// A path that was set before is drawn as the file was then, on every display: "drawnPictures" has the paths, each with the
/// SHA-256 of what it held. The number of the Space that is visible on all displays is in "spaces" ({"visible": 2}; without it
/// the first is), and a change of "session" is the Mac waking, or the program coming to the front.
class SimulatedDisplays final : public Displays {
public:
    explicit SimulatedDisplays(const macsim::Mac& mac)
        : m_mac(mac) {}

    QList<Display> screens() const override;
    std::optional<QString> desktopPicture(const Display& display) const override;
    std::optional<QString> setDesktopPicture(const Display& display, const QString& path) override;
    QFuture<QImage> loadPicture(const QString& path) override;
    std::unique_ptr<NotificationObservation> observe(std::function<void(DesktopChange)> handler) override;

private:
    std::optional<QString> changeDisplays(const Display& display, const QString& path);
    void noteDrawn(const QString& path);

    const macsim::Mac& m_mac;
};

} // namespace quorvane
