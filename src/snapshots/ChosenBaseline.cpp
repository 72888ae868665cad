#include "snapshots/ChosenBaseline.h"

#include "core/Json.h"
#include "platform/FileManager.h"
#include "snapshots/HomeBaselines.h"

namespace quorvane {

using namespace Qt::StringLiterals;

Json encodeJson(const ChosenBaseline& chosen) {
    Json object = Json::object();
    appendMember(object, "chosenAt", encodeJson(chosen.chosenAt));
    appendMember(object, "baseline", parseJson(encodeMasterBaseline(chosen.baseline)));
    return object;
}

void decodeJson(const Json& json, ChosenBaseline& chosen) {
    chosen.chosenAt = requiredMember<QDateTime>(json, "chosenAt");
    const Json* const baseline = findMember(json, "baseline");
    if (baseline == nullptr) {
        throw DecodingError(u"missing"_s, u"baseline"_s);
    }
    try {
        chosen.baseline = decodeMasterBaseline(jsonText(*baseline));
    } catch (const MasterSystemBaselineError& error) {
        throw DecodingError(error.message(), u"baseline"_s);
    }
}

ChosenBaselineFile::ChosenBaselineFile(FileManager& files, const Machine& machine)
    : m_files(files)
    , m_folder(baselineFolderAtHome(machine))
    , m_path(m_folder + u"/chosen-baseline.json"_s) {}

std::optional<ChosenBaseline> ChosenBaselineFile::load() const {
    try {
        return decodedValue<ChosenBaseline>(parseJson(m_files.read(m_path)));
    } catch (const FileError&) {
        return std::nullopt;
    } catch (const DecodingError&) {
        return std::nullopt;
    }
}

void ChosenBaselineFile::save(const ChosenBaseline& chosen) {
    m_files.createFolders(m_folder);
    m_files.writeAtomically(m_path, jsonText(encodeJson(chosen)));
}

void ChosenBaselineFile::remove() {
    if (m_files.status(m_path).kind != FileStatus::Kind::Missing) {
        m_files.remove(m_path);
    }
}

} // namespace quorvane
