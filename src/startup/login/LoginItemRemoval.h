#pragma once

#include "startup/items/LoginItemTargets.h"
#include "startup/login/LoginItemScripts.h"

#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

namespace quorvane {

/// Chooses how login items are taken out without taking others with them. System Events compares names and paths without
/// regard to case, so a name takes every item of that name.
class LoginItemRemoval {
public:
    enum class List { Known, Unknown };
    /// @param staying  the items that must not go
    /// @param list     unknown when System Events wouldn't tell: nobody knows then whom else a name would take
    explicit LoginItemRemoval(const QList<LoginItem>& staying, List list = List::Known);
    static List knowledgeOf(const LoginItemList& list) { return list.tellsAll() ? List::Known : List::Unknown; }

    bool canGoByPath(const QString& path) const;
    bool canGoByName(const QString& name) const;
    /// By its name, and by name and path where one that stays shares its name. None where it can't go alone.
    std::optional<LoginItemSelector> byName(const QString& name, const QString& path) const;
    /// By its path, and by both where one that stays shares either.
    std::optional<LoginItemSelector> byPath(const QString& name, const QString& path) const;
    /// Those that stay although they share a name or path with what goes by both. The event that takes the one may take the
    /// other.
    QList<LoginItem> twinsOf(const LoginItemSelector& selector) const;

private:
    std::optional<LoginItemSelector> byBoth(const QString& name, const QString& path) const;

    List m_list;
    QList<LoginItem> m_staying;
    QSet<QString> m_stayingNames; ///< folded, as the paths
    QSet<QString> m_stayingPaths;
    QSet<QString> m_stayingPairs;
};

/// True for a twin: what System Events does to the one by that name or path it may do to the other.
bool sharesNameOrPath(const LoginItem& item, const QString& name, const QString& path);

/// True for an application's agent that the user has excluded from switching off.
/// @param excludedIds  by id or name
bool isExcludedAgent(const LoginItem& item, const QSet<QString>& excludedIds);

/// The login items that are to go.
struct NamedLoginItems {
    QList<LoginItem> matched;         ///< in the order of the list
    LoginItemRemoval removal;         ///< spares all others, and those among the matched that are held back
    QStringList leftover;             ///< the names that no item bears, in order
    LoginItemRemoval leftoverRemoval; ///< spares what is kept as well: it may have come since the list was read
    QSet<QString> protectedLeftover;  ///< those whose lines in the output are of audio software
};
NamedLoginItems namedLoginItems(const LoginItemList& list, const LoginItemTargets& targets,
                                const QSet<QString>& excludedIds);

} // namespace quorvane
