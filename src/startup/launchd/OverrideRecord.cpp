#include "startup/launchd/OverrideRecord.h"

#include "core/Json.h"
#include "platform/FileManager.h"
#include "platform/FolderNames.h"
#include "platform/Machine.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kUser = u"user"_s;
const QString kSystem = u"system"_s;

LaunchdDomain domainNamed(const QString& name) {
    if (name == kUser) {
        return LaunchdDomain::User;
    }
    if (name == kSystem) {
        return LaunchdDomain::System;
    }
    throw DecodingError(u"unknown value "_s + quotedForError(name), u"domain"_s);
}

/// "disabled" is none of them: such a service is left alone.
QString overrideWord(OverrideState state) {
    switch (state) {
    case OverrideState::Enabled:
        return u"enabled"_s;
    case OverrideState::NotListed:
        return u"notListed"_s;
    case OverrideState::Disabled:
    case OverrideState::Unknown:
        break;
    }
    return u"unknown"_s;
}

OverrideState overrideOfWord(const QString& name) {
    for (const OverrideState state : {OverrideState::Enabled, OverrideState::NotListed, OverrideState::Unknown}) {
        if (overrideWord(state) == name) {
            return state;
        }
    }
    throw DecodingError(u"unknown value "_s + quotedForError(name), u"override"_s);
}

void appendKnownText(Json& object, const char* key, const QString& text) {
    if (!text.isEmpty()) {
        appendMember(object, key, encodeJson(text));
    }
}

} // namespace

Json encodeJson(const LaunchdService& service) {
    Json object = Json::object();
    appendMember(object, "label", encodeJson(service.label));
    appendMember(object, "domain", encodeJson(service.domain == LaunchdDomain::User ? kUser : kSystem));
    return object;
}

void decodeJson(const Json& json, LaunchdService& service) {
    service.label = requiredMember<QString>(json, "label");
    service.domain = domainNamed(requiredMember<QString>(json, "domain"));
}

Json encodeJson(const RecordedOverride& recorded) {
    Json object = encodeJson(recorded.service);
    if (!recorded.isConfirmed) {
        appendMember(object, "isPending", encodeJson(true));
    }
    if (recorded.before) {
        appendMember(object, "override", encodeJson(overrideWord(*recorded.before)));
    }
    appendOptionalMember(object, "wasLoaded", recorded.wasLoaded);
    appendKnownText(object, "name", recorded.name);
    appendKnownText(object, "plist", recorded.plist);
    return object;
}

void decodeJson(const Json& json, RecordedOverride& recorded) {
    decodeJson(json, recorded.service);
    recorded.isConfirmed = !optionalMember<bool>(json, "isPending").value_or(false);
    if (const std::optional<QString> before = optionalMember<QString>(json, "override")) {
        recorded.before = overrideOfWord(*before);
    }
    recorded.wasLoaded = optionalMember<bool>(json, "wasLoaded");
    recorded.name = optionalMember<QString>(json, "name").value_or(QString());
    recorded.plist = optionalMember<QString>(json, "plist").value_or(QString());
}

OverrideRecord::OverrideRecord(FileManager& files, const Machine& machine)
    : m_files(files)
    , m_folder(machine.homeFolder() + u"/.quorvane"_s)
    , m_file(m_folder + u"/launchd-overrides.json"_s) {}

QList<RecordedOverride> OverrideRecord::read() const {
    if (m_files.status(m_file).kind == FileStatus::Kind::Missing) {
        return {};
    }
    return decodedValue<QList<RecordedOverride>>(parseJson(m_files.read(m_file)));
}

void OverrideRecord::write(const QList<RecordedOverride>& overrides) {
    if (!overrides.isEmpty()) {
        m_files.createFolders(m_folder);
        m_files.writeAtomically(m_file, jsonText(encodeJson(overrides)));
    } else if (m_files.status(m_file).kind != FileStatus::Kind::Missing) {
        m_files.remove(m_file);
    }
}

void OverrideRecord::strike(const QList<LaunchdService>& services) {
    QList<RecordedOverride> left = read();
    if (left.removeIf([&services](const RecordedOverride& each) { return services.contains(each.service); }) > 0) {
        write(left);
    }
}

QString OverrideRecord::putAside() {
    const QString aside = freePath(m_files, m_file + u".unreadable"_s);
    m_files.move(m_file, aside);
    return aside;
}

} // namespace quorvane
