#include "startup/items/LoginItem.h"

#include "core/ExcludedNames.h"
#include "core/OneLine.h"
#include "core/Paths.h"

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

QString unreadReason(const LoginItemList& list) {
    if (list.wasRead) {
        return {};
    }
    if (!list.failure || list.failure->isNotAnswered()) {
        return u"not answered"_s;
    }
    return list.failure->isNotPermitted() ? u"not permitted"_s : onOneLine(list.failure->text);
}

bool looksLikeBackgroundAgent(const QString& text) {
    const QString lower = text.toLower();
    return lower.contains(u"contents/library/launchagents"_s) || lower.endsWith(u".agent"_s) ||
           lower.contains(u".agent.plist"_s) || lower.endsWith(u" agent"_s);
}

bool looksLikeBackgroundAgent(const LoginItem& item) {
    return looksLikeBackgroundAgent(item.name) || looksLikeBackgroundAgent(item.path);
}

bool isOwnLoginItem(const LoginItem& item) {
    const QString name = item.path.isEmpty() ? item.name : nameInPath(item.path);
    return name.compare(u"Quorvane"_s, Qt::CaseInsensitive) == 0;
}

bool isProtectedLoginItem(const LoginItem& item) {
    return isExcludedName(item.name) || isExcludedName(item.path) || item.hasProtectedRecord || isOwnLoginItem(item);
}

bool isLoginItemOf(const LoginItem& item, const QString& path) {
    return item.path.isEmpty() ? item.name == nameInPath(path) : comparablePath(item.path) == path;
}

QString listedPath(const QList<LoginItem>& items, const QString& path) {
    const auto found = std::find_if(items.begin(), items.end(), [&path](const LoginItem& item) {
        return !item.path.isEmpty() && comparablePath(item.path) == comparablePath(path);
    });
    return found == items.end() ? path : found->path;
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
