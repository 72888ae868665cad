#include "simulator/LoginItems.h"

#include "simulator/ApplicationFinder.h"
#include "simulator/MacPaths.h"

#include <QUrl>

#include <algorithm>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr const char* kItemsSubject = "loginItems";
constexpr const char* kTasksSubject = "backgroundTasks";
constexpr const char* kFaultsSubject = "loginItemFaults";
constexpr QStringView kBundleSuffix = u".app";

std::optional<QString> textIn(const Json& record, const char* key) {
    const auto found = record.find(key);
    return found != record.end() && found->is_string()
               ? std::optional(QString::fromStdString(found->get<std::string>()))
               : std::nullopt;
}

bool isTrue(const Json& record, const char* key) {
    const auto found = record.find(key);
    return found != record.end() && found->is_boolean() && found->get<bool>();
}

QString nameOf(const QString& path) {
    const QString name = lastPathComponent(withoutFinalSlashes(path));
    return name.endsWith(kBundleSuffix) ? name.chopped(kBundleSuffix.size()) : name;
}

LoginItem itemFromJson(const Json& record) {
    return {textIn(record, "name").value_or(QString()), textIn(record, "path"), isTrue(record, "hidden")};
}

Json jsonFromItem(const LoginItem& item) {
    Json record = {{"name", item.name.toStdString()}, {"path", nullptr}, {"hidden", item.hidden}};
    if (item.path) {
        record["path"] = item.path->toStdString();
    }
    return record;
}

auto findRecord(Json& records, const QString& identity) {
    return std::ranges::find_if(records, [&](const Json& each) {
        const LoginItem item = itemFromJson(each);
        return each.is_object() && (item.identity() == identity || item.nameIdentity() == identity);
    });
}

auto findRecordOfPath(Json& records, const QString& path) {
    return std::ranges::find_if(records, [&](const Json& each) {
        const std::optional<QString> other = textIn(each, "path");
        return other && withoutFinalSlashes(*other) == withoutFinalSlashes(path);
    });
}

/// How background task management knows the bundle or program at a path.
struct TaskKey {
    int userId = 0;
    QString identifier;
    QString url;
};

// A record's identifier is the number of its type, 2 for an app, and the bundle's identifier. What stands for that where
// a file has none is not established; here it is its path.
TaskKey taskKeyOf(const QString& path, const Mac& mac) {
    const QString file = withoutFinalSlashes(path);
    const auto application = readApplication(mac.volume(Actor::User), file);
    const bool hasIdentifier = application && !application->bundleIdentifier.isEmpty();
    const QString identifier = u"2."_s + (hasIdentifier ? application->bundleIdentifier : file);
    const QByteArray url = "file://" + QUrl::toPercentEncoding(file, "/") + (file.endsWith(kBundleSuffix) ? "/" : "");
    return {mac.machine().userId, identifier, QString::fromLatin1(url)};
}

auto findTask(Json& records, const TaskKey& key) {
    return std::ranges::find_if(records, [&](const Json& each) {
        const bool isUsersApp = textIn(each, "type") == u"app"_s && each.value("uid", Json()) == key.userId;
        return isUsersApp && (textIn(each, "url") == key.url || textIn(each, "identifier") == key.identifier);
    });
}

void enableTaskIn(Json& records, const LoginItem& item, const Mac& mac) {
    const TaskKey key = taskKeyOf(*item.path, mac);
    const auto found = findTask(records, key);
    if (found != records.end()) {
        (*found)["enabled"] = true;
        return;
    }
    records.push_back({{"uid", key.userId},
                       {"name", item.name.toStdString()},
                       {"type", "app"},
                       {"identifier", key.identifier.toStdString()},
                       {"url", key.url.toStdString()},
                       {"enabled", true},
                       {"allowed", true}});
}

void disableTaskIn(Json& records, const LoginItem& item, const Mac& mac) {
    if (!item.path) {
        return;
    }
    const auto found = findTask(records, taskKeyOf(*item.path, mac));
    if (found != records.end()) {
        (*found)["enabled"] = false;
    }
}

Json* arrayIn(Json& object, const char* key) {
    const auto found = object.find(key);
    return found != object.end() && found->is_array() ? &*found : nullptr;
}

// The lock of the login items is held, so the two subjects change in step.
void enableTask(const Mac& mac, const LoginItem& item) {
    mac.state().update(kTasksSubject, [&](Json& tasks) {
        if (arrayIn(tasks, "records") == nullptr) {
            tasks = {{"records", Json::array()}};
        }
        enableTaskIn(*arrayIn(tasks, "records"), item, mac);
    });
}

void disableTask(const Mac& mac, const LoginItem& item) {
    mac.state().update(kTasksSubject, [&](Json& tasks) {
        if (Json* records = arrayIn(tasks, "records")) {
            disableTaskIn(*records, item, mac);
        }
    });
}

/// Changes the list of login items under its lock.
template <typename Change>
void updateItems(const Mac& mac, Change change) {
    mac.state().update(kItemsSubject, [&](Json& state) {
        if (!state.is_array()) {
            state = Json::array();
        }
        change(state);
    });
}

} // namespace

QString LoginItem::identity() const {
    return name + QChar() + path.value_or(QString(QChar()));
}

QString LoginItem::nameIdentity() const {
    return name.toCaseFolded();
}

LoginItems::LoginItems(const Mac& mac)
    : m_mac(mac) {}

const QList<LoginItem>& LoginItems::all() {
    refresh();
    return m_items;
}

const LoginItem* LoginItems::find(const QString& identity) {
    refresh();
    const auto found = m_positions.constFind(identity);
    return found == m_positions.constEnd() ? nullptr : &m_items.at(*found);
}

// The mark is taken first: what is written between it and the reading is read, and is read once more.
void LoginItems::refresh() {
    refreshFaults();
    const QByteArray revision = m_mac.state().revision(kItemsSubject);
    if (m_isRead && revision == m_revision) {
        return;
    }
    const Json state = m_mac.state().read(kItemsSubject);
    m_items.clear();
    m_positions.clear();
    for (const Json& record : state) {
        if (!record.is_object()) {
            continue;
        }
        const LoginItem item = itemFromJson(record);
        for (const QString& identity : {item.identity(), item.nameIdentity()}) {
            if (!m_positions.contains(identity)) {
                m_positions.insert(identity, m_items.size());
            }
        }
        m_items.append(item);
    }
    m_revision = revision;
    m_isRead = true;
}

void LoginItems::refreshFaults() {
    const QByteArray revision = m_mac.state().revision(kFaultsSubject);
    if (revision == m_faultsRevision) {
        return;
    }
    m_faults = m_mac.state().read(kFaultsSubject);
    if (!m_faults.is_object()) {
        m_faults = Json::object();
    }
    m_faultsRevision = revision;
}

LoginItem LoginItems::add(const QString& path, bool hidden) {
    LoginItem item{nameOf(path), path, hidden};
    updateItems(m_mac, [&](Json& records) {
        const auto found = findRecordOfPath(records, path);
        if (found != records.end()) {
            item = itemFromJson(*found);
        } else {
            records.push_back(jsonFromItem(item));
        }
        enableTask(m_mac, item);
    });
    return item;
}

bool LoginItems::remove(const QString& identity) {
    refreshFaults();
    const bool isSilent = isTrue(m_faults, "deleteIsSilent");
    bool isThere = false;
    updateItems(m_mac, [&](Json& records) {
        auto found = findRecord(records, identity);
        if (found != records.end() && isTrue(m_faults, "deleteGoesByName")) {
            found = findRecord(records, itemFromJson(*found).nameIdentity());
        }
        isThere = found != records.end();
        if (isThere && !isSilent) {
            disableTask(m_mac, itemFromJson(*found));
            records.erase(found);
        }
    });
    return isThere;
}

bool LoginItems::canRead(const LoginItem& item, const QString& property) const {
    const auto unreadable = m_faults.find("unreadable");
    if (unreadable == m_faults.end()) {
        return true;
    }
    const Json properties = unreadable->value(item.name.toStdString(), Json::array());
    return std::ranges::find(properties, Json(property.toStdString())) == properties.end();
}

int LoginItems::readingError() const {
    return m_faults.value("readingError", 0);
}

bool LoginItems::setHidden(const QString& identity, bool hidden) {
    bool isThere = false;
    updateItems(m_mac, [&](Json& records) {
        const auto found = findRecord(records, identity);
        isThere = found != records.end();
        if (isThere) {
            (*found)["hidden"] = hidden;
        }
    });
    return isThere;
}

} // namespace macsim
