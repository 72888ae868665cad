#include "startup/background/BackgroundItemPermission.h"

#include "core/Collation.h"
#include "core/FoldedText.h"
#include "startup/background/BackgroundTaskList.h"
#include "startup/launchd/LaunchItemNames.h"

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QString withoutBlanks(const QString& text) {
    return QString(text).remove(u' ');
}

/// What is permitted, in the forms in which records are compared with it: names reach a profile from System Events and a
/// record from the bundle, and may differ in case and in how an accent is written. Texts that are empty speak for nothing:
/// they would be contained in every record.
class Permission {
public:
    Permission(const QSet<QString>& permittedNames, const std::optional<StartupConfiguration>& startup)
        : m_names(permittedNames) {
        for (const QString& name : permittedNames) {
            addIfAny(m_foldedNames, foldedText(name));
            addIfAny(m_compactNames, withoutBlanks(foldedText(name)));
        }
        for (const StartupItem& item : startup ? startup->items : QList<StartupItem>()) {
            if (item.runsAtStartup) {
                addRunningItem(item);
            }
        }
    }

    bool speaksFor(const BackgroundTaskItem& item) const {
        const QString foldedName = foldedText(item.name);
        const QString searchText = foldedText(backgroundItemSearchText(item));
        const std::optional<QString> label = backgroundItemLabel(item);
        return m_names.contains(item.name) || holdsAny(foldedName, m_foldedNames) ||
               holdsAny(withoutBlanks(searchText), m_compactNames) ||
               (label && m_runningLabels.contains(foldedText(*label))) || m_runningNames.contains(foldedName) ||
               holdsAny(searchText, m_runningTexts);
    }

private:
    static void addIfAny(QStringList& texts, const QString& text) {
        if (!text.isEmpty()) {
            texts.append(text);
        }
    }

    static bool holdsAny(const QString& text, const QStringList& parts) {
        return std::any_of(parts.begin(), parts.end(), [&text](const QString& part) { return text.contains(part); });
    }

    void addRunningItem(const StartupItem& item) {
        if (item.kind == StartupItemKind::backgroundLoginItem && item.launchIdentifier) {
            m_runningLabels.insert(foldedText(*item.launchIdentifier));
        }
        m_runningNames.insert(foldedText(item.name));
        addIfAny(m_runningTexts, foldedText(item.path));
        addIfAny(m_runningTexts, foldedText(item.launchIdentifier.value_or(QString())));
    }

    const QSet<QString>& m_names;
    QStringList m_foldedNames;
    QStringList m_compactNames;
    QSet<QString> m_runningLabels;
    QSet<QString> m_runningNames;
    QStringList m_runningTexts; ///< paths and launch identifiers
};

bool isOfProgramOrSystem(const BackgroundTaskItem& item) {
    const std::optional<QString> label = backgroundItemLabel(item);
    return backgroundItemSearchText(item).contains(u"quorvane"_s) || (label && isReservedLabel(*label));
}

} // namespace

bool isPermittedBackgroundItem(const BackgroundTaskItem& item, const QSet<QString>& permittedNames,
                               const std::optional<StartupConfiguration>& startup) {
    return Permission(permittedNames, startup).speaksFor(item);
}

namespace {

template <typename Predicate>
QList<BackgroundTaskItem> nonPermittedRecords(const QList<BackgroundTaskItem>& items,
                                              const QSet<QString>& permittedNames,
                                              const std::optional<StartupConfiguration>& startup, Predicate isOfKind) {
    const Permission permission(permittedNames, startup);
    const BackgroundTaskList list(items);
    QList<BackgroundTaskItem> found;
    for (const BackgroundTaskItem& item : items) {
        if (!isActive(item) || !isOfKind(item) || isManagedRecord(item) || isOfProgramOrSystem(item) ||
            list.isProtected(item) || permission.speaksFor(item)) {
            continue;
        }
        const BackgroundTaskItem* parent = list.parentOf(item);
        if (parent == nullptr || !permission.speaksFor(*parent)) {
            found.append(item);
        }
    }
    sortLocalized(found, &BackgroundTaskItem::name);
    return found;
}

} // namespace

QList<BackgroundTaskItem> nonPermittedBackgroundItems(const QList<BackgroundTaskItem>& items,
                                                      const QSet<QString>& permittedNames,
                                                      const std::optional<StartupConfiguration>& startup) {
    return nonPermittedRecords(items, permittedNames, startup, [](const BackgroundTaskItem& item) {
        return isLoginRecord(item) && !isDaemonRecord(item);
    });
}

QList<BackgroundTaskItem> nonPermittedDaemons(const QList<BackgroundTaskItem>& items,
                                              const QSet<QString>& permittedNames,
                                              const std::optional<StartupConfiguration>& startup) {
    return nonPermittedRecords(items, permittedNames, startup, isDaemonRecord);
}

QList<BackgroundTaskItem> nonPermittedApplications(const QList<BackgroundTaskItem>& items,
                                                   const QSet<QString>& permittedNames,
                                                   const std::optional<StartupConfiguration>& startup) {
    return nonPermittedRecords(items, permittedNames, startup, isRegisteredApplication);
}

ApplyVerificationResult::Item unavailableBackgroundItems() {
    return {u"Background login items"_s, u"status unavailable without administrator access"_s};
}

ApplyVerificationResult::Item opensByItsRegistration(const QString& name) {
    return {u"Login item: "_s + name, u"will open at login"_s, true,
            u"Turn off in System Settings › General › Login Items: "_s + name};
}

} // namespace quorvane
