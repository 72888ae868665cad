#include "appearance/AppearanceManager.h"

#include "core/UserDefaultKeys.h"
#include "platform/SystemNotifications.h"
#include "platform/UserDefaults.h"

namespace quorvane {

using namespace Qt::StringLiterals;

AppearanceManager::AppearanceManager(Appearance& appearance, SystemNotifications& notifications, UserDefaults& defaults,
                                     QObject* parent)
    : QObject(parent)
    , m_appearance(appearance)
    , m_defaults(defaults)
    , m_mode(defaults.string(kAppearanceMode).value_or(u"system"_s))
    , m_systemThemeObserver(
          notifications.observe(u"AppleInterfaceThemeChangedNotification"_s, [this] { systemThemeChanged(); })) {}

AppearanceManager::~AppearanceManager() = default;

void AppearanceManager::setMode(const QString& mode) {
    if (mode == m_mode) {
        return;
    }
    m_mode = mode;
    m_defaults.setString(kAppearanceMode, mode);
    applyAppearance();
}

void AppearanceManager::applyAppearance() {
    m_appearance.setAppearance(preferredColorScheme());
    Q_EMIT appearanceChanged();
}

std::optional<ColorScheme> AppearanceManager::preferredColorScheme() const {
    if (m_mode == u"light"_s) {
        return ColorScheme::Light;
    }
    return m_mode == u"dark"_s ? std::optional(ColorScheme::Dark) : std::nullopt;
}

void AppearanceManager::systemThemeChanged() {
    if (!preferredColorScheme()) {
        Q_EMIT appearanceChanged();
    }
}

} // namespace quorvane
