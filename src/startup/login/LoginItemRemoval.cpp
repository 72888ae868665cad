#include "startup/login/LoginItemRemoval.h"

#include "core/ExcludedNames.h"
#include "core/FoldedText.h"

#include <algorithm>
#include <iterator>

namespace quorvane {

namespace {

QString foldedPair(const QString& name, const QString& path) {
    return foldedText(name) + QChar() + foldedText(path);
}

} // namespace

// System Events takes texts for the same that differ in case or in how an accent is written.
LoginItemRemoval::LoginItemRemoval(const QList<LoginItem>& staying, List list)
    : m_list(list)
    , m_staying(staying) {
    for (const LoginItem& item : staying) {
        m_stayingNames.insert(foldedText(item.name));
        m_stayingPaths.insert(foldedText(item.path));
        m_stayingPairs.insert(foldedPair(item.name, item.path));
    }
}

bool LoginItemRemoval::canGoByName(const QString& name) const {
    return m_list == List::Known && !name.isEmpty() && !m_stayingNames.contains(foldedText(name));
}

bool LoginItemRemoval::canGoByPath(const QString& path) const {
    return !path.isEmpty() && !m_stayingPaths.contains(foldedText(path));
}

std::optional<LoginItemSelector> LoginItemRemoval::byName(const QString& name, const QString& path) const {
    return canGoByName(name) ? LoginItemSelector{name, {}} : byPath(name, path);
}

std::optional<LoginItemSelector> LoginItemRemoval::byPath(const QString& name, const QString& path) const {
    const bool isNameShared = !name.isEmpty() && m_stayingNames.contains(foldedText(name));
    return canGoByPath(path) && !isNameShared ? LoginItemSelector{{}, path} : byBoth(name, path);
}

std::optional<LoginItemSelector> LoginItemRemoval::byBoth(const QString& name, const QString& path) const {
    const bool isKnownByBoth = !name.isEmpty() && !path.isEmpty();
    return isKnownByBoth && !m_stayingPairs.contains(foldedPair(name, path))
               ? std::optional(LoginItemSelector{name, path})
               : std::nullopt;
}

QList<LoginItem> LoginItemRemoval::twinsOf(const LoginItemSelector& selector) const {
    QList<LoginItem> twins;
    if (selector.name.isEmpty() || selector.path.isEmpty()) {
        return twins;
    }
    std::copy_if(m_staying.begin(), m_staying.end(), std::back_inserter(twins),
                 [&](const LoginItem& item) { return sharesNameOrPath(item, selector.name, selector.path); });
    return twins;
}

bool sharesNameOrPath(const LoginItem& item, const QString& name, const QString& path) {
    return foldedText(item.name) == foldedText(name) || (!path.isEmpty() && foldedText(item.path) == foldedText(path));
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
