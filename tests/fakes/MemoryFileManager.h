#pragma once

#include "platform/FileManager.h"

#include <QSet>

#include <map>
#include <set>
#include <utility>
#include <vector>

namespace quorvane {

/// A volume in memory. Paths are resolved as the system resolves them: "." and ".." count, links are followed, and a
/// path ends at a null character. A folder lists its entries in the order in which they were made.
class MemoryFileManager : public FileManager {
public:
    enum class Case {
        Sensitive,
        Ignored, ///< a name keeps the spelling it was made with, as on a Mac's usual volume
    };
    enum class Operation { List, Read, Write, Move, Remove, CreateFolders };

    static constexpr quint32 kUser = 501; ///< owns everything that is given no other owner

    explicit MemoryFileManager(Case names = Case::Sensitive)
        : m_case(names) {
        m_nodes[keyOf(QStringLiteral("/"))] = {QStringLiteral("/"), FileStatus::Kind::Folder};
    }

    /// Puts a file there, with its folders.
    void addFile(const QString& path, const QByteArray& bytes) {
        const QString place = placeOf(path, Last::Itself);
        addFolders(parentOf(place));
        put(place, FileStatus::Kind::File, bytes);
    }
    void addFolders(const QString& folder) {
        const QString path = placeOf(folder, Last::Followed);
        if (find(path) != nullptr)
            return;
        addFolders(parentOf(path));
        put(path, FileStatus::Kind::Folder);
    }
    /// Puts a link there, with its folders. @param target  may be relative and may be missing
    void addLink(const QString& path, const QString& target) {
        const QString place = placeOf(path, Last::Itself);
        addFolders(parentOf(place));
        put(place, FileStatus::Kind::Link, target.toUtf8());
    }
    /// Of what stands at the path itself, and of nothing inside it.
    void setOwner(const QString& path, quint32 userId) { nodeAt(path).owner = userId; }
    /// The user may not change the bytes of the file, or the names in the folder.
    void makeUnwritable(const QString& path) { nodeAt(path).isWritable = false; }

    /// Takes away a file or link, whatever the rights.
    void removeAsRoot(const QString& path) { m_nodes.erase(keyOf(placeOf(path, Last::Itself))); }

    /// Every operation of the kind on the path fails from now on.
    void failOn(Operation operation, const QString& path) {
        m_failing.insert({operation, keyOf(placeOf(path, Last::Itself))});
    }
    /// The n-th operation that changes something fails, counted from now; 1 is the next one.
    void failAtChange(int number) { m_changesUntilFailure = number; }
    int changes() const { return m_changes; }
    /// Every path that was read, written, moved, removed, listed or asked for, resolved.
    QSet<QString> touchedPaths() const { return m_touched; }

    bool exists(const QString& path) const override { return find(touch(path, Last::Followed)) != nullptr; }

    FileStatus status(const QString& path) const override {
        const Node* node = find(touch(path, Last::Itself));
        return node != nullptr ? FileStatus{node->kind, node->owner} : FileStatus{};
    }

    bool isWritable(const QString& path) const override {
        const Node* node = find(touch(path, Last::Followed));
        return node != nullptr && node->isWritable;
    }

    QString resolved(const QString& path) const override { return require(touch(path, Last::Followed)).path; }

    QStringList list(const QString& folder) const override {
        const QString path = begin(Operation::List, folder, Last::Followed);
        requireFolder(path);
        std::map<int, QString> byAge;
        for (const Node& child : childrenOf(path))
            byAge[child.age] = nameOf(child.path);
        QStringList names;
        for (const auto& [age, name] : byAge)
            names.append(name);
        return names;
    }

    std::unique_ptr<FolderEntries> entries(const QString& folder) const override {
        return std::make_unique<Listing>(list(folder));
    }

    QByteArray read(const QString& path) const override {
        const Node& node = require(begin(Operation::Read, path, Last::Followed));
        if (node.kind == FileStatus::Kind::Folder)
            throw FileError(path, QStringLiteral("Is a directory"));
        return node.bytes;
    }

    void writeAtomically(const QString& path, const QByteArray& bytes) override {
        const QString place = beginChange(Operation::Write, path);
        requireChangeableNames(place);
        const Node* existing = find(place);
        if (existing != nullptr && existing->kind == FileStatus::Kind::Folder)
            throw FileError(path, QStringLiteral("Is a directory"));
        put(place, FileStatus::Kind::File, bytes);
    }

    void move(const QString& from, const QString& to) override {
        const QString source = beginChange(Operation::Move, from);
        const QString target = touch(to, Last::Itself);
        require(source);
        requireChangeableNames(source);
        requireChangeableNames(target);
        if (keyOf(source) != keyOf(target))
            requireReplaceable(target);
        moveNodes(source, target);
    }

    void remove(const QString& path) override {
        const QString place = beginChange(Operation::Remove, path);
        require(place);
        requireChangeableNames(place);
        if (!childrenOf(place).empty())
            throw FileError(path, QStringLiteral("Directory not empty"));
        m_nodes.erase(keyOf(place));
    }

    void createFolders(const QString& folder) override {
        const QString path = touch(folder, Last::Followed);
        failIfAsked(Operation::CreateFolders, path);
        if (const Node* node = find(path); node != nullptr && node->kind == FileStatus::Kind::Folder)
            return;
        QString existing = path;
        while (find(existing) == nullptr)
            existing = parentOf(existing);
        requireFolder(existing);
        countChange(path);
        if (!require(existing).isWritable)
            throw FileError(path, QStringLiteral("Permission denied"));
        addFolders(path);
    }

private:
    struct Node {
        QString path; // in the spelling it was made with
        FileStatus::Kind kind = FileStatus::Kind::Missing;
        QByteArray bytes = {}; // of a file; of a link where it leads
        int age = 0;
        quint32 owner = kUser;
        bool isWritable = true;
    };
    using Key = std::pair<QString, QString>; // folder and name, so that what is in a folder lies together
    enum class Last { Itself, Followed };    // what a path means whose last component is a link

    static constexpr int kMaximumLinks = 32;

    class Listing final : public FolderEntries {
    public:
        explicit Listing(const QStringList& names)
            : m_names(names) {}
        std::optional<QString> next() override {
            return m_names.isEmpty() ? std::nullopt : std::optional(m_names.takeFirst());
        }

    private:
        QStringList m_names;
    };

    static QString nameOf(const QString& path) { return path.mid(path.lastIndexOf(u'/') + 1); }
    static QString parentOf(const QString& path) {
        return path.lastIndexOf(u'/') <= 0 ? QStringLiteral("/") : path.left(path.lastIndexOf(u'/'));
    }
    static QString inFolder(const QString& folder, const QString& name) {
        return (folder == u'/' ? QString() : folder) + u'/' + name;
    }
    static QStringList componentsOf(const QString& path) { return path.split(u'/', Qt::SkipEmptyParts); }

    Key keyOf(const QString& path) const {
        const QString folded =
            m_case == Case::Sensitive ? path : path.normalized(QString::NormalizationForm_C).toCaseFolded();
        return {parentOf(folded), nameOf(folded)};
    }

    // Where a path leads, whether or not something stands there: folders in the spelling they were made with, the last
    // name as it was given.
    QString placeOf(const QString& path, Last last) const {
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
                    if (++links > kMaximumLinks)
                        return inFolder(entered, component); // nothing is ever inside a link: a circle leads nowhere
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

    const Node* find(const QString& path) const {
        const auto found = m_nodes.find(keyOf(path));
        return found == m_nodes.end() ? nullptr : &found->second;
    }
    const Node& require(const QString& path) const {
        const Node* node = find(path);
        if (node == nullptr)
            throw FileError(path, QStringLiteral("No such file or directory"));
        return *node;
    }
    const Node& requireFolder(const QString& path) const {
        const Node& node = require(path);
        if (node.kind != FileStatus::Kind::Folder)
            throw FileError(path, QStringLiteral("Not a directory"));
        return node;
    }
    void requireChangeableNames(const QString& path) const {
        if (!requireFolder(parentOf(path)).isWritable)
            throw FileError(path, QStringLiteral("Permission denied"));
    }
    void requireReplaceable(const QString& path) const {
        const Node* node = find(path);
        if (node != nullptr && node->kind == FileStatus::Kind::Folder)
            throw FileError(path, QStringLiteral("Is a directory"));
    }
    Node& nodeAt(const QString& path) { return m_nodes.at(keyOf(placeOf(path, Last::Itself))); }

    std::vector<Node> childrenOf(const QString& folder) const {
        std::vector<Node> children;
        const auto [parent, name] = keyOf(folder);
        const QString key = inFolder(parent, name);
        for (auto at = m_nodes.lower_bound({key, QString()}); at != m_nodes.end() && at->first.first == key; ++at) {
            if (!at->first.second.isEmpty()) // the root stands in itself
                children.push_back(at->second);
        }
        return children;
    }

    void put(const QString& path, FileStatus::Kind kind, const QByteArray& bytes = {}) {
        const auto [node, isNew] = m_nodes.try_emplace(keyOf(path), Node{path, kind, bytes, m_nextAge});
        node->second.kind = kind;
        node->second.bytes = bytes;
        m_nextAge += isNew ? 1 : 0;
    }
    void moveNodes(const QString& from, const QString& to) {
        const std::vector<Node> children = childrenOf(from);
        Node node = require(from);
        m_nodes.erase(keyOf(from));
        node.path = to;
        m_nodes[keyOf(to)] = node;
        for (const Node& child : children)
            moveNodes(child.path, inFolder(to, nameOf(child.path)));
    }

    QString touch(const QString& path, Last last) const {
        const QString place = placeOf(path, last);
        m_touched.insert(place);
        return place;
    }
    void failIfAsked(Operation operation, const QString& path) const {
        if (m_failing.contains({operation, keyOf(path)}))
            throw FileError(path, QStringLiteral("Operation not permitted"));
    }
    QString begin(Operation operation, const QString& path, Last last) const {
        const QString place = touch(path, last);
        failIfAsked(operation, place);
        return place;
    }
    void countChange(const QString& path) {
        ++m_changes;
        if (m_changesUntilFailure > 0 && --m_changesUntilFailure == 0)
            throw FileError(path, QStringLiteral("No space left on device"));
    }
    QString beginChange(Operation operation, const QString& path) {
        const QString place = begin(operation, path, Last::Itself);
        countChange(place);
        return place;
    }

    Case m_case;
    std::map<Key, Node> m_nodes;
    std::set<std::pair<Operation, Key>> m_failing;
    int m_nextAge = 1;
    int m_changes = 0;
    int m_changesUntilFailure = 0;
    mutable QSet<QString> m_touched;
};

} // namespace quorvane
