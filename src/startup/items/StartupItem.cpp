#include "startup/items/StartupItem.h"

#include "core/Json.h"
#include "core/Paths.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace quorvane {

namespace {

struct KindRow {
    StartupItemKind kind;
    QStringView rawValue;
    QStringView label;
};

constexpr std::array kKinds{
    KindRow{StartupItemKind::loginApp, u"loginApp", u"App"},
    KindRow{StartupItemKind::launchAgent, u"launchAgent", u"Launch Agent"},
    KindRow{StartupItemKind::launchDaemon, u"launchDaemon", u"Daemon"},
    KindRow{StartupItemKind::backgroundAgent, u"backgroundAgent", u"Background Agent"},
    KindRow{StartupItemKind::backgroundLoginItem, u"backgroundLoginItem", u"Background Item"},
    KindRow{StartupItemKind::addedApp, u"addedApp", u"Added App"},
};

const KindRow& row(StartupItemKind kind) {
    return kKinds.at(static_cast<std::size_t>(kind));
}

const QString kLoginPrefix = u"login:"_s;
const QString kAddedPrefix = u"added:"_s;

/// Of a login item or added application; empty where the identifier holds none.
QString pathInId(const QString& id) {
    const bool isWithPath = id.startsWith(u"login:/"_s) || id.startsWith(u"added:/"_s);
    return isWithPath ? id.mid(id.indexOf(u'/')) : QString();
}

QList<StartupItemKind> listKinds() {
    QList<StartupItemKind> kinds;
    for (const KindRow& each : kKinds) {
        kinds.append(each.kind);
    }
    return kinds;
}

} // namespace

const QList<StartupItemKind>& allStartupItemKinds() {
    static const QList<StartupItemKind> kinds = listKinds();
    return kinds;
}

QString rawValue(StartupItemKind kind) {
    return row(kind).rawValue.toString();
}

QString label(StartupItemKind kind) {
    return row(kind).label.toString();
}

StartupItem StartupItem::fromLaunchItem(const StartupLaunchItem& launchItem) {
    return {.id = addedItemId(launchItem.path),
            .name = launchItem.name,
            .path = launchItem.path,
            .kind = StartupItemKind::addedApp,
            .runsAtStartup = true,
            .hidden = launchItem.hidden,
            .isProtected = false,
            .launchIdentifier = std::nullopt};
}

size_t qHash(const StartupLaunchItem& item, size_t seed) {
    return qHashMulti(seed, item.name, item.path, item.hidden);
}

size_t qHash(const StartupItem& item, size_t seed) {
    return qHashMulti(seed, item.id, item.name, item.path, static_cast<int>(item.kind), item.runsAtStartup,
                      item.hidden.has_value(), item.hidden.value_or(false), item.isProtected,
                      item.launchIdentifier.has_value(), item.launchIdentifier.value_or(QString()));
}

QString loginItemId(const QString& name, const QString& path, const QString& launchIdentifier) {
    if (!launchIdentifier.isEmpty()) {
        return launchItemId(launchIdentifier);
    }
    const QString trimmedPath = path.trimmed();
    return kLoginPrefix + (trimmedPath.isEmpty() ? name : comparablePath(trimmedPath));
}

QString launchItemId(const QString& fileName) {
    return u"launch:"_s + fileName;
}

QString backgroundItemId(const QString& label) {
    return u"btm:"_s + label;
}

QString addedItemId(const QString& path) {
    return kAddedPrefix + comparablePath(path);
}

bool isLaunchItemId(const QString& id) {
    return id.startsWith(u"launch:"_s);
}

QString comparableId(const StartupItem& item) {
    static const QString missing = kLoginPrefix + kMissingPath;
    if (item.id == missing) {
        return kLoginPrefix + item.name;
    }
    return pathInId(item.id).isEmpty() ? item.id : comparablePath(item.id);
}

QString comparablePath(const QString& path) {
    return withoutFinalSlashes(path);
}

QString knownPath(const StartupItem& item) {
    const QString path = pathInId(item.id);
    if (!path.isEmpty()) {
        return comparablePath(path);
    }
    return item.path == kMissingPath ? QString() : comparablePath(item.path);
}

bool isLoginItem(const StartupItem& item) {
    return (item.kind == StartupItemKind::loginApp || item.kind == StartupItemKind::backgroundAgent) &&
           !isLaunchItemId(item.id);
}

Json encodeJson(const StartupItem& item) {
    Json object = Json::object();
    appendMember(object, "id", encodeJson(item.id));
    appendMember(object, "name", encodeJson(item.name));
    appendMember(object, "path", encodeJson(item.path));
    appendMember(object, "kind", encodeJson(rawValue(item.kind)));
    appendMember(object, "runsAtStartup", encodeJson(item.runsAtStartup));
    appendOptionalMember(object, "hidden", item.hidden);
    appendMember(object, "isProtected", encodeJson(item.isProtected));
    appendOptionalMember(object, "launchIdentifier", item.launchIdentifier);
    return object;
}

Json encodeJson(const StartupLaunchItem& item) {
    Json object = Json::object();
    appendMember(object, "name", encodeJson(item.name));
    appendMember(object, "path", encodeJson(item.path));
    appendMember(object, "hidden", encodeJson(item.hidden));
    return object;
}

void decodeJson(const Json& json, StartupItemKind& kind) {
    const QString raw = decodedValue<QString>(json);
    const auto found =
        std::find_if(kKinds.begin(), kKinds.end(), [&raw](const KindRow& each) { return each.rawValue == raw; });
    if (found == kKinds.end()) {
        throw DecodingError(u"unknown value "_s + quotedForError(raw));
    }
    kind = found->kind;
}

void decodeJson(const Json& json, StartupItem& item) {
    item.id = requiredMember<QString>(json, "id");
    item.name = requiredMember<QString>(json, "name");
    item.path = requiredMember<QString>(json, "path");
    item.kind = requiredMember<StartupItemKind>(json, "kind");
    item.runsAtStartup = requiredMember<bool>(json, "runsAtStartup");
    item.hidden = optionalMember<bool>(json, "hidden");
    item.isProtected = requiredMember<bool>(json, "isProtected");
    item.launchIdentifier = optionalMember<QString>(json, "launchIdentifier");
}

void decodeJson(const Json& json, StartupLaunchItem& item) {
    item.name = requiredMember<QString>(json, "name");
    item.path = requiredMember<QString>(json, "path");
    item.hidden = requiredMember<bool>(json, "hidden");
}

} // namespace quorvane
