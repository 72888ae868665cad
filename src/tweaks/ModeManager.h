#pragma once

#include <QObject>
#include <QString>

#include <optional>

namespace quorvane {

class UserDefaults;

/// A built-in configuration beside the saved profiles. There is one so far; preferences and notifications speak of it by
/// its raw value.
enum class AppMode {
    default_, ///< "Default"
};

QString rawValue(AppMode mode);
/// The mode with this raw value; none when there is no such mode.
std::optional<AppMode> appModeNamed(const QString& text);

/// Holds the mode, also over restarts. Main thread.
class ModeManager : public QObject {
    Q_OBJECT

public:
    /// Reads the stored mode. Where none is stored, or one that this version doesn't know, the mode is the default one;
    /// what is stored stays as it is until the mode is set.
    explicit ModeManager(UserDefaults& defaults, QObject* parent = nullptr);

    AppMode currentMode() const { return m_currentMode; }
    /// Setting the mode that is current already stores and tells it all the same.
    void setCurrentMode(AppMode mode);

Q_SIGNALS:
    /// The mode was set; it is current and stored by now.
    void modeDidChange(AppMode mode);

private:
    UserDefaults& m_defaults;
    AppMode m_currentMode;
};

} // namespace quorvane
