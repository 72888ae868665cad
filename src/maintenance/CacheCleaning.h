#pragma once

#include "maintenance/SeenEntry.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace quorvane {

/// Where the system and all users have their caches, in the order in which they are cleared.
const QStringList& systemCacheFolders();

/// True for the caches of audio software, by name: a set must not begin with its plug-ins being looked for anew.
bool isProtectedCacheItem(const QString& name);

/// True for a name that root's shell line can't hold without a doubt: one with a quote of either kind, a backslash or a
/// control character. Everybody may make entries in /Library/Caches, under names of their choice.
bool isUnsafeCacheName(const QString& name);

/// True for the store of the icons that the Finder shows, which is left alone without a word.
bool isSystemIconStore(const QString& name);

/// The shell line that removes an entry of a system cache folder. @param path  of an entry whose name is safe
QString cacheRemovalCommand(const QString& path);

/// One shell line that removes them all: each command runs whatever became of the one before it, and the status is that of the
/// last and tells nothing of the others.
QString cacheRemovalLine(const QList<SeenEntry>& entries);

} // namespace quorvane
