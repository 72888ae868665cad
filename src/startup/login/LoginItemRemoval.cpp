#include "startup/login/LoginItemRemoval.h"

#include "core/ExcludedNames.h"
#include "core/FoldedText.h"
#include "startup/login/LoginItemScripts.h"

namespace quorvane {

// System Events takes texts for the same that differ in case or in how an accent is written.
LoginItemRemoval::LoginItemRemoval(const QList<LoginItem>& staying, List list)
    : m_list(list) {
    for (const LoginItem& item : staying) {
        m_stayingNames.insert(foldedText(item.name));
        m_stayingPaths.insert(foldedText(item.path));
    }
}

LoginItemRemoval::Means LoginItemRemoval::meansFor(const QString& name, const QString& path) const {
    if (canGoByName(name)) {
        return Means::ByName;
    }
    return canGoByPath(path) ? Means::ByPath : Means::None;
}

bool LoginItemRemoval::canGoByName(const QString& name) const {
    return m_list == List::Known && !name.isEmpty() && !m_stayingNames.contains(foldedText(name));
}

bool LoginItemRemoval::canGoByPath(const QString& path) const {
    return !path.isEmpty() && !m_stayingPaths.contains(foldedText(path));
}

bool isExcludedAgent(const LoginItem& item, const QSet<QString>& excludedIds) {
    return looksLikeBackgroundAgent(item) &&
           (excludedIds.contains(loginItemId(item.name, item.path)) || excludedIds.contains(item.name));
}

NamedLoginItems namedLoginItems(const LoginItemList& list, const LoginItemTargets& targets,
                                const QSet<QString>& excludedIds) {
    QList<LoginItem> matched;
    QList<LoginItem> staying;
    QSet<QString> leftover = targets.names();
    for (const LoginItem& item : list.items) {
        const bool goes = targets.takes(item);
        if (goes) {
            matched.append(item);
        }
        if (!goes || isProtectedLoginItem(item) || isExcludedAgent(item, excludedIds)) {
            staying.append(item);
        }
        leftover.remove(item.name);
    }
    QSet<QString> protectedLeftover;
    for (const QString& name : leftover) {
        if (isExcludedName(shownLine(list, name))) {
            protectedLeftover.insert(name);
        }
    }
    const LoginItemRemoval::List knowledge = LoginItemRemoval::knowledgeOf(list);
    return {matched, LoginItemRemoval(staying, knowledge), sortedTexts(leftover),
            LoginItemRemoval(staying + targets.kept(), knowledge), protectedLeftover};
}

} // namespace quorvane
