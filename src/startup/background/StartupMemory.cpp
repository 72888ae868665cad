#include "startup/background/StartupMemory.h"

#include "core/Json.h"
#include "core/Paths.h"
#include "platform/FileManager.h"
#include "platform/Machine.h"
#include "startup/launchd/OverrideRecord.h"

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kFileName = u"/startup_memory.json"_s;

} // namespace

bool WaitingService::isKnownAs(const QString& identifier) const {
    return !identifier.isEmpty() &&
           (identifier == service.label || identifier == knownAs || identifier == lastPathComponent(path));
}

bool StartupMemory::waitsFor(const QString& identifier) const {
    return std::any_of(waiting.begin(), waiting.end(),
                       [&identifier](const WaitingService& each) { return each.isKnownAs(identifier); });
}

QList<LaunchdService> StartupMemory::servicesOf(const QString& label) const {
    if (!services) {
        return {{LaunchdDomain::User, label}, {LaunchdDomain::System, label}};
    }
    QList<LaunchdService> found;
    for (const KnownService& known : *services) {
        if (known.knownAs == label) {
            found.append(known.service);
        }
    }
    return found.isEmpty() ? QList<LaunchdService>{{LaunchdDomain::User, label}} : found;
}

Json encodeJson(const WaitingService& waiting) {
    Json json = Json::object();
    appendMember(json, "label", encodeJson(waiting.service.label));
    appendMember(json, "isSystem", encodeJson(waiting.service.domain == LaunchdDomain::System));
    appendMember(json, "path", encodeJson(waiting.path));
    appendMember(json, "name", encodeJson(waiting.name));
    appendMember(json, "knownAs", encodeJson(waiting.knownAs));
    appendMember(json, "isCleared", encodeJson(waiting.isCleared));
    return json;
}

void decodeJson(const Json& json, WaitingService& waiting) {
    const bool isSystem = requiredMember<bool>(json, "isSystem");
    waiting.service = {isSystem ? LaunchdDomain::System : LaunchdDomain::User, requiredMember<QString>(json, "label")};
    waiting.path = requiredMember<QString>(json, "path");
    waiting.name = optionalMember<QString>(json, "name").value_or(QString());
    waiting.knownAs = optionalMember<QString>(json, "knownAs").value_or(QString());
    waiting.isCleared = optionalMember<bool>(json, "isCleared").value_or(false);
}

Json encodeJson(const KnownService& known) {
    Json json = encodeJson(known.service);
    appendMember(json, "knownAs", encodeJson(known.knownAs));
    return json;
}

void decodeJson(const Json& json, KnownService& known) {
    decodeJson(json, known.service);
    known.knownAs = requiredMember<QString>(json, "knownAs");
}

Json encodeJson(const StartupMemory& memory) {
    Json json = Json::object();
    appendMember(json, "waiting", encodeJson(memory.waiting));
    appendMember(json, "registeredApplications", encodeJson(memory.registeredApplications));
    appendOptionalMember(json, "services", memory.services);
    return json;
}

void decodeJson(const Json& json, StartupMemory& memory) {
    memory.waiting = requiredMember<QList<WaitingService>>(json, "waiting");
    memory.registeredApplications = requiredMember<QList<QString>>(json, "registeredApplications");
    memory.services = optionalMember<QList<KnownService>>(json, "services");
}

StartupMemoryFile::StartupMemoryFile(FileManager& files, const Machine& machine)
    : m_files(files)
    , m_folder(machine.applicationSupportFolder() + u"/Quorvane"_s) {}

StartupMemory StartupMemoryFile::load() const {
    try {
        return decodedValue<StartupMemory>(parseJson(m_files.read(m_folder + kFileName)));
    } catch (const FileError&) {
        return {};
    } catch (const DecodingError&) {
        return {};
    }
}

std::optional<QString> StartupMemoryFile::save(const StartupMemory& memory) const {
    try {
        m_files.createFolders(m_folder);
        m_files.writeAtomically(m_folder + kFileName, jsonText(encodeJson(memory)));
    } catch (const FileError& error) {
        return error.message();
    }
    return std::nullopt;
}

} // namespace quorvane
