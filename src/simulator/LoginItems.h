#pragma once

#include "simulator/Mac.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>

#include <optional>

namespace macsim {

/// What opens when the user logs in, as the list "Open at Login" shows it.
struct LoginItem {
    QString name;
    std::optional<QString> path; ///< none where macOS no longer finds the file
    bool hidden = false;

    /// By what an item is known again when others come and go. Two items of one name and one path have the same, and
    /// it stands for the first of them.
    QString identity() const;

    bool operator==(const LoginItem&) const = default;
};

/// The login items of the Mac's user.
///
/// Subject "loginItems", in the order of the list; "path" is null or left out where the file is gone:
///
///     [{"name": "Live", "path": "/Applications/Live.app", "hidden": false}, …]
///
/// Background task management keeps a record of each in its own subject, "backgroundTasks" ({"records": [{…}]}): making
/// an item adds the record of type "app" of its bundle or enables it, deleting the item leaves the record, disabled.
///
/// Subject "loginItemFaults": {"deleteIsSilent": true} makes deleting do nothing and say nothing, as recent systems
/// sometimes do.
class LoginItems {
public:
    explicit LoginItems(const Mac& mac);

    /// The list as it is now. It is read again only where it has changed, so looking at every item takes time in
    /// proportion to their number.
    const QList<LoginItem>& all();
    /// Null where it is gone. Good until the next call.
    const LoginItem* find(const QString& identity);

    /// Adds an item at the end, named after the file. Whatever stands at the path (or doesn't) is taken; a path that
    /// is in the list is not added again, and its item is the one that is given back.
    LoginItem add(const QString& path, bool hidden);
    /// @return false where the item is gone already
    bool remove(const QString& identity);
    /// @return false where the item is gone
    bool setHidden(const QString& identity, bool hidden);

private:
    void refresh();

    const Mac& m_mac;
    QByteArray m_revision;
    bool m_isRead = false;
    QList<LoginItem> m_items;
    QHash<QString, qsizetype> m_positions; ///< by identity
};

} // namespace macsim
