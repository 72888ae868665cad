#pragma once

#include "platform/Appearance.h"

#include <QObject>
#include <QString>

#include <memory>
#include <optional>

namespace quorvane {

class NotificationObservation;
class SystemNotifications;
class UserDefaults;

/// Whether the program looks light, dark, or like the system. Main thread.
class AppearanceManager : public QObject {
    Q_OBJECT

public:
    AppearanceManager(Appearance& appearance, SystemNotifications& notifications, UserDefaults& defaults,
                      QObject* parent = nullptr);
    ~AppearanceManager() override;

    /// "system", "light" or "dark"; a stored mode that is unknown means "system" and stays until the mode is set.
    const QString& mode() const { return m_mode; }
    /// Stores and applies another mode.
    void setMode(const QString& mode);
    /// Gives the program the look of the mode.
    void applyAppearance();
    /// None follows the system.
    std::optional<ColorScheme> preferredColorScheme() const;

Q_SIGNALS:
    /// Views must draw themselves anew: the look was applied, or the system's has changed while the program follows it.
    void appearanceChanged();

private:
    void systemThemeChanged();

    Appearance& m_appearance;
    UserDefaults& m_defaults;
    QString m_mode;
    std::unique_ptr<NotificationObservation> m_systemThemeObserver;
};

} // namespace quorvane
