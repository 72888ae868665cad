#include "snapshots/FocusMark.h"

#include "core/Json.h"
#include "platform/FileManager.h"
#include "platform/Host.h"
#include "platform/Machine.h"
#include "readings/ExportedPreferences.h"
#include "snapshots/RestoreCommands.h"
#include "tweaks/TweakCommands.h"

#include <QCoroTask>
#include <QMap>
#include <QXmlStreamReader>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kMarkedKey = u"dnd_enabled"_s;
const QString kFocusNotRestored = u"  [INFO] Not restored: the preferences of Focus"_s;

/// The values of a dictionary by their keys, each as XML.
QMap<QString, QString> membersOf(const TypedValue& dictionary) {
    QMap<QString, QString> members;
    QXmlStreamReader reader(dictionary.xml());
    reader.readNextStartElement();
    while (reader.readNextStartElement()) {
        const QString key = reader.readElementText();
        reader.readNextStartElement();
        if (const std::optional<TypedValue> value = TypedValue::ofElement(reader)) {
            members.insert(key, value->xml());
        }
    }
    return members;
}

} // namespace

std::optional<TypedValue> withFocusMark(const std::optional<TypedValue>& before) {
    if (before && before->type() != TypedValue::Type::Dictionary) {
        return std::nullopt;
    }
    QMap<QString, QString> members = before ? membersOf(*before) : QMap<QString, QString>();
    members.insert(kMarkedKey, u"<true/>"_s);
    QString xml = u"<dict>"_s;
    for (auto member = members.begin(); member != members.end(); ++member) {
        xml += u"<key>"_s + member.key().toHtmlEscaped() + u"</key>"_s + *member;
    }
    return TypedValue::ofXml(xml + u"</dict>"_s);
}

struct FocusMark::Read {
    bool isAnswered = false;
    std::optional<TypedValue> value;
};

FocusMark::FocusMark(FlowEnvironment& environment)
    : Flow(environment) {}

QString FocusMark::file() const {
    return host().machine.homeFolder() + u"/.quorvane/focus-preferences.json"_s;
}

QCoro::Task<FocusMark::Read> FocusMark::read() {
    const QStringList command = exportCommand(kFocusPreferences.toString(), PreferenceHost::Any);
    const CommandResult result = co_await runCommand(command, OutputCapture::Capture);
    Read read;
    if (result.isAnswered && result.status == 0) {
        const QString key = kFocusKey.toString();
        if (const auto values = exportedValues(result.standardOutput, QStringList(key))) {
            read.isAnswered = values->value(key).isAnswered;
            read.value = values->value(key).value;
        }
    }
    co_return read;
}

QCoro::Task<void> FocusMark::record() {
    if (host().files.status(file()).kind != FileStatus::Kind::Missing) {
        co_return;
    }
    const Read before = co_await read();
    const std::optional<TypedValue> marked = withFocusMark(before.value);
    if (before.isAnswered && marked && marked != before.value) {
        save(before.value);
    }
}

void FocusMark::save(const std::optional<TypedValue>& before) {
    Json json = Json::object();
    appendOptionalMember(json, "before", before ? std::optional(before->xml()) : std::nullopt);
    try {
        host().files.createFolders(host().machine.homeFolder() + u"/.quorvane"_s);
        host().files.writeAtomically(file(), jsonText(json));
    } catch (const FileError& error) {
        log(u"  [ERROR] Could not note the preferences of Focus: "_s + error.message());
    }
}

void FocusMark::forget() {
    try {
        host().files.remove(file());
    } catch (const FileError& error) {
        log(u"  [ERROR] Could not note the preferences of Focus: "_s + error.message());
    }
}

QCoro::Task<void> FocusMark::restore() {
    std::optional<QString> xml;
    try {
        if (host().files.status(file()).kind == FileStatus::Kind::Missing) {
            co_return;
        }
        xml = optionalMember<QString>(parseJson(host().files.read(file())), "before");
    } catch (const FileError&) {
        log(kFocusNotRestored);
        co_return;
    } catch (const DecodingError&) {
        log(kFocusNotRestored);
        co_return;
    }
    const std::optional<TypedValue> before = xml ? TypedValue::ofXml(*xml) : std::nullopt;
    const Read now = co_await read();
    if ((xml && !before) || !now.isAnswered) {
        log(kFocusNotRestored);
        co_return;
    }
    if (now.value == before || now.value != withFocusMark(before)) {
        forget(); // it is back, or somebody has changed it since
        co_return;
    }
    const QString verb = before ? u"write"_s : u"delete"_s;
    const QStringList command =
        defaultsCommand(verb, kFocusPreferences.toString(), kFocusKey.toString(), PreferenceHost::Any) +
        (before ? typedArguments(*before) : QStringList());
    co_await runCommand(command, OutputCapture::Discard);
    const Read after = co_await read();
    if (!after.isAnswered || after.value != before) {
        log(kFocusNotRestored);
        co_return;
    }
    log(u"  [RESTORED] Preferences of Focus."_s);
    forget();
}

} // namespace quorvane
