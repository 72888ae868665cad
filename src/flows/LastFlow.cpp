#include "flows/LastFlow.h"

#include "core/Json.h"
#include "platform/FileManager.h"
#include "platform/Machine.h"
#include "profiles/ProfileJson.h"
#include "verification/ApplyVerificationResult.h"
#include "verification/LastFlowStanding.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

Json jsonOf(const LastFlow& last) {
    Json object = Json::object();
    appendMember(object, "flow", encodeJson(nameOfFlow(last.flow)));
    appendMember(object, "name", encodeJson(last.name));
    appendMember(object, "ended", encodeJson(last.ended));
    appendMember(object, "since", encodeJson(last.since));
    if (!isWayBack(last.flow)) {
        appendMember(object, "profile", encodeJson(last.profile));
    }
    appendOptionalMember(object, "cleanReboot", last.cleanReboot);
    appendOptionalMember(object, "baseline", last.baseline);
    appendMember(object, "held", encodeJson(sortedTexts(last.held)));
    return object;
}

LastFlow lastFlowIn(const Json& json) {
    LastFlow last;
    last.flow = flowNamed(requiredMember<QString>(json, "flow"));
    last.name = requiredMember<QString>(json, "name");
    last.ended = requiredMember<QDateTime>(json, "ended");
    last.since = requiredMember<QDateTime>(json, "since");
    if (!isWayBack(last.flow)) {
        last.profile = requiredMember<UnifiedProfile>(json, "profile");
    }
    last.cleanReboot = optionalMember<CleanReboot>(json, "cleanReboot");
    last.baseline = optionalMember<RestoreBaseline>(json, "baseline");
    const QList<QString> held = requiredMember<QList<QString>>(json, "held");
    last.held = {held.begin(), held.end()};
    return last;
}

} // namespace

LastFlowFile::LastFlowFile(FileManager& files, const Machine& machine)
    : m_files(files)
    , m_folder(machine.homeFolder() + u"/.quorvane"_s)
    , m_file(m_folder + u"/last-flow.json"_s) {}

std::optional<LastFlow> LastFlowFile::load() const {
    try {
        return lastFlowIn(parseJson(m_files.read(m_file)));
    } catch (const FileError&) {
        return std::nullopt;
    } catch (const DecodingError&) {
        return std::nullopt;
    }
}

void LastFlowFile::save(const LastFlow& last) const {
    m_files.createFolders(m_folder);
    m_files.writeAtomically(m_file, jsonText(jsonOf(last)));
}

void LastFlowFile::remove() const {
    if (m_files.status(m_file).kind != FileStatus::Kind::Missing) {
        m_files.remove(m_file);
    }
}

LastFlow lastFlowOf(const FlowRecord& flow, const ApplyVerificationResult& left, const QDateTime& ended,
                    const std::optional<LastFlow>& earlier) {
    LastFlow last;
    last.flow = flow.flow;
    last.name = flow.name;
    last.ended = ended;
    last.profile = flow.profile;
    last.cleanReboot = flow.cleanReboot;
    last.baseline = flow.baseline;
    for (const ApplyVerificationResult::Item& item : left.verified) {
        last.held.insert(item.name);
    }
    const bool isTheSame =
        earlier && earlier->flow == last.flow && earlier->profile == last.profile && last.flow == RecordedFlow::Profile;
    last.since = isTheSame ? earlier->since : ended;
    return last;
}

LastFlowStanding standingOf(const LastFlow& last, const ApplyVerificationResult& now) {
    LastFlowStanding standing{last.name, isWayBack(last.flow), last.flow == RecordedFlow::Profile, last.since, {}};
    for (const ApplyVerificationResult::Item& item : now.failed) {
        if (last.held.contains(item.name)) {
            standing.changed.append(item);
        }
    }
    return standing;
}

} // namespace quorvane
