#include "maintenance/CacheCleaning.h"

#include "core/ExcludedNames.h"

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

const QStringList& systemCacheFolders() {
    static const QStringList folders{u"/Library/Caches"_s, u"/System/Library/Caches"_s};
    return folders;
}

bool isProtectedCacheItem(const QString& name) {
    return isExcludedName(name);
}

bool isUnsafeCacheName(const QString& name) {
    return std::any_of(name.begin(), name.end(), [](QChar c) {
        return c == u'\'' || c == u'"' || c == u'\\' || c.category() == QChar::Other_Control;
    });
}

bool isSystemIconStore(const QString& name) {
    return name == u"com.apple.iconservices.store"_s;
}

QString cacheRemovalCommand(const QString& path) {
    return u"rm -rf '"_s + path + u'\'';
}

QString cacheRemovalLine(const QList<SeenEntry>& entries) {
    QStringList commands;
    for (const SeenEntry& entry : entries) {
        commands.append(cacheRemovalCommand(entry.path));
    }
    return commands.join(u"; "_s);
}

} // namespace quorvane
