#pragma once

#include "platform/Appearance.h"

#include <QObject>
#include <QString>

#include <memory>
#include <optional>

namespace quorvane {

class NotificationObservation;
class SystemLook;
class UserDefaults;

/// How the program looks: light, dark, or like the system, and what the system wants of every program beside that. Main
/// thread.
class AppearanceManager : public QObject {
    Q_OBJECT

public:
    AppearanceManager(Appearance& appearance, SystemLook& system, UserDefaults& defaults, QObject* parent = nullptr);
    ~AppearanceManager() override;

    /// "system", "light" or "dark"; a stored mode that is unknown means "system" and stays until the mode is set.
    const QString& mode() const { return m_mode; }
    /// Stores and applies another mode.
    void setMode(const QString& mode);
    /// Gives the program the look of the mode.
    void applyAppearance();
    /// None follows the system.
    std::optional<ColorScheme> preferredColorScheme() const;

    // What views draw themselves by.

    /// That of the mode, or else the system's.
    ColorScheme scheme() const { return m_look.scheme; }
    bool reducesMotion() const { return m_look.reducesMotion; }
    bool increasesContrast() const { return m_look.increasesContrast; }

Q_SIGNALS:
    /// Views must draw themselves anew: the look was applied, or one of the three that they go by is another.
    void appearanceChanged();

private:
    struct Look {
        ColorScheme scheme = ColorScheme::Light;
        bool reducesMotion = false;
        bool increasesContrast = false;

        bool operator==(const Look&) const = default;
    };
    Look currentLook() const;
    void systemLookChanged();

    Appearance& m_appearance;
    SystemLook& m_system;
    UserDefaults& m_defaults;
    QString m_mode;
    std::unique_ptr<NotificationObservation> m_systemThemeObserver;
    Look m_look; ///< read once the system is observed, so that no change falls in between
};

} // namespace quorvane
