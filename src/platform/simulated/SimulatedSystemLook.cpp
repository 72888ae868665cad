#include "platform/simulated/SimulatedSystemLook.h"

#include "platform/simulated/MacObservation.h"
#include "simulator/PreferenceStore.h"

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

macsim::PreferenceStore usersPreferences(const macsim::Mac& mac) {
    return {mac, mac.volume(macsim::Actor::User)};
}

} // namespace

ColorScheme SimulatedSystemLook::scheme() const {
    const auto style = usersPreferences(m_mac).read({macsim::kGlobalDomain.toString()}, u"AppleInterfaceStyle"_s);
    return style == macsim::PropertyList(u"Dark"_s) ? ColorScheme::Dark : ColorScheme::Light;
}

bool SimulatedSystemLook::reducesMotion() const {
    return isOn(u"reduceMotion"_s);
}

bool SimulatedSystemLook::increasesContrast() const {
    return isOn(u"increaseContrast"_s);
}

std::unique_ptr<NotificationObservation> SimulatedSystemLook::observe(std::function<void()> handler) {
    const auto look = [this] {
        return QByteArray::number(static_cast<int>(scheme())) + ' ' + QByteArray::number(int{reducesMotion()}) + ' ' +
               QByteArray::number(int{increasesContrast()});
    };
    return std::make_unique<MacObservation>(usersPreferencesFolder(m_mac), look, std::move(handler));
}

/// A number is as good as a boolean here.
bool SimulatedSystemLook::isOn(const QString& accessibilityKey) const {
    const auto value = usersPreferences(m_mac).read({u"com.apple.universalaccess"_s}, accessibilityKey);
    const bool* isOn = value ? value->as<bool>() : nullptr;
    const qint64* number = value ? value->as<qint64>() : nullptr;
    return isOn != nullptr ? *isOn : number != nullptr && *number != 0;
}

} // namespace quorvane
