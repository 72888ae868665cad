#include "core/Paths.h"

namespace quorvane {

QString lastPathComponent(const QString& path) {
    return path.mid(path.lastIndexOf(u'/') + 1);
}

QString parentFolder(const QString& path) {
    return path.left(path.lastIndexOf(u'/'));
}

QStringList foldersAbove(const QString& path) {
    QStringList folders;
    for (qsizetype end = path.indexOf(u'/', 1); end > 0; end = path.indexOf(u'/', end + 1)) {
        folders.append(path.left(end));
    }
    return folders;
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
