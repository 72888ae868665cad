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
    /// As System Events names it in its answers: of several items of a name it stands for the first, whichever was meant.
    QString nameIdentity() const;

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
/// Subject "loginItemFaults", what goes wrong with them:
///
///     {"deleteIsSilent": true, "deleteGoesByName": true, "unreadable": {"Live": ["path"], …}, "readingError": -600}
///
/// Deleting does nothing and says nothing, as recent systems sometimes do; or it takes the first item of the name, whichever
/// was meant. The properties of an item that are listed can't be read: they aren't there, or asking for them is that error, as
/// where System Events has ended or hangs.
class LoginItems {
public:
    explicit LoginItems(const Mac& mac);

    /// The list as it is now. It is read again only where it has changed, so looking at every item takes time in
    /// proportion to their number.
    const QList<LoginItem>& all();
    /// By either identity. Null where it is gone. Good until the next call.
    const LoginItem* find(const QString& identity);

    /// Adds an item at the end, named after the file. Whatever stands at the path (or doesn't) is taken; a path that
    /// is in the list is not added again, and its item is the one that is given back.
    LoginItem add(const QString& path, bool hidden);
    /// @return false where the item is gone already
    bool remove(const QString& identity);
    /// @return false where the item is gone
    bool setHidden(const QString& identity, bool hidden);
    /// Of an item that was just found.
    bool canRead(const LoginItem& item, const QString& property) const;
    /// Of asking for what can't be read; 0 where it just isn't there.
    int readingError() const;

private:
    void refresh();
    void refreshFaults();

    const Mac& m_mac;
    Json m_faults = Json::object();
    QByteArray m_faultsRevision;
    QByteArray m_revision;
    bool m_isRead = false;
    QList<LoginItem> m_items;
    QHash<QString, qsizetype> m_positions; ///< by identity
};

} // namespace macsim
