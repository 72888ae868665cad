#include "structure/SourceTree.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>
#include <stdexcept>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kList = u"CMakeLists.txt"_s;

QString folderOf(const QString& path) {
    return path.left(std::max<qsizetype>(path.lastIndexOf(u'/'), 0));
}

QString nodeOf(const QString& path) {
    return path.endsWith(u"/main.cpp"_s) ? path : folderOf(path);
}

bool isIn(const QString& path, const QString& folder) {
    return path.startsWith(folder + u'/');
}

bool isInOneOf(const QString& path, const QStringList& folders) {
    return std::any_of(folders.begin(), folders.end(), [&path](const QString& folder) { return isIn(path, folder); });
}

QString withoutExtension(const QString& path) {
    return path.left(path.lastIndexOf(u'.'));
}

QStringList includedHeaders(const QString& text) {
    static const QRegularExpression include(u"^\\s*#\\s*include\\s*\"([^\"]+)\""_s,
                                            QRegularExpression::MultilineOption);
    QStringList headers;
    for (auto match = include.globalMatch(text); match.hasNext();) {
        headers.append(match.next().captured(1));
    }
    return headers;
}

QString contents(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error(path.toStdString() + ": " + file.errorString().toStdString());
    }
    return QString::fromUtf8(file.readAll());
}

} // namespace

QString SourceTree::Include::text() const {
    return file + u" includes "_s + header;
}

// ---- What there is

SourceTree SourceTree::read(const QString& folder) {
    SourceTree tree;
    const QStringList names{u"*.h"_s, u"*.cpp"_s, u"*.mm"_s, kList};
    QDirIterator files(folder, names, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        tree.add(path.mid(folder.size() + 1), contents(path));
    }
    return tree;
}

void SourceTree::add(const QString& path, const QString& text) {
    if (path.endsWith(kList)) {
        addCMakeList(folderOf(path), text);
        return;
    }
    const QStringList headers = includedHeaders(text);
    m_headers.insert(path, headers);
    for (const QString& header : headers) {
        if (nodeOf(path) != nodeOf(header)) {
            m_edges[nodeOf(path)].insert(nodeOf(header), {path, header});
        }
    }
}

void SourceTree::addCMakeList(const QString& folder, QString text) {
    static const QRegularExpression comment(u"#[^\\n]*"_s);
    static const QRegularExpression call(u"(\\w+)\\s*\\(([^)]*)\\)"_s);
    static const QRegularExpression blanks(u"\\s+"_s);
    text.remove(comment);
    for (auto match = call.globalMatch(text); match.hasNext();) {
        const QRegularExpressionMatch found = match.next();
        addCMakeCall(folder, found.captured(1), found.captured(2).split(blanks, Qt::SkipEmptyParts));
    }
}

void SourceTree::addCMakeCall(const QString& folder, const QString& command, QStringList words) {
    static const QStringList known{u"quorvane_library"_s, u"add_executable"_s, u"target_sources"_s,
                                   u"target_link_libraries"_s};
    if (!known.contains(command) || words.isEmpty()) {
        return;
    }
    const QString name = words.takeFirst();
    Target& target = m_targets[name];
    const bool isLinkCall = command == known.last();
    bool isLinks = isLinkCall;
    for (const QString& word : std::as_const(words)) {
        if (word == word.toUpper()) {
            isLinks = isLinkCall || word.endsWith(u"LINKS"_s);
        } else if (isLinks) {
            target.links.append(word);
        } else {
            const QString file = folder.isEmpty() ? word : folder + u'/' + word;
            target.files.append(file);
            m_listings[file].append(name);
        }
    }
}

QList<SourceTree::Include> SourceTree::includes() const {
    QList<Include> all;
    for (auto file = m_headers.cbegin(); file != m_headers.cend(); ++file) {
        for (const QString& header : file.value()) {
            all.append({file.key(), header});
        }
    }
    return all;
}

// ---- Targets

QStringList SourceTree::targetsOf(const QString& file) const {
    for (const QString& listed : {file, withoutExtension(file) + u".cpp"_s, withoutExtension(file) + u".mm"_s}) {
        if (m_listings.contains(listed)) {
            return m_listings.value(listed);
        }
    }
    QStringList ofFolder;
    for (auto listing = m_listings.cbegin(); listing != m_listings.cend(); ++listing) {
        if (folderOf(listing.key()) == folderOf(file)) {
            ofFolder.append(listing.value());
        }
    }
    ofFolder.removeDuplicates();
    const QString lowest = file.endsWith(u".h"_s) ? lowestOf(ofFolder) : QString();
    return lowest.isEmpty() ? QStringList() : QStringList(lowest);
}

QString SourceTree::lowestOf(const QStringList& targets) const {
    const auto isLowest = [&](const QString& candidate) {
        return std::all_of(targets.begin(), targets.end(),
                           [&](const QString& target) { return linkedBy(target).contains(candidate); });
    };
    const auto lowest = std::find_if(targets.begin(), targets.end(), isLowest);
    return lowest == targets.end() ? QString() : *lowest;
}

QSet<QString> SourceTree::linkedBy(const QString& target) const {
    QSet<QString> linked;
    QStringList waiting{target};
    while (!waiting.isEmpty()) {
        const QString next = waiting.takeLast();
        if (m_targets.contains(next) && !linked.contains(next)) {
            linked.insert(next);
            waiting.append(m_targets.value(next).links);
        }
    }
    return linked;
}

// ---- Findings

QStringList SourceTree::homelessFiles() const {
    QStringList findings;
    for (const QString& file : m_headers.keys()) {
        const QStringList targets = targetsOf(file);
        if (targets.size() != 1) {
            findings.append(file + (targets.isEmpty() ? u" is in no target"_s
                                                      : u" is in several targets: "_s + targets.join(u", "_s)));
        }
    }
    for (const Include& include : includes()) {
        if (!m_headers.contains(include.header)) {
            findings.append(include.text() + u", which isn't there"_s);
        }
    }
    return findings;
}

QStringList SourceTree::includesOfWhatIsNotLinked() const {
    QStringList findings;
    for (const Include& include : includes()) {
        const QString own = targetsOf(include.file).value(0);
        const QString other = targetsOf(include.header).value(0);
        if (!own.isEmpty() && !other.isEmpty() && !linkedBy(own).contains(other)) {
            findings.append(include.text() + u": %1 doesn't link %2"_s.arg(own, other));
        }
    }
    return findings;
}

QStringList SourceTree::includesOf(const QString& folder, const QStringList& permittedFolders) const {
    const QStringList permitted = permittedFolders + QStringList(folder);
    QStringList findings;
    for (const Include& include : includes()) {
        if (isIn(include.header, folder) && !isInOneOf(include.file, permitted)) {
            findings.append(include.text());
        }
    }
    return findings;
}

QStringList SourceTree::includesOutOf(const QString& folder, const QStringList& permittedFolders) const {
    const QStringList permitted = permittedFolders + QStringList(folder);
    QStringList findings;
    for (const Include& include : includes()) {
        if (isIn(include.file, folder) && !isInOneOf(include.header, permitted)) {
            findings.append(include.text());
        }
    }
    return findings;
}

QStringList SourceTree::folderCycles() const {
    QStringList findings;
    for (const QString& node : m_edges.keys()) {
        const QString cycle = shortestCycle(node);
        if (!cycle.isEmpty()) {
            findings.append(cycle);
        }
    }
    return findings;
}

/// Back to where it begins, with the include that makes each step; empty where none leads back.
QString SourceTree::shortestCycle(const QString& node) const {
    QMap<QString, QStringList> ways{{node, {}}}; // to each folder that has been reached
    QStringList waiting{node};
    while (!waiting.isEmpty()) {
        const QString from = waiting.takeFirst();
        const QMap<QString, Include> edges = m_edges.value(from);
        for (auto edge = edges.cbegin(); edge != edges.cend(); ++edge) {
            const QStringList way = ways.value(from) + QStringList(edge.value().text());
            if (edge.key() == node) {
                return u"%1: %2"_s.arg(node, way.join(u"; "_s));
            }
            if (!ways.contains(edge.key())) {
                ways.insert(edge.key(), way);
                waiting.append(edge.key());
            }
        }
    }
    return {};
}

} // namespace quorvane
