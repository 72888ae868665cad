#include "platform/simulated/SimulatedDisplays.h"

#include "platform/portable/PictureDecoder.h"
#include "simulator/MacPaths.h"

#include <QtConcurrent>

#include <algorithm>
#include <stdexcept>
#include <string>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using macsim::Json;

constexpr const char* kDisplaysSubject = "displays";
constexpr int kProportionallyUpOrDown = 3; // NSImageScaleProportionallyUpOrDown

bool isConnected(const Json& display) {
    return display.value("isConnected", true);
}

Display displayOf(const Json& json) {
    Display display;
    if (json.contains("number")) {
        display.number = macsim::wholeNumber<quint32>(json.at("number"));
    }
    display.localizedName = QString::fromStdString(json.value("localizedName", std::string()));
    const Json& frame = json.at("frame");
    display.frame = {frame.at(0).get<double>(), frame.at(1).get<double>(), frame.at(2).get<double>(),
                     frame.at(3).get<double>()};
    display.backingScaleFactor = json.value("scale", 1.0);
    return display;
}

/// Null for a display that isn't there, or is unplugged.
template <typename Displays>
auto* find(Displays& displays, const Display& wanted) {
    const auto found = std::find_if(displays.begin(), displays.end(), [&wanted](const Json& each) {
        return isConnected(each) && displayOf(each) == wanted;
    });
    return found == displays.end() ? nullptr : &*found;
}

Json allDisplays(const macsim::Mac& mac) {
    const Json displays = mac.state().read(kDisplaysSubject);
    return displays.is_array() ? displays : Json::array();
}

QImage loadedPicture(const macsim::Volume& volume, const QString& path) {
    try {
        return decodedPicture(volume.read(path));
    } catch (const macsim::FileError&) {
        return {};
    }
}

} // namespace

QList<Display> SimulatedDisplays::screens() const {
    QList<Display> screens;
    for (const Json& display : allDisplays(m_mac)) {
        if (isConnected(display)) {
            screens.append(displayOf(display));
        }
    }
    return screens;
}

std::optional<QString> SimulatedDisplays::desktopPicture(const Display& display) const {
    const Json displays = allDisplays(m_mac);
    const Json* found = find(displays, display);
    return found != nullptr && found->contains("picture")
               ? std::optional(QString::fromStdString(found->at("picture").get<std::string>()))
               : std::nullopt;
}

std::optional<QString> SimulatedDisplays::setDesktopPicture(const Display& display, const QString& path) {
    if (!m_mac.volume(macsim::Actor::User).exists(path)) {
        return u"The file “%1” doesn’t exist."_s.arg(macsim::lastPathComponent(path));
    }
    std::optional<QString> error;
    const auto change = [&](Json& displays) {
        Json* found = displays.is_array() ? find(displays, display) : nullptr;
        if (found == nullptr) {
            error = u"The display isn’t connected."_s;
        } else if (found->contains("settingFails")) {
            error = QString::fromStdString(found->at("settingFails").get<std::string>());
        } else {
            (*found)["picture"] = path.toStdString();
            (*found)["scaling"] = kProportionallyUpOrDown;
            (*found)["allowClipping"] = true;
        }
    };
    try {
        m_mac.state().update(kDisplaysSubject, change);
    } catch (const std::runtime_error& failure) {
        error = QString::fromUtf8(failure.what());
    }
    return error;
}

QFuture<QImage> SimulatedDisplays::loadPicture(const QString& path) {
    return QtConcurrent::run(&loadedPicture, m_mac.volume(macsim::Actor::User), path);
}

} // namespace quorvane
