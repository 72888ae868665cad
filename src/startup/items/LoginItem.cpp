#include "startup/items/LoginItem.h"

#include "core/ExcludedNames.h"

namespace quorvane {

using namespace Qt::StringLiterals;

bool looksLikeBackgroundAgent(const QString& text) {
    const QString lower = text.toLower();
    return lower.contains(u"contents/library/launchagents"_s) || lower.endsWith(u".agent"_s) ||
           lower.contains(u".agent.plist"_s) || lower.endsWith(u" agent"_s);
}

bool looksLikeBackgroundAgent(const LoginItem& item) {
    return looksLikeBackgroundAgent(item.name) || looksLikeBackgroundAgent(item.path);
}

bool isProtectedLoginItem(const LoginItem& item) {
    return isExcludedName(item.name) || isExcludedName(item.path) || item.hasProtectedRecord;
}

StartupItem startupItemOf(const LoginItem& item) {
    StartupItem result;
    result.id = loginItemId(item.name, item.path);
    result.name = item.name;
    result.path = item.path;
    result.kind = looksLikeBackgroundAgent(item) ? StartupItemKind::backgroundAgent : StartupItemKind::loginApp;
    result.hidden = item.hidden;
    result.isProtected = isProtectedLoginItem(item);
    return result;
}

} // namespace quorvane
