#include "actions/StartupTexts.h"

#include "core/Collation.h"
#include "core/OneLine.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// Composed and case-folded: the same name may be written in several ways.
QString comparable(const QString& text) {
    return text.normalized(QString::NormalizationForm_C).toCaseFolded();
}

QString serviceDescription(bool isDetected, bool isOn, bool hasItemsLeftOff) {
    if (isOn && hasItemsLeftOff) {
        return u"Turn its items back on above."_s;
    }
    return isDetected ? QString() : u"Not on this Mac"_s;
}

} // namespace

// ---- The list

QString runAtLoginHeading(qsizetype count) {
    return u"Run at Login (%1)"_s.arg(count);
}

QString absentHeading(qsizetype count) {
    return u"Not on this Mac now (%1)"_s.arg(count);
}

QString emptyListText(bool isLoading, bool isSearched) {
    if (isLoading) {
        return u"Loading startup items…"_s;
    }
    return isSearched
               ? u"No items match your search."_s
               : u"No startup items found. Grant Automation permission for System Events if this list is empty."_s;
}

QStringList unreadSourceTexts(const DiscoveredStartup& discovered) {
    QStringList texts;
    switch (discovered.loginItems) {
    case LoginItemsSource::Read:
        break;
    case LoginItemsSource::Refused:
        texts.append(u"Login items can’t be read. Grant Automation permission for System Events."_s);
        break;
    case LoginItemsSource::Unanswered:
        texts.append(u"System Events doesn’t answer."_s);
        break;
    }
    if (discovered.backgroundItems == BackgroundItemsSource::NotYetRead) {
        texts.append(u"Background items are listed once the administrator password was given."_s);
    }
    return texts;
}

// ---- A row

QString symbolOf(StartupItemKind kind) {
    switch (kind) {
    case StartupItemKind::loginApp:
        return u"app.fill"_s;
    case StartupItemKind::launchAgent:
    case StartupItemKind::launchDaemon:
        return u"gearshape.fill"_s;
    case StartupItemKind::backgroundAgent:
        return u"rectangle.inset.filled.and.person.filled"_s;
    case StartupItemKind::backgroundLoginItem:
        return u"arrow.triangle.2.circlepath"_s;
    case StartupItemKind::addedApp:
        break;
    }
    return u"externaldrive.fill"_s;
}

QString hiddenHelp(bool isHidden) {
    return isHidden ? u"Opens hidden at login"_s : u"Opens visibly at login"_s;
}

QString hiddenSymbol(bool isHidden) {
    return isHidden ? u"eye.slash.fill"_s : u"eye.fill"_s;
}

QString itemDescription(const StartupItem& item, ItemPath path) {
    QStringList parts{label(item.kind)};
    if (path == ItemPath::Shown && !item.path.isEmpty()) {
        parts.append(nameOnOneLine(item.path));
    }
    if (!item.runsAtStartup) {
        parts.append(u"Disabled at login"_s);
    }
    return parts.join(u" · "_s);
}

QString spokenItem(const StartupItem& item) {
    QStringList parts{nameOnOneLine(item.name), label(item.kind)};
    if (item.isProtected) {
        parts.append(u"protected"_s);
    }
    parts.append(item.runsAtStartup ? u"runs at login"_s : u"disabled at login"_s);
    return parts.join(u", "_s);
}

QString startupSearchText(const StartupItem& item) {
    return comparable(item.name + u'\n' + item.path + u'\n' + label(item.kind)); // no query holds a line feed
}

QString startupQuery(const QString& typed) {
    return comparable(typed.trimmed());
}

// ---- The sections below

QList<ServiceRow> serviceRows(const QList<CloudSyncService>& detected, const CloudSyncServices& disabled,
                              const CloudSyncServices& leftOff) {
    QList<CloudSyncService> services = detected;
    for (const CloudSyncService service : disabled) {
        if (!services.contains(service)) {
            services.append(service);
        }
    }
    sortLocalized(services, displayName);
    QList<ServiceRow> rows;
    for (const CloudSyncService service : services) {
        const bool isOn = disabled.count(service) == 0;
        const QString name = displayName(service);
        rows.append(
            {service,
             {name, serviceDescription(detected.contains(service), isOn, leftOff.count(service) > 0), icon(service)},
             u"Prevent %1 from starting at login"_s.arg(name),
             isOn});
    }
    return rows;
}

RowText networkRow() {
    return {u"Disable Network on Startup"_s, u"Prevent network services from initializing at boot"_s,
            u"network.slash"_s};
}

// ---- Questions

Alert protectedItemQuestion() {
    return {u"Protected Item"_s,
            u"This item is usually required for audio workflows. Disable it only if you are sure it is safe."_s,
            {u"Keep Enabled"_s, u"Disable Anyway"_s},
            0,
            1,
            AlertStyle::Warning};
}

Alert clearSelectionQuestion() {
    return {u"Clear Selection?"_s, u"Added applications will be taken off the list."_s, {u"Clear"_s, u"Cancel"_s}, 1, 0,
            AlertStyle::Warning};
}

} // namespace quorvane
