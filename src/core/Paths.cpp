#include "core/Paths.h"

namespace quorvane {

QString lastPathComponent(const QString& path) {
    return path.mid(path.lastIndexOf(u'/') + 1);
}

QString parentFolder(const QString& path) {
    return path.left(path.lastIndexOf(u'/'));
}

QString nameInPath(const QString& path) {
    QString plainPath = path;
    while (plainPath.endsWith(u'/')) {
        plainPath.chop(1);
    }
    const QString name = lastPathComponent(plainPath);
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot <= 0 ? name : name.left(dot);
}

} // namespace quorvane
