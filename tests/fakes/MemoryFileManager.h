#pragma once

#include "platform/FileManager.h"

#include <QDir>
#include <QSet>

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <utility>

namespace quorvane {

/// A volume in memory. Paths are resolved as the system resolves them: "." and ".." count, and a path ends at
/// a null character. A folder lists its entries in the order in which they were made.
class MemoryFileManager : public FileManager {
public:
    enum class Case {
        Sensitive,
        Ignored, ///< a name keeps the spelling it was made with, as on a Mac's usual volume
    };
    enum class Operation { List, Read, Write, Move, Remove, CreateFolders };

    explicit MemoryFileManager(Case names = Case::Sensitive)
        : m_case(names) {
        put(QStringLiteral("/"), std::nullopt);
    }

    /// Puts a file there, with its folders.
    void addFile(const QString& path, const QByteArray& bytes) {
        addFolders(parentOf(resolved(path)));
        put(resolved(path), bytes);
    }
    void addFolders(const QString& folder) {
        const QString path = resolved(folder);
        if (find(path) != nullptr)
            return;
        addFolders(parentOf(path));
        put(path, std::nullopt);
    }

    /// Every operation of the kind on the path fails from now on.
    void failOn(Operation operation, const QString& path) { m_failing.insert({operation, keyOf(resolved(path))}); }
    /// The n-th operation that changes something fails, counted from now; 1 is the next one.
    void failAtChange(int number) { m_changesUntilFailure = number; }
    int changes() const { return m_changes; }
    /// Every path that was read, written, moved, removed, listed or asked for, resolved.
    QSet<QString> touchedPaths() const { return m_touched; }

    bool exists(const QString& path) const override { return find(touch(path)) != nullptr; }

    QStringList list(const QString& folder) const override {
        const QString path = begin(Operation::List, folder);
        if (require(path).bytes)
            throw FileError(path, QStringLiteral("Not a directory"));
        std::map<int, QString> byAge;
        for (const auto& [key, node] : m_nodes) {
            if (key != keyOf(path) && keyOf(parentOf(node.path)) == keyOf(path))
                byAge[node.age] = node.path.mid(node.path.lastIndexOf(u'/') + 1);
        }
        QStringList names;
        for (const auto& [age, name] : byAge)
            names.append(name);
        return names;
    }

    QByteArray read(const QString& path) const override {
        const Node& node = require(begin(Operation::Read, path));
        if (!node.bytes)
            throw FileError(path, QStringLiteral("Is a directory"));
        return *node.bytes;
    }

    void writeAtomically(const QString& path, const QByteArray& bytes) override {
        const QString place = beginChange(Operation::Write, path);
        require(parentOf(place));
        if (const Node* existing = find(place); existing != nullptr && !existing->bytes)
            throw FileError(path, QStringLiteral("Is a directory"));
        put(place, bytes);
    }

    void move(const QString& from, const QString& to) override {
        const QString source = beginChange(Operation::Move, from);
        const QString target = touch(to);
        Node node = require(source);
        require(parentOf(target));
        m_nodes.erase(keyOf(source));
        m_nodes.erase(keyOf(target));
        node.path = target;
        m_nodes[keyOf(target)] = node;
    }

    void remove(const QString& path) override {
        const QString place = beginChange(Operation::Remove, path);
        require(place);
        const bool isParent = std::any_of(m_nodes.begin(), m_nodes.end(), [&](const auto& entry) {
            return entry.first != keyOf(place) && keyOf(parentOf(entry.second.path)) == keyOf(place);
        });
        if (isParent)
            throw FileError(path, QStringLiteral("Directory not empty"));
        m_nodes.erase(keyOf(place));
    }

    void createFolders(const QString& folder) override {
        const QString path = touch(folder);
        failIfAsked(Operation::CreateFolders, path);
        if (find(path) != nullptr)
            return;
        countChange(path);
        addFolders(path);
    }

private:
    struct Node {
        QString path;                    // in the spelling it was made with
        std::optional<QByteArray> bytes; // none for a folder
        int age = 0;
    };

    static QString resolved(const QString& path) {
        const qsizetype end = path.indexOf(QChar::Null);
        return QDir::cleanPath(end < 0 ? path : path.left(end));
    }
    static QString parentOf(const QString& path) {
        return path.lastIndexOf(u'/') <= 0 ? QStringLiteral("/") : path.left(path.lastIndexOf(u'/'));
    }
    QString keyOf(const QString& path) const {
        return m_case == Case::Sensitive ? path : path.normalized(QString::NormalizationForm_C).toCaseFolded();
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
    void put(const QString& path, const std::optional<QByteArray>& bytes) {
        const auto [node, isNew] = m_nodes.try_emplace(keyOf(path), Node{path, {}, m_nextAge});
        node->second.bytes = bytes;
        m_nextAge += isNew ? 1 : 0;
    }

    QString touch(const QString& path) const {
        m_touched.insert(resolved(path));
        return resolved(path);
    }
    void failIfAsked(Operation operation, const QString& path) const {
        if (m_failing.contains({operation, keyOf(path)}))
            throw FileError(path, QStringLiteral("Operation not permitted"));
    }
    QString begin(Operation operation, const QString& path) const {
        const QString place = touch(path);
        failIfAsked(operation, place);
        return place;
    }
    void countChange(const QString& path) {
        ++m_changes;
        if (m_changesUntilFailure > 0 && --m_changesUntilFailure == 0)
            throw FileError(path, QStringLiteral("No space left on device"));
    }
    QString beginChange(Operation operation, const QString& path) {
        const QString place = begin(operation, path);
        countChange(place);
        return place;
    }

    Case m_case;
    std::map<QString, Node> m_nodes;
    std::set<std::pair<Operation, QString>> m_failing;
    int m_nextAge = 1;
    int m_changes = 0;
    int m_changesUntilFailure = 0;
    mutable QSet<QString> m_touched;
};

} // namespace quorvane
