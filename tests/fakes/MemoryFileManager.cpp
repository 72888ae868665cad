#include "fakes/MemoryFileManager.h"

#include <cerrno>

namespace quorvane {

MemoryFileManager::MemoryFileManager(Case names)
    : m_case(names) {
    m_nodes[keyOf(QStringLiteral("/"))] = {QStringLiteral("/"), FileStatus::Kind::Folder};
}

void MemoryFileManager::addFile(const QString& path, const QByteArray& bytes) {
    const QString place = placeOf(path, Last::Itself);
    addFolders(parentOf(place));
    put(place, FileStatus::Kind::File, bytes);
}

void MemoryFileManager::addFolders(const QString& folder) {
    const QString path = placeOf(folder, Last::Followed);
    if (find(path) != nullptr) {
        return;
    }
    addFolders(parentOf(path));
    put(path, FileStatus::Kind::Folder);
}

void MemoryFileManager::addLink(const QString& path, const QString& target) {
    const QString place = placeOf(path, Last::Itself);
    addFolders(parentOf(place));
    put(place, FileStatus::Kind::Link, target.toUtf8());
}

void MemoryFileManager::setOwner(const QString& path, quint32 userId) {
    nodeAt(path).owner = userId;
}

void MemoryFileManager::makeUnwritable(const QString& path) {
    nodeAt(path).isWritable = false;
}

void MemoryFileManager::removeAsRoot(const QString& path) {
    m_nodes.erase(keyOf(placeOf(path, Last::Itself)));
}

void MemoryFileManager::failOn(Operation operation, const QString& path) {
    m_failing.insert({operation, keyOf(placeOf(path, Last::Itself))});
}

bool MemoryFileManager::exists(const QString& path) const {
    return find(touch(path, Last::Followed)) != nullptr;
}

FileStatus MemoryFileManager::status(const QString& path) const {
    const Node* node = find(touch(path, Last::Itself));
    return node != nullptr ? FileStatus{node->kind, node->owner, node->fileNumber} : FileStatus{};
}

bool MemoryFileManager::isWritable(const QString& path) const {
    const Node* node = find(touch(path, Last::Followed));
    return node != nullptr && node->isWritable;
}

QString MemoryFileManager::resolved(const QString& path) const {
    return require(touch(path, Last::Followed)).path;
}

QStringList MemoryFileManager::list(const QString& folder) const {
    ++m_listings;
    const QString path = begin(Operation::List, folder, Last::Followed);
    requireFolder(path);
    std::map<int, QString> byAge;
    for (const Node& child : childrenOf(path)) {
        byAge[child.age] = nameOf(child.path);
    }
    QStringList names;
    for (const auto& [age, name] : byAge) {
        names.append(name);
    }
    return names;
}

std::unique_ptr<FolderEntries> MemoryFileManager::entries(const QString& folder) const {
    return std::make_unique<Listing>(list(folder));
}

QByteArray MemoryFileManager::read(const QString& path) const {
    const Node& node = require(begin(Operation::Read, path, Last::Followed));
    if (node.kind == FileStatus::Kind::Folder) {
        throw FileError(path, EISDIR);
    }
    return node.bytes;
}

void MemoryFileManager::writeAtomically(const QString& path, const QByteArray& bytes) {
    const QString place = beginChange(Operation::Write, path);
    requireChangeableNames(place);
    const Node* existing = find(place);
    if (existing != nullptr && existing->kind == FileStatus::Kind::Folder) {
        throw FileError(path, EISDIR);
    }
    put(place, FileStatus::Kind::File, bytes);
}

bool MemoryFileManager::writeNew(const QString& path, const QByteArray& bytes) {
    const QString place = beginChange(Operation::Write, path);
    requireChangeableNames(place);
    if (find(place) != nullptr) {
        return false;
    }
    put(place, FileStatus::Kind::File, bytes);
    return true;
}

void MemoryFileManager::append(const QString& path, const QByteArray& bytes, Flush /*flush*/) {
    const QString place = beginChange(Operation::Write, path);
    const Node* existing = find(place);
    if (existing == nullptr) {
        requireChangeableNames(place);
        put(place, FileStatus::Kind::File, bytes);
        return;
    }
    if (existing->kind == FileStatus::Kind::Link) {
        throw FileError(path, ELOOP);
    }
    if (existing->kind == FileStatus::Kind::Folder) {
        throw FileError(path, EISDIR);
    }
    if (!existing->isWritable) {
        throw FileError(path, EACCES);
    }
    nodeAt(place).bytes.append(bytes);
}

void MemoryFileManager::move(const QString& from, const QString& to) {
    const QString source = beginChange(Operation::Move, from);
    const QString target = touch(to, Last::Itself);
    require(source);
    requireChangeableNames(source);
    requireChangeableNames(target);
    if (keyOf(source) != keyOf(target)) {
        requireReplaceable(target);
    }
    moveNodes(source, target);
}

void MemoryFileManager::remove(const QString& path) {
    const QString place = beginChange(Operation::Remove, path);
    require(place);
    requireChangeableNames(place);
    if (!childrenOf(place).empty()) {
        throw FileError(path, ENOTEMPTY);
    }
    m_nodes.erase(keyOf(place));
}

void MemoryFileManager::createFolders(const QString& folder) {
    const QString path = touch(folder, Last::Followed);
    failIfAsked(Operation::CreateFolders, path);
    if (const Node* node = find(path); node != nullptr && node->kind == FileStatus::Kind::Folder) {
        return;
    }
    QString existing = path;
    while (find(existing) == nullptr) {
        existing = parentOf(existing);
    }
    requireFolder(existing);
    countChange(path);
    if (!require(existing).isWritable) {
        throw FileError(path, EACCES);
    }
    addFolders(path);
}

std::optional<QString> MemoryFileManager::Listing::next() {
    return m_names.isEmpty() ? std::nullopt : std::optional(m_names.takeFirst());
}

QString MemoryFileManager::nameOf(const QString& path) {
    return path.mid(path.lastIndexOf(u'/') + 1);
}

QString MemoryFileManager::parentOf(const QString& path) {
    return path.lastIndexOf(u'/') <= 0 ? QStringLiteral("/") : path.left(path.lastIndexOf(u'/'));
}

QString MemoryFileManager::inFolder(const QString& folder, const QString& name) {
    return (folder == u'/' ? QString() : folder) + u'/' + name;
}

QStringList MemoryFileManager::componentsOf(const QString& path) {
    return path.split(u'/', Qt::SkipEmptyParts);
}

MemoryFileManager::Key MemoryFileManager::keyOf(const QString& path) const {
    const QString folded =
        m_case == Case::Sensitive ? path : path.normalized(QString::NormalizationForm_C).toCaseFolded();
    return {parentOf(folded), nameOf(folded)};
}

QString MemoryFileManager::placeOf(const QString& path, Last last) const {
    const qsizetype end = path.indexOf(QChar::Null);
    QStringList pending = componentsOf(end < 0 ? path : path.left(end));
    QString reached = QStringLiteral("/");
    int links = 0;
    while (!pending.isEmpty()) {
        const QString component = pending.takeFirst();
        if (component == u"..") {
            reached = parentOf(reached);
        } else if (component != u".") {
            const QString entered = inFolder(reached, component);
            const Node* node = find(entered);
            const bool isFollowed = node != nullptr && node->kind == FileStatus::Kind::Link &&
                                    (last == Last::Followed || !pending.isEmpty());
            if (isFollowed) {
                if (++links > kMaximumLinks) {
                    return inFolder(entered, component); // nothing is ever inside a link: a circle leads nowhere
                }
                const QString target = QString::fromUtf8(node->bytes);
                pending = componentsOf(target) + pending;
                reached = target.startsWith(u'/') ? QStringLiteral("/") : reached;
            } else {
                reached = node != nullptr && !pending.isEmpty() ? node->path : entered;
            }
        }
    }
    return reached;
}

const MemoryFileManager::Node* MemoryFileManager::find(const QString& path) const {
    const auto found = m_nodes.find(keyOf(path));
    return found == m_nodes.end() ? nullptr : &found->second;
}

const MemoryFileManager::Node& MemoryFileManager::require(const QString& path) const {
    const Node* node = find(path);
    if (node == nullptr) {
        throw FileError(path, ENOENT);
    }
    return *node;
}

const MemoryFileManager::Node& MemoryFileManager::requireFolder(const QString& path) const {
    const Node& node = require(path);
    if (node.kind != FileStatus::Kind::Folder) {
        throw FileError(path, ENOTDIR);
    }
    return node;
}

void MemoryFileManager::requireChangeableNames(const QString& path) const {
    if (!requireFolder(parentOf(path)).isWritable) {
        throw FileError(path, EACCES);
    }
}

void MemoryFileManager::requireReplaceable(const QString& path) const {
    const Node* node = find(path);
    if (node != nullptr && node->kind == FileStatus::Kind::Folder) {
        throw FileError(path, EISDIR);
    }
}

MemoryFileManager::Node& MemoryFileManager::nodeAt(const QString& path) {
    return m_nodes.at(keyOf(placeOf(path, Last::Itself)));
}

std::vector<MemoryFileManager::Node> MemoryFileManager::childrenOf(const QString& folder) const {
    std::vector<Node> children;
    const auto [parent, name] = keyOf(folder);
    const QString key = inFolder(parent, name);
    for (auto at = m_nodes.lower_bound({key, QString()}); at != m_nodes.end() && at->first.first == key; ++at) {
        if (!at->first.second.isEmpty()) {
            // the root stands in itself
            children.push_back(at->second);
        }
    }
    return children;
}

void MemoryFileManager::put(const QString& path, FileStatus::Kind kind, const QByteArray& bytes) {
    const auto [node, isNew] = m_nodes.try_emplace(keyOf(path), Node{path, kind, bytes, m_nextAge});
    node->second.kind = kind;
    node->second.bytes = bytes;
    node->second.fileNumber = m_nextFileNumber++;
    m_nextAge += isNew ? 1 : 0;
}

void MemoryFileManager::moveNodes(const QString& from, const QString& to) {
    const std::vector<Node> children = childrenOf(from);
    Node node = require(from);
    m_nodes.erase(keyOf(from));
    node.path = to;
    m_nodes[keyOf(to)] = node;
    for (const Node& child : children) {
        moveNodes(child.path, inFolder(to, nameOf(child.path)));
    }
}

QString MemoryFileManager::touch(const QString& path, Last last) const {
    const QString place = placeOf(path, last);
    m_touched.insert(place);
    return place;
}

void MemoryFileManager::failIfAsked(Operation operation, const QString& path) const {
    if (m_failing.contains({operation, keyOf(path)})) {
        throw FileError(path, EPERM);
    }
}

QString MemoryFileManager::begin(Operation operation, const QString& path, Last last) const {
    const QString place = touch(path, last);
    failIfAsked(operation, place);
    return place;
}

void MemoryFileManager::countChange(const QString& path) {
    m_changedPaths.append(path);
    if (m_changesUntilFailure > 0 && --m_changesUntilFailure == 0) {
        throw FileError(path, ENOSPC);
    }
}

QString MemoryFileManager::beginChange(Operation operation, const QString& path) {
    const QString place = begin(operation, path, Last::Itself);
    countChange(place);
    return place;
}

} // namespace quorvane
