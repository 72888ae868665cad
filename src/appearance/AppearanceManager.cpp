#include "appearance/AppearanceManager.h"

#include "core/UserDefaultKeys.h"
#include "platform/SystemLook.h"
#include "platform/SystemNotifications.h"
#include "platform/UserDefaults.h"

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

AppearanceManager::AppearanceManager(Appearance& appearance, SystemLook& system, UserDefaults& defaults,
                                     QObject* parent)
    : QObject(parent)
    , m_appearance(appearance)
    , m_system(system)
    , m_defaults(defaults)
    , m_mode(defaults.string(kAppearanceMode).value_or(u"system"_s))
    , m_systemThemeObserver(system.observe([this] { systemLookChanged(); }))
    , m_look(currentLook()) {}

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
    m_look = currentLook();
    Q_EMIT appearanceChanged();
}

std::optional<ColorScheme> AppearanceManager::preferredColorScheme() const {
    if (m_mode == u"light"_s) {
        return ColorScheme::Light;
    }
    return m_mode == u"dark"_s ? std::optional(ColorScheme::Dark) : std::nullopt;
}

AppearanceManager::Look AppearanceManager::currentLook() const {
    const std::optional<ColorScheme> preferred = preferredColorScheme();
    return {preferred ? *preferred : m_system.scheme(), m_system.reducesMotion(), m_system.increasesContrast()};
}

void AppearanceManager::systemLookChanged() {
    const Look look = currentLook();
    if (std::exchange(m_look, look) != look) {
        Q_EMIT appearanceChanged();
    }
}

} // namespace quorvane
