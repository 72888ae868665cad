#include "tweaks/ModeManager.h"

#include "core/UserDefaultKeys.h"
#include "platform/UserDefaults.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

AppMode storedMode(const UserDefaults& defaults) {
    const std::optional<QString> stored = defaults.string(kQuorvaneCurrentMode);
    return stored ? appModeNamed(*stored).value_or(AppMode::default_) : AppMode::default_;
}

} // namespace

QString rawValue(AppMode mode) {
    switch (mode) {
    case AppMode::default_:
        break;
    }
    return u"Default"_s;
}

std::optional<AppMode> appModeNamed(const QString& text) {
    return text == u"Default"_s ? std::optional(AppMode::default_) : std::nullopt;
}

ModeManager::ModeManager(UserDefaults& defaults, QObject* parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_currentMode(storedMode(defaults)) {}

void ModeManager::setCurrentMode(AppMode mode) {
    m_currentMode = mode;
    m_defaults.setString(kQuorvaneCurrentMode, rawValue(mode));
    Q_EMIT modeDidChange(mode);
}

} // namespace quorvane
