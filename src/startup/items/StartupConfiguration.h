#pragma once

#include "startup/items/CloudSyncService.h"
#include "startup/items/StartupItem.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

namespace quorvane {

struct LegacyStartupFields;
struct StartupMerge;

/// The startup half of a profile: what may run when the user logs in.
struct StartupConfiguration {
    QList<StartupItem> items;
    bool disableNetworkAtStartup = false;
    CloudSyncServices disabledCloudSyncAtStartup;

    bool operator==(const StartupConfiguration&) const = default;

    /// Names of the login apps, background agents and background items that run.
    QSet<QString> permittedLoginNames() const;
    /// Names of the login apps and background agents that don't run; what an added application opens isn't off.
    QSet<QString> disabledLoginNames() const;
    /// Of the launch agents and daemons that don't run: the launch identifier, or the name where there is
    /// none.
    QSet<QString> disabledLaunchLabels() const;
    /// Launch identifiers of the background items that don't run; one without an identifier is left out.
    QSet<QString> disabledBackgroundLabels() const;
    /// The added applications that run, in item order.
    QList<StartupLaunchItem> startupLaunchItems() const;
    /// The paths of these applications, comparable.
    QSet<QString> addedPaths() const;
    /// The comparable paths of everything that opens at login: of these applications and of the login items that run.
    QSet<QString> openedPaths() const;
    /// Those of the applications' comparable paths that it doesn't open. A login item that runs and whose path isn't known
    /// may be any application of its name.
    QSet<QString> notOpenedOf(const QSet<QString>& paths) const;
    /// Short texts for a card.
    QStringList summaryLines() const;

    /// Brings the saved choices together with what the system shows now: the discovered items, each with the
    /// saved choice, then the added applications that weren't discovered, sorted by name. The login item of an added
    /// application that runs is this application.
    /// @param cleanReboot  a discovered item that isn't saved starts switched off, unless it is added or
    /// protected
    StartupMerge mergedWithDiscovered(const QList<StartupItem>& discovered, bool cleanReboot) const;

    /// The configuration that the flat fields of an older profile file stand for.
    static StartupConfiguration fromLegacyFields(const LegacyStartupFields& fields);
};

struct StartupMerge {
    StartupConfiguration configuration;
    /// One text for each identifier that several saved items bear; the first of them counted. For the log.
    QStringList errors;
};

/// For the log: another item bears the same identifier.
QString duplicateIdError(const StartupItem& item);

/// The text of a set that is listed in order: ascending by plain comparison.
QStringList sortedTexts(const QSet<QString>& texts);

Json encodeJson(const StartupConfiguration& configuration);
/// Throws DecodingError.
void decodeJson(const Json& json, StartupConfiguration& configuration);

} // namespace quorvane
