#include "simulator/MacDescription.h"

#include "simulator/Mac.h"
#include "simulator/MacSkeleton.h"
#include "simulator/ManagedPreferences.h"
#include "simulator/PreferenceStore.h"
#include "simulator/StartupServices.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <stdexcept>
#include <string_view>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

QString text(const Json& json) {
    return QString::fromStdString(json.get<std::string>());
}

PropertyList::Dictionary dictionary(const Json& json) {
    const PropertyList list = propertyListFromJson(json);
    const auto* values = list.as<PropertyList::Dictionary>();
    if (!values) {
        throw std::invalid_argument("preferences of a domain are an object");
    }
    return *values;
}

/// Where a description's preferences of one scope stand.
struct PreferenceScope {
    Actor actor;
    PreferenceHost host = PreferenceHost::Any;
    std::optional<ManagedScope> managed = {};
};

PreferenceScope preferenceScope(const std::string& name) {
    static const std::map<std::string, PreferenceScope> kScopes{
        {"user", {Actor::User}},
        {"userCurrentHost", {Actor::User, PreferenceHost::Current}},
        {"root", {Actor::Root}},
        {"files", {Actor::Root}},
        {"managed", {Actor::Root, PreferenceHost::Any, ManagedScope::Computer}},
        {"managedUser", {Actor::Root, PreferenceHost::Any, ManagedScope::User}}};
    const auto scope = kScopes.find(name);
    if (scope == kScopes.end()) {
        throw std::invalid_argument("\"preferences\": unknown scope \"" + name + '"');
    }
    return scope->second;
}

void writePreferences(const Mac& mac, const PreferenceScope& scope, const Json& domains) {
    const PreferenceStore store(mac, mac.volume(scope.actor));
    for (const auto& [domain, values] : domains.items()) {
        const QString name = QString::fromStdString(domain);
        const PreferenceDomain place =
            scope.managed ? managedDomain(mac.machine(), name, *scope.managed) : PreferenceDomain{name, scope.host};
        if (store.writeDomain(place, dictionary(values)) != PreferenceStore::Outcome::Done) {
            throw std::runtime_error("the preferences \"" + domain + "\" can't be written");
        }
    }
}

void writeAllPreferences(const Mac& mac, const Json& preferences) {
    for (const auto& [scope, domains] : preferences.items()) {
        writePreferences(mac, preferenceScope(scope), domains);
    }
}

/// Where a description puts something on the host. It may fill the sealed system, which no actor may write, so it
/// goes by the folder itself and takes no "..".
QString hostPathOf(const Mac& mac, const Json& entry) {
    const QString path = text(entry.is_string() ? entry : entry.at("path"));
    if (!path.startsWith(u'/') || QDir::cleanPath(path) != path || path.split(u'/').contains(u".."_s)) {
        throw std::invalid_argument("not a plain absolute path: " + path.toStdString());
    }
    return mac.hostFolder() + path;
}

void makeParent(const QString& hostPath) {
    if (!QDir().mkpath(QFileInfo(hostPath).path())) {
        throw std::runtime_error(hostPath.toStdString() + ": its folder can't be made");
    }
}

QByteArray contents(const Json& file) {
    if (file.contains("text")) {
        return QByteArray::fromStdString(file.at("text").get<std::string>());
    }
    if (file.contains("base64")) {
        return QByteArray::fromBase64(QByteArray::fromStdString(file.at("base64").get<std::string>()));
    }
    const PropertyList list = propertyListFromJson(file.at("propertyList"));
    return file.value("format", std::string("xml")) == "binary" ? binaryPropertyList(list) : xmlPropertyList(list);
}

void makeFile(const Mac& mac, const Json& entry) {
    QFile file(hostPathOf(mac, entry));
    makeParent(file.fileName());
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly) || file.write(contents(entry)) < 0 || !file.flush()) {
        throw std::runtime_error(file.fileName().toStdString() + ": " + file.errorString().toStdString());
    }
}

void makeLinkTo(const Mac& mac, const Json& entry) {
    const QString path = hostPathOf(mac, entry);
    makeParent(path);
    if (!QFile::link(text(entry.at("target")), path)) {
        throw std::runtime_error(path.toStdString() + ": the link can't be made");
    }
}

void makeFolderAt(const Mac& mac, const Json& entry) {
    const QString path = hostPathOf(mac, entry);
    if (!QDir().mkpath(path)) {
        throw std::runtime_error(path.toStdString() + ": the folder can't be made");
    }
}

void giveToRoot(const Volume& volume, const QString& path) {
    const Volume::Kind kind = volume.kind(path);
    if (kind == Volume::Kind::Link) {
        return; // it would be followed, and has no owner of its own
    }
    volume.setOwner(path, Actor::Root);
    const QStringList names = kind == Volume::Kind::Folder ? volume.list(path) : QStringList();
    for (const QString& name : names) {
        giveToRoot(volume, path + u'/' + name);
    }
}

Json listOf(const Json& description, const char* key) {
    return description.value(key, Json::array());
}

void fill(const Mac& mac, const Json& description) {
    for (const Json& entry : listOf(description, "folders")) {
        makeFolderAt(mac, entry);
    }
    for (const Json& entry : listOf(description, "files")) {
        makeFile(mac, entry);
    }
    for (const Json& entry : listOf(description, "links")) {
        makeLinkTo(mac, entry);
    }
    if (description.contains("preferences")) {
        writeAllPreferences(mac, description.at("preferences"));
    }
    for (const Json& path : listOf(description, "ownedByRoot")) {
        giveToRoot(mac.volume(Actor::Root), text(path));
    }
    static constexpr std::array<std::string_view, 7> kNoState{"//",    "machine", "preferences", "folders",
                                                              "files", "links",   "ownedByRoot"};
    for (const auto& [key, value] : description.items()) {
        if (std::find(kNoState.begin(), kNoState.end(), key) == kNoState.end()) {
            const Json state = value;
            mac.state().update(key.c_str(), [&state](Json& current) { current = state; });
        }
    }
    loadBundledServices(mac);
}

} // namespace

Json macDescriptionFromFile(const QString& hostPath) {
    QFile file(hostPath);
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error(hostPath.toStdString() + ": " + file.errorString().toStdString());
    }
    const QByteArray bytes = file.readAll();
    const Json description = Json::parse(bytes.cbegin(), bytes.cend(), nullptr, false);
    if (!description.is_object() || !description.contains("machine")) {
        throw std::runtime_error(hostPath.toStdString() + ": not the description of a Mac");
    }
    return description;
}

void createMac(const QString& hostFolder, const Json& description, const QStringList& commands,
               const QString& program) {
    const bool existed = QFileInfo::exists(hostFolder);
    createMacSkeleton(hostFolder, description.at("machine"), commands, program);
    try {
        fill(Mac(hostFolder), description);
    } catch (const std::exception& error) {
        QDir(hostFolder).removeRecursively();
        if (existed) {
            QDir().mkpath(hostFolder);
        }
        throw std::runtime_error("the Mac can't be made: " + std::string(error.what()));
    }
}

} // namespace macsim
