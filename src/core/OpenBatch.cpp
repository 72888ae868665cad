#include "core/OpenBatch.h"

#include "core/AdminScript.h"
#include "core/FoldedText.h"
#include "core/Paths.h"
#include "platform/FolderNames.h"

#include <algorithm>
#include <utility>

namespace quorvane {

void OpenBatch::queue(const QString& entry) {
    m_entries.append(entry);
}

void OpenBatch::queueTolerantly(const QStringList& commands) {
    queue(joinedAdminCommands(makeAdminCommandsTolerant(commands)));
}

QString OpenBatch::takeLine() {
    return joinedAdminCommands(std::exchange(m_entries, {}));
}

void OpenBatch::rememberMove(const QString& path) {
    m_moves.insert(foldedText(path), path);
}

/// A volume that ignores case finds one file under many spellings. Where the folder lists both, they are two files.
bool OpenBatch::moves(const QString& path, const FileManager& files) const {
    const QStringList spellings = m_moves.values(foldedText(path));
    if (spellings.isEmpty() || spellings.contains(path)) {
        return !spellings.isEmpty();
    }
    const QStringList names = namesIn(files, parentFolder(path));
    const auto isListed = [&names](const QString& spelling) { return names.contains(lastPathComponent(spelling)); };
    return !isListed(path) || std::none_of(spellings.begin(), spellings.end(), isListed);
}

void OpenBatch::queueLaunchPlistBack(const QString& plist, const QString& command) {
    queue(command);
    m_plistsBroughtBack.append(plist);
}

} // namespace quorvane
