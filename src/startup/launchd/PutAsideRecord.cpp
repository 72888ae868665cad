#include "startup/launchd/PutAsideRecord.h"

#include "core/Json.h"
#include "platform/FileManager.h"
#include "platform/Machine.h"

#include <algorithm>
#include <optional>

namespace quorvane {

using namespace Qt::StringLiterals;

Json encodeJson(const PutAsidePlist& plist) {
    if (plist.job == JobBefore::Unrecorded) {
        return encodeJson(plist.path);
    }
    Json json = Json::object();
    appendMember(json, "path", encodeJson(plist.path));
    if (plist.job != JobBefore::Unknown) {
        appendMember(json, "wasLoaded", encodeJson(plist.job == JobBefore::Loaded));
    }
    return json;
}

void decodeJson(const Json& json, PutAsidePlist& plist) {
    if (json.is_string()) {
        plist.path = decodedValue<QString>(json);
        return;
    }
    plist.path = requiredMember<QString>(json, "path");
    const std::optional<bool> wasLoaded = optionalMember<bool>(json, "wasLoaded");
    const JobBefore known = wasLoaded.value_or(false) ? JobBefore::Loaded : JobBefore::NotLoaded;
    plist.job = wasLoaded ? known : JobBefore::Unknown;
}

PutAsideRecord::PutAsideRecord(FileManager& files, const Machine& machine)
    : m_files(files)
    , m_folder(machine.homeFolder() + u"/.quorvane"_s)
    , m_file(m_folder + u"/launch-items-put-aside.json"_s) {}

PutAsideRecord::Jobs PutAsideRecord::read() const {
    Jobs jobs;
    try {
        for (const PutAsidePlist& plist : decodedValue<QList<PutAsidePlist>>(parseJson(m_files.read(m_file)))) {
            jobs.insert(plist.path, plist.job);
        }
    } catch (const FileError&) {
        return {};
    } catch (const DecodingError&) {
        return {};
    }
    return jobs;
}

void PutAsideRecord::write(const Jobs& jobs) {
    QList<PutAsidePlist> entries;
    for (auto job = jobs.begin(); job != jobs.end(); ++job) {
        entries.append({job.key(), job.value()});
    }
    std::sort(entries.begin(), entries.end(),
              [](const PutAsidePlist& a, const PutAsidePlist& b) { return a.path < b.path; });
    if (!entries.isEmpty()) {
        m_files.createFolders(m_folder);
        m_files.writeAtomically(m_file, jsonText(encodeJson(entries)));
    } else if (m_files.status(m_file).kind != FileStatus::Kind::Missing) {
        m_files.remove(m_file);
    }
}

} // namespace quorvane
