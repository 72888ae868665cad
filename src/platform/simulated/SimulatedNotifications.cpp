#include "platform/simulated/SimulatedNotifications.h"

#include "platform/simulated/MacObservation.h"
#include "platform/simulated/SimulatedSystemLook.h"

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

std::unique_ptr<NotificationObservation> SimulatedNotifications::observe(const QString& name,
                                                                         std::function<void()> handler) {
    if (name == u"com.apple.desktop"_s) {
        const auto displays = [this] { return m_mac.state().revision("displays"); };
        return std::make_unique<MacObservation>(m_mac.hostFolder() + macsim::kStateFolder.toString(), displays,
                                                std::move(handler));
    }
    if (name == u"AppleInterfaceThemeChangedNotification"_s) {
        const auto scheme = [this] {
            return QByteArray::number(static_cast<int>(SimulatedSystemLook(m_mac).scheme()));
        };
        return std::make_unique<MacObservation>(usersPreferencesFolder(m_mac), scheme, std::move(handler));
    }
    return std::make_unique<NotificationObservation>();
}

} // namespace quorvane
