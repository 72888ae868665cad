#pragma once

#include <QObject>
#include <QString>
#include <QVariantMap>

namespace quorvane {

/// A scan or an apply has told which configuration this Mac is in.
/// "matchName": the configuration's name; missing when none fits. "matchKind": "profile", "mode", or empty
/// for none.
inline const QString kQuorvaneSystemVerified = QStringLiteral("QuorvaneSystemVerified");

/// A new restore baseline was saved. "label": its label; missing when it has none.
inline const QString kQuorvaneRestoreBaselineSaved = QStringLiteral("QuorvaneRestoreBaselineSaved");

/// A profile was applied and is the active one. "profileName": its name.
inline const QString kQuorvaneProfileApplied = QStringLiteral("QuorvaneProfileApplied");

/// Saved profiles were written, replaced or removed.
inline const QString kQuorvaneProfilesChanged = QStringLiteral("QuorvaneProfilesChanged");

/// The application-wide notifications. Main thread; observers are called before `post` returns.
class NotificationCenter : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    void post(const QString& name, const QVariantMap& userInfo) { Q_EMIT posted(name, userInfo); }

Q_SIGNALS:
    void posted(const QString& name, const QVariantMap& userInfo);
};

} // namespace quorvane
