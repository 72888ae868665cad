// Displays on which macOS animates the picture. It can be covered, but not be put back: what then comes back is still.

#include "core/UserDefaultKeys.h"
#include "platform/Machine.h"
#include "platform/PropertyLists.h"
#include "platform/UserDefaults.h"
#include "wallpaper/AnimatedPictures.h"
#include "wallpaper/DesktopLabel.h"

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QString pictureOn(const Display& display, const QString& picture) {
    return screenIdentifier(display) + u' ' + picture;
}

} // namespace

bool DesktopLabel::hasAnimatedPicture() const {
    const QList<Display> displays = m_ports.displays.screens();
    return std::any_of(displays.cbegin(), displays.cend(), [this](const Display& display) {
        return isAnimated(display, m_ports.displays.desktopPicture(display));
    });
}

/// A stand-in that was put back after a label is the still picture itself.
bool DesktopLabel::isAnimated(const Display& display, const std::optional<QString>& picture) const {
    if (!picture || m_files.isOurs(*picture) || !mayBeAnimated(*picture, {})) {
        return false;
    }
    if (m_ports.defaults.stringArray(kQuorvaneStillDesktopPictures).contains(pictureOn(display, *picture))) {
        return false;
    }
    const QString store = m_ports.machine.homeFolder() + kWallpaperStore;
    return mayBeAnimated(*picture, wallpaperProviders(m_ports.propertyLists.dictionary(store).value_or(QVariantMap())));
}

bool DesktopLabel::wasLeftAnimated(const Target& target) const {
    return target.picture && m_leftAnimated.contains(pictureOn(target.display, *target.picture)) &&
           isAnimated(target.display, target.picture);
}

/// Said once for each picture that is found.
DisplayLabel DesktopLabel::leaveAnimated(const Target& target) {
    const QString left = pictureOn(target.display, target.picture.value_or(QString()));
    if (!m_leftAnimated.contains(left)) {
        m_leftAnimated.append(left);
        m_log(u"  [INFO] macOS animates or manages the desktop picture of %1: it stays without a label."_s.arg(
            target.id));
    }
    return {target.display.localizedName, false, u"macOS animates or manages its picture."_s};
}

void DesktopLabel::rememberStill(const Display& display, const QString& picture) {
    QStringList stills = m_ports.defaults.stringArray(kQuorvaneStillDesktopPictures);
    const QString still = pictureOn(display, picture);
    if (mayBeAnimated(picture, {}) && !stills.contains(still)) {
        stills.append(still);
        m_ports.defaults.setStringArray(kQuorvaneStillDesktopPictures, stills);
    }
}

/// What is shown again after something else was chosen by the user.
void DesktopLabel::forgetWhatIsNotShown() {
    m_leftAnimated = stillShown(m_leftAnimated);
    const QStringList stills = m_ports.defaults.stringArray(kQuorvaneStillDesktopPictures);
    if (const QStringList shown = stillShown(stills); shown != stills) {
        m_ports.defaults.setStringArray(kQuorvaneStillDesktopPictures, shown);
    }
}

/// Those of displays that aren't connected may be, too.
QStringList DesktopLabel::stillShown(const QStringList& pictures) const {
    QStringList shown = pictures;
    for (const Display& display : m_ports.displays.screens()) {
        const QString now = pictureOn(display, m_ports.displays.desktopPicture(display).value_or(QString()));
        shown.removeIf([&](const QString& each) { return each.startsWith(pictureOn(display, {})) && each != now; });
    }
    return shown;
}

} // namespace quorvane
