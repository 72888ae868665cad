#include "simulator/shell/GlobPaths.h"

#include "simulator/shell/Glob.h"

#include <algorithm>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

/// Follows a pattern through the volume, component by component.
class GlobWalk {
public:
    GlobWalk(const QString& workingFolder, const Volume& volume)
        : m_workingFolder(workingFolder)
        , m_volume(volume) {}

    void follow(const QString& component) {
        QStringList reached;
        for (const QString& path : std::as_const(m_paths)) {
            reached += isGlob(component) ? namesIn(path, component) : nameIn(path, globText(component));
        }
        m_paths = reached;
    }

    /// Only folders have something behind a slash.
    void followSlashes(const QString& slashes) {
        QStringList reached;
        for (const QString& path : std::as_const(m_paths)) {
            if (path.isEmpty() || m_volume.isFolder(absolute(path))) {
                reached += path + slashes;
            }
        }
        m_paths = reached;
    }

    QStringList paths() const { return m_paths; }

private:
    QString absolute(const QString& path) const { return path.startsWith(u'/') ? path : m_workingFolder + u'/' + path; }

    QStringList nameIn(const QString& path, const QString& name) const {
        const bool exists = m_volume.kind(absolute(path + name)) != Volume::Kind::Missing;
        return exists ? QStringList{path + name} : QStringList();
    }

    QStringList namesIn(const QString& path, const QString& pattern) const {
        QStringList matching;
        for (const QString& name : namesInFolder(absolute(path), pattern.startsWith(u'.'))) {
            if (matchesGlob(pattern, name)) {
                matching += path + name;
            }
        }
        return matching;
    }

    /// "." and ".." are names in a folder too, and ".*" matches them.
    QStringList namesInFolder(const QString& folder, bool withDots) const {
        try {
            return (withDots ? QStringList{u"."_s, u".."_s} : QStringList()) + m_volume.list(folder);
        } catch (const FileError&) {
            return {};
        }
    }

    QString m_workingFolder;
    const Volume& m_volume;
    QStringList m_paths{QString()};
};

bool precedes(const QString& left, const QString& right) {
    return left.toUtf8() < right.toUtf8();
}

} // namespace

QStringList matchingPaths(const QString& pattern, const QString& workingFolder, const Volume& volume) {
    GlobWalk walk(workingFolder, volume);
    for (qsizetype at = 0; at < pattern.size();) {
        const bool isSlash = pattern[at] == u'/';
        qsizetype end = at;
        while (end < pattern.size() && (pattern[end] == u'/') == isSlash) {
            ++end;
        }
        const QString stretch = pattern.mid(at, end - at);
        isSlash ? walk.followSlashes(stretch) : walk.follow(stretch);
        at = end;
    }
    QStringList paths = walk.paths();
    std::sort(paths.begin(), paths.end(), precedes);
    return paths;
}

} // namespace macsim
