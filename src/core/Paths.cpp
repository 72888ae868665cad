#include "core/Paths.h"

namespace quorvane {

QString lastPathComponent(const QString& path) {
    return path.mid(path.lastIndexOf(u'/') + 1);
}

QString parentFolder(const QString& path) {
    return path.left(path.lastIndexOf(u'/'));
}

QString withoutFinalSlashes(const QString& path) {
    qsizetype end = path.size();
    while (end > 1 && path.at(end - 1) == u'/') {
        --end;
    }
    return path.left(end);
}

QString nameInPath(const QString& path) {
    const QString name = lastPathComponent(withoutFinalSlashes(path));
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot <= 0 ? name : name.left(dot);
}

} // namespace quorvane
