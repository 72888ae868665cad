#include "platform/simulated/SimulatedDisplays.h"

#include "platform/portable/PictureDecoder.h"
#include "platform/simulated/MacObservation.h"
#include "simulator/MacPaths.h"

#include <QCryptographicHash>
#include <QtConcurrent>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using macsim::Json;

constexpr const char* kDisplaysSubject = "displays";
constexpr const char* kDrawnSubject = "drawnPictures";
constexpr const char* kSpacesSubject = "spaces";
constexpr const char* kSessionSubject = "session";
const QString kStandIn = u"/System/Library/CoreServices/DefaultDesktop.heic"_s;
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

int visibleSpace(const macsim::Mac& mac) {
    const Json spaces = mac.state().read(kSpacesSubject);
    return spaces.is_object() ? spaces.value("visible", 1) : 1;
}

/// What the display shows on the Space. Null where it was never visited.
const Json* shownOn(const Json& display, int space) {
    if (space == 1) {
        return &display;
    }
    const auto spaces = display.find("spaces");
    const std::string number = std::to_string(space);
    return spaces != display.end() && spaces->contains(number) ? &spaces->at(number) : nullptr;
}

/// The revisions of some subjects: another one when any of them has changed.
std::function<QByteArray()> revisions(const macsim::Mac& mac, std::vector<const char*> subjects) {
    return [&mac, subjects = std::move(subjects)] {
        QByteArray joined;
        for (const char* const subject : subjects) {
            joined += mac.state().revision(subject) + ' ';
        }
        return joined;
    };
}

/// Tells of both kinds of moments.
class DesktopObservation final : public NotificationObservation {
public:
    DesktopObservation(const macsim::Mac& mac, const std::function<void(DesktopChange)>& handler)
        : m_spaces(stateFolder(mac), revisions(mac, {kSpacesSubject}), [handler] { handler(DesktopChange::Space); })
        , m_others(stateFolder(mac), revisions(mac, {kSessionSubject, kDisplaysSubject}),
                   [handler] { handler(DesktopChange::Other); }) {}

private:
    static QString stateFolder(const macsim::Mac& mac) { return mac.hostFolder() + macsim::kStateFolder.toString(); }

    MacObservation m_spaces;
    MacObservation m_others;
};

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
    const Json* shown = found != nullptr ? shownOn(*found, visibleSpace(m_mac)) : nullptr;
    if (shown == nullptr) {
        return std::nullopt;
    }
    if (shown->contains("animation")) {
        return kStandIn;
    }
    return shown->contains("picture") ? std::optional(QString::fromStdString(shown->at("picture").get<std::string>()))
                                      : std::nullopt;
}

std::optional<QString> SimulatedDisplays::setDesktopPicture(const Display& display, const QString& path) {
    if (!m_mac.volume(macsim::Actor::User).exists(path)) {
        return u"The file “%1” doesn’t exist."_s.arg(macsim::lastPathComponent(path));
    }
    try {
        const std::optional<QString> error = changeDisplays(display, path);
        if (!error) {
            noteDrawn(path);
        }
        return error;
    } catch (const std::runtime_error& failure) {
        return QString::fromUtf8(failure.what());
    }
}

/// @return why it can't be changed
std::optional<QString> SimulatedDisplays::changeDisplays(const Display& display, const QString& path) {
    std::optional<QString> error;
    m_mac.state().update(kDisplaysSubject, [&](Json& displays) {
        Json* found = displays.is_array() ? find(displays, display) : nullptr;
        if (found == nullptr) {
            error = u"The display isn’t connected."_s;
        } else if (found->contains("settingFails")) {
            error = QString::fromStdString(found->at("settingFails").get<std::string>());
        } else {
            const int space = visibleSpace(m_mac);
            Json& shown = space == 1 ? *found : (*found)["spaces"][std::to_string(space)];
            shown["picture"] = path.toStdString();
            shown["scaling"] = kProportionallyUpOrDown;
            shown["allowClipping"] = true;
            shown.erase("animation");
        }
    });
    return error;
}

/// A folder has no content of its own, and isn't drawn by its path.
void SimulatedDisplays::noteDrawn(const QString& path) {
    try {
        const QByteArray content = m_mac.volume(macsim::Actor::User).read(path);
        const QByteArray digest = QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex();
        m_mac.state().update(kDrawnSubject, [&](Json& drawn) {
            if (!drawn.contains(path.toStdString())) {
                drawn[path.toStdString()] = digest.toStdString();
            }
        });
    } catch (const macsim::FileError&) {
        return;
    }
}

QFuture<QImage> SimulatedDisplays::loadPicture(const QString& path) {
    return QtConcurrent::run(&loadedPicture, m_mac.volume(macsim::Actor::User), path);
}

std::unique_ptr<NotificationObservation> SimulatedDisplays::observe(std::function<void(DesktopChange)> handler) {
    return std::make_unique<DesktopObservation>(m_mac, handler);
}

} // namespace quorvane
