#pragma once

#include "startup/items/LoginItemTargets.h"

#include <QSet>
#include <QString>
#include <QStringList>

namespace quorvane {

/// Chooses how login items are taken out without taking others with them. System Events compares names and paths without
/// regard to case, so a name takes every item of that name.
class LoginItemRemoval {
public:
    enum class Means { ByName, ByPath, None };

    enum class List { Known, Unknown };
    /// @param staying  the items that must not go
    /// @param list     unknown when System Events wouldn't tell: nobody knows then whom else a name would take
    explicit LoginItemRemoval(const QList<LoginItem>& staying, List list = List::Known);
    static List knowledgeOf(const LoginItemList& list) { return list.wasRead ? List::Known : List::Unknown; }

    Means meansFor(const QString& name, const QString& path) const;
    bool canGoByPath(const QString& path) const;
    bool canGoByName(const QString& name) const;

private:
    List m_list;
    QSet<QString> m_stayingNames;
    QSet<QString> m_stayingPaths;
};

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
