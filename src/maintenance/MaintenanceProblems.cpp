#include "maintenance/MaintenanceProblems.h"

#include "core/CommandResult.h"
#include "core/Osascript.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QString reasonIn(const std::optional<ScriptFailure>& failure) {
    if (!failure) {
        return u"Unknown error"_s;
    }
    return failure->isNotPermitted() ? u"Quorvane may not control the Finder."_s : failure->text;
}

} // namespace

QString protectedItemsText(qsizetype count) {
    return u"%1 item(s) are protected by macOS."_s.arg(count);
}

QString trashNotEmptiedText(const CommandResult& script) {
    return u"The Trash wasn’t emptied: "_s + reasonIn(scriptFailure(script));
}

QString stayedInDownloadsText(qsizetype count) {
    return u"%1 item(s) stayed in Downloads."_s.arg(count);
}

} // namespace quorvane
