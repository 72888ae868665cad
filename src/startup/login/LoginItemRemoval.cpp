#include "startup/login/LoginItemRemoval.h"

#include "core/ExcludedNames.h"
#include "core/FoldedText.h"
#include "startup/items/LoginItem.h"
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

NamedLoginItems namedLoginItems(const LoginItemList& list, const QStringList& names, const QSet<QString>& excludedIds) {
    const QSet<QString> wanted(names.begin(), names.end());
    QList<LoginItem> matched;
    QList<LoginItem> staying;
    QSet<QString> found;
    for (const LoginItem& item : list.items) {
        if (wanted.contains(item.name)) {
            matched.append(item);
            found.insert(item.name);
        }
        if (!wanted.contains(item.name) || isProtectedLoginItem(item) || isExcludedAgent(item, excludedIds)) {
            staying.append(item);
        }
    }
    QStringList leftover;
    QSet<QString> protectedLeftover;
    for (const QString& name : names) {
        if (!found.contains(name)) {
            if (isExcludedName(shownLine(list, name))) {
                protectedLeftover.insert(name);
            }
            found.insert(name); // a name that was given twice is left over once
            leftover.append(name);
        }
    }
    return {matched, leftover, LoginItemRemoval(staying, LoginItemRemoval::knowledgeOf(list)), protectedLeftover};
}

} // namespace quorvane
