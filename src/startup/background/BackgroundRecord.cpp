#include "startup/background/BackgroundRecord.h"

#include "core/Json.h"
#include "platform/FileManager.h"
#include "platform/FolderNames.h"
#include "platform/Machine.h"

namespace quorvane {

using namespace Qt::StringLiterals;

ApplicationVersion applicationVersion(const QVariantMap& infoDictionary) {
    return {infoDictionary.value(u"CFBundleIdentifier"_s).toString(),
            infoDictionary.value(u"CFBundleVersion"_s).toString(),
            infoDictionary.value(u"CFBundleShortVersionString"_s).toString()};
}

Json encodeJson(const DisallowedItem& item) {
    Json json = Json::object();
    appendMember(json, "application", encodeJson(item.application));
    appendMember(json, "label", encodeJson(item.label));
    return json;
}

void decodeJson(const Json& json, DisallowedItem& item) {
    item.application = requiredMember<QString>(json, "application");
    item.label = requiredMember<QString>(json, "label");
}

Json encodeJson(const TakenHelper& helper) {
    Json json = Json::object();
    appendMember(json, "label", encodeJson(helper.label));
    appendMember(json, "place", encodeJson(helper.place));
    appendMember(json, "application", encodeJson(helper.application));
    appendMember(json, "bundleIdentifier", encodeJson(helper.version.bundleIdentifier));
    appendMember(json, "version", encodeJson(helper.version.version));
    appendMember(json, "shortVersion", encodeJson(helper.version.shortVersion));
    return json;
}

void decodeJson(const Json& json, TakenHelper& helper) {
    helper.label = requiredMember<QString>(json, "label");
    helper.place = requiredMember<QString>(json, "place");
    helper.application = requiredMember<QString>(json, "application");
    helper.version.bundleIdentifier = optionalMember<QString>(json, "bundleIdentifier").value_or(QString());
    helper.version.version = optionalMember<QString>(json, "version").value_or(QString());
    helper.version.shortVersion = optionalMember<QString>(json, "shortVersion").value_or(QString());
}

Json encodeJson(const BackgroundChanges& changes) {
    Json json = Json::object();
    appendMember(json, "disallowed", encodeJson(changes.disallowed));
    appendMember(json, "helpers", encodeJson(changes.helpers));
    return json;
}

void decodeJson(const Json& json, BackgroundChanges& changes) {
    changes.disallowed = optionalMember<QList<DisallowedItem>>(json, "disallowed").value_or(QList<DisallowedItem>());
    changes.helpers = optionalMember<QList<TakenHelper>>(json, "helpers").value_or(QList<TakenHelper>());
}

BackgroundRecord::BackgroundRecord(FileManager& files, const Machine& machine)
    : m_files(files)
    , m_folder(machine.homeFolder() + u"/.quorvane"_s)
    , m_file(m_folder + u"/background-items.json"_s) {}

BackgroundChanges BackgroundRecord::read() const {
    if (m_files.status(m_file).kind == FileStatus::Kind::Missing) {
        return {};
    }
    return decodedValue<BackgroundChanges>(parseJson(m_files.read(m_file)));
}

void BackgroundRecord::write(const BackgroundChanges& changes) {
    if (changes != BackgroundChanges()) {
        m_files.createFolders(m_folder);
        m_files.writeAtomically(m_file, jsonText(encodeJson(changes)));
    } else if (m_files.status(m_file).kind != FileStatus::Kind::Missing) {
        m_files.remove(m_file);
    }
}

QString BackgroundRecord::putAside() {
    const QString aside = freePath(m_files, m_file + u".unreadable"_s);
    m_files.move(m_file, aside);
    return aside;
}

} // namespace quorvane
