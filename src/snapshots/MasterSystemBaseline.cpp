#include "snapshots/MasterSystemBaseline.h"

#include "core/FileTimestamp.h"
#include "core/Json.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QString errorText(MasterSystemBaselineError::Code code, const QString& text) {
    return (code == MasterSystemBaselineError::Code::writeFailed ? u"Could not save the master system baseline: "_s
                                                                 : u"Could not read the master system baseline: "_s) +
           text;
}

} // namespace

MasterSystemBaselineError::MasterSystemBaselineError(Code code, const QString& text)
    : m_code(code)
    , m_text(errorText(code, text).toUtf8()) {}

MasterSystemBaseline masterBaselineOf(const SystemSnapshot& snapshot, const MacIdentity& mac,
                                      const std::optional<QString>& label) {
    MasterSystemBaseline baseline;
    baseline.capturedAt = snapshot.dateCreated;
    baseline.deviceName = mac.name;
    baseline.deviceId = mac.id;
    baseline.label = label ? label : snapshot.label;
    baseline.snapshot = snapshot;
    return baseline;
}

BaselineOrigin originOf(const MasterSystemBaseline& baseline, const MacIdentity& mac) {
    if (baseline.deviceId && mac.id) {
        return baseline.deviceId == mac.id ? BaselineOrigin::ThisMac : BaselineOrigin::AnotherMac;
    }
    return baseline.deviceName == mac.name ? BaselineOrigin::SameName : BaselineOrigin::AnotherMac;
}

std::optional<LatestBaseline> latestBaseline(const std::optional<MasterSystemBaseline>& inCloud,
                                             const std::optional<MasterSystemBaseline>& atHome,
                                             const MacIdentity& mac) {
    const auto origin = [&mac](const std::optional<MasterSystemBaseline>& baseline) {
        return baseline ? std::optional(originOf(*baseline, mac)) : std::nullopt;
    };
    if (origin(inCloud) == BaselineOrigin::ThisMac) {
        return LatestBaseline{*inCloud, BaselinePlace::ICloud, false};
    }
    if (atHome && origin(atHome) != BaselineOrigin::AnotherMac) {
        return LatestBaseline{*atHome, BaselinePlace::HomeFolder, false};
    }
    if (origin(inCloud) == BaselineOrigin::SameName) {
        return LatestBaseline{*inCloud, BaselinePlace::ICloud, false};
    }
    if (atHome) {
        return LatestBaseline{*atHome, BaselinePlace::HomeFolder, true};
    }
    return inCloud ? std::optional(LatestBaseline{*inCloud, BaselinePlace::ICloud, true}) : std::nullopt;
}

QByteArray encodeMasterBaseline(const MasterSystemBaseline& baseline) {
    Json object = Json::object();
    appendMember(object, "formatVersion", encodeJson(baseline.formatVersion));
    appendMember(object, "capturedAt", encodeJson(baseline.capturedAt));
    appendMember(object, "deviceName", encodeJson(baseline.deviceName));
    appendOptionalMember(object, "deviceId", baseline.deviceId);
    appendOptionalMember(object, "label", baseline.label);
    appendMember(object, "snapshot", encodeJson(baseline.snapshot));
    return sortedJsonText(object);
}

MasterSystemBaseline decodeMasterBaseline(const QByteArray& bytes) {
    try {
        const Json object = parseJson(bytes);
        MasterSystemBaseline baseline;
        baseline.formatVersion = requiredMember<int>(object, "formatVersion");
        baseline.capturedAt = requiredMember<QDateTime>(object, "capturedAt");
        baseline.deviceName = requiredMember<QString>(object, "deviceName");
        baseline.deviceId = optionalMember<QString>(object, "deviceId");
        baseline.label = optionalMember<QString>(object, "label");
        baseline.snapshot = requiredMember<SystemSnapshot>(object, "snapshot");
        return baseline;
    } catch (const DecodingError& error) {
        throw MasterSystemBaselineError(MasterSystemBaselineError::Code::readFailed, error.message());
    }
}

QString masterBaselineArchiveName(const MasterSystemBaseline& baseline) {
    return u"master-baseline-%1.json"_s.arg(fileTimestamp(baseline.capturedAt));
}

bool isMasterBaselineName(const QString& name) {
    return name.startsWith(u"master-baseline-") && name.endsWith(u".json");
}

} // namespace quorvane
