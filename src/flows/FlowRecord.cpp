#include "flows/FlowRecord.h"

#include "core/Json.h"
#include "core/UserDefaultKeys.h"
#include "platform/UserDefaults.h"
#include "profiles/ProfileJson.h"

#include <algorithm>
#include <array>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

struct NamedFlow {
    RecordedFlow flow;
    const char16_t* name;
};

constexpr std::array<NamedFlow, 6> kFlows{{{RecordedFlow::Profile, u"profile"},
                                           {RecordedFlow::Tweaks, u"tweaks"},
                                           {RecordedFlow::Startup, u"startup"},
                                           {RecordedFlow::Undo, u"undo"},
                                           {RecordedFlow::Default, u"default"},
                                           {RecordedFlow::Reinstate, u"reinstate"}}};

QByteArray line(const Json& json) {
    return QByteArray::fromStdString(json.dump()) + '\n';
}

} // namespace

Json encodeJson(const ProgramNotes& notes) {
    Json object = Json::object();
    appendOptionalMember(object, "lastAppliedName", notes.lastAppliedName);
    appendMember(object, "changedTweaks", encodeJson(notes.changedTweaks));
    appendMember(object, "managedPaths", encodeJson(notes.managedPaths));
    appendMember(object, "hasSwitchedBackupsOff", encodeJson(notes.hasSwitchedBackupsOff));
    return object;
}

void decodeJson(const Json& json, ProgramNotes& notes) {
    notes.lastAppliedName = optionalMember<QString>(json, "lastAppliedName");
    notes.changedTweaks = requiredMember<QList<QString>>(json, "changedTweaks");
    notes.managedPaths = requiredMember<QList<QString>>(json, "managedPaths");
    notes.hasSwitchedBackupsOff = requiredMember<bool>(json, "hasSwitchedBackupsOff");
}

Json encodeJson(const StateBefore& before) {
    Json object = Json::object();
    appendOptionalMember(object, "settings", before.settings);
    appendOptionalMember(object, "loginItems", before.loginItems);
    appendMember(object, "keptOff", encodeJson(before.keptOff));
    appendMember(object, "waiting", encodeJson(before.waiting));
    appendMember(object, "notes", encodeJson(before.notes));
    return object;
}

void decodeJson(const Json& json, StateBefore& before) {
    before.settings = optionalMember<SystemSnapshot>(json, "settings");
    before.loginItems = optionalMember<QList<LoginItemSnapshot>>(json, "loginItems");
    before.keptOff = requiredMember<KeptOff>(json, "keptOff");
    before.waiting = requiredMember<QList<WaitingService>>(json, "waiting");
    before.notes = requiredMember<ProgramNotes>(json, "notes");
}

QString nameOfFlow(RecordedFlow flow) {
    const auto found =
        std::find_if(kFlows.begin(), kFlows.end(), [flow](const NamedFlow& each) { return each.flow == flow; });
    return QString::fromUtf16(found->name);
}

RecordedFlow flowNamed(const QString& name) {
    for (const NamedFlow& each : kFlows) {
        if (name == QStringView(each.name)) {
            return each.flow;
        }
    }
    throw DecodingError(u"unknown value "_s + quotedForError(name), u"flow"_s);
}

bool isWayBack(RecordedFlow flow) {
    return flow == RecordedFlow::Undo || flow == RecordedFlow::Default || flow == RecordedFlow::Reinstate;
}

ProgramNotes readProgramNotes(const UserDefaults& defaults) {
    return {defaults.string(kQuorvaneLastAppliedProfileName), defaults.stringArray(kQuorvaneChangedTweaks),
            defaults.stringArray(kQuorvaneManagedStartupAppPaths), defaults.boolean(kQuorvaneSwitchedBackupsOff)};
}

void writeProgramNotes(const ProgramNotes& notes, UserDefaults& defaults) {
    const auto write = [&defaults](const QString& key, const QStringList& values) {
        if (defaults.stringArray(key) != values) {
            values.isEmpty() ? defaults.remove(key) : defaults.setStringArray(key, values);
        }
    };
    if (notes.lastAppliedName) {
        defaults.setString(kQuorvaneLastAppliedProfileName, *notes.lastAppliedName);
    } else {
        defaults.remove(kQuorvaneLastAppliedProfileName);
    }
    write(kQuorvaneChangedTweaks, notes.changedTweaks);
    write(kQuorvaneManagedStartupAppPaths, notes.managedPaths);
    if (defaults.boolean(kQuorvaneSwitchedBackupsOff) != notes.hasSwitchedBackupsOff) {
        defaults.setBoolean(kQuorvaneSwitchedBackupsOff, notes.hasSwitchedBackupsOff);
    }
}

QByteArray beginningOf(const FlowRecord& record) {
    Json object = Json::object();
    appendMember(object, "flow", encodeJson(nameOfFlow(record.flow)));
    appendMember(object, "name", encodeJson(record.name));
    appendMember(object, "process", encodeJson(record.process));
    appendMember(object, "began", encodeJson(record.began));
    appendMember(object, "steps", encodeJson(record.steps));
    if (!isWayBack(record.flow)) {
        appendMember(object, "profile", encodeJson(record.profile));
    }
    appendOptionalMember(object, "cleanReboot", record.cleanReboot);
    appendOptionalMember(object, "baseline", record.baseline);
    appendMember(object, "before", encodeJson(record.before));
    return line(object);
}

QByteArray loginItemsLine(const QList<LoginItemSnapshot>& items) {
    return line(Json::object({{"loginItems", encodeJson(items)}}));
}

QByteArray doneLine(const QString& step) {
    return line(Json::object({{"done", encodeJson(step)}}));
}

QByteArray endLine() {
    return line(Json::object({{"hasEnded", true}}));
}

namespace {

FlowRecord decodedBeginning(const Json& json) {
    FlowRecord record;
    record.flow = flowNamed(requiredMember<QString>(json, "flow"));
    record.name = requiredMember<QString>(json, "name");
    record.process = requiredMember<QString>(json, "process");
    record.began = requiredMember<QDateTime>(json, "began");
    record.steps = requiredMember<QList<QString>>(json, "steps");
    if (!isWayBack(record.flow)) {
        record.profile = requiredMember<UnifiedProfile>(json, "profile");
    }
    record.cleanReboot = optionalMember<CleanReboot>(json, "cleanReboot");
    record.baseline = optionalMember<RestoreBaseline>(json, "baseline");
    record.before = requiredMember<StateBefore>(json, "before");
    return record;
}

void take(const Json& json, FlowRecord& record) {
    if (const auto items = optionalMember<QList<LoginItemSnapshot>>(json, "loginItems")) {
        record.before.loginItems = items;
    }
    if (const auto step = optionalMember<QString>(json, "done"); step && record.steps.contains(*step)) {
        record.done = std::min(record.done + 1, record.steps.size());
    }
    record.hasEnded = record.hasEnded || optionalMember<bool>(json, "hasEnded").value_or(false);
}

} // namespace

std::optional<FlowRecord> parsedFlowRecord(const QByteArray& bytes) {
    std::optional<FlowRecord> record;
    const qsizetype whole = bytes.lastIndexOf('\n') + 1;
    for (qsizetype start = 0; start < whole;) {
        const qsizetype end = bytes.indexOf('\n', start);
        try {
            const Json json = parseJson(bytes.sliced(start, end - start));
            if (record) {
                take(json, *record);
            } else {
                record = decodedBeginning(json);
            }
        } catch (const DecodingError&) {
            break;
        }
        start = end + 1;
    }
    return record;
}

} // namespace quorvane
