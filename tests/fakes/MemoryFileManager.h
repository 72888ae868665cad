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

    explicit MemoryFileManager(Case names = Case::Sensitive);

    /// Puts a file there, with its folders.
    void addFile(const QString& path, const QByteArray& bytes);
    void addFolders(const QString& folder);
    /// Puts a link there, with its folders. @param target  may be relative and may be missing
    void addLink(const QString& path, const QString& target);
    /// Of what stands at the path itself, and of nothing inside it.
    void setOwner(const QString& path, quint32 userId);
    /// The user may not change the bytes of the file, or the names in the folder.
    void makeUnwritable(const QString& path);

    /// Takes away a file or link, whatever the rights.
    void removeAsRoot(const QString& path);

    /// Every operation of the kind on the path fails from now on.
    void failOn(Operation operation, const QString& path);
    /// The n-th operation that changes something fails, counted from now; 1 is the next one.
    void failAtChange(int number) { m_changesUntilFailure = number; }
    int changes() const { return static_cast<int>(m_changedPaths.size()); }
    /// Of each change, in order, also of one that failed.
    const QStringList& changedPaths() const { return m_changedPaths; }
    /// How often a folder was listed.
    int listings() const { return m_listings; }
    /// Every path that was read, written, moved, removed, listed or asked for, resolved.
    QSet<QString> touchedPaths() const { return m_touched; }

    bool exists(const QString& path) const override;
    FileStatus status(const QString& path) const override;
    bool isWritable(const QString& path) const override;
    QString resolved(const QString& path) const override;
    QStringList list(const QString& folder) const override;
    std::unique_ptr<FolderEntries> entries(const QString& folder) const override;
    QByteArray read(const QString& path) const override;
    void writeAtomically(const QString& path, const QByteArray& bytes) override;
    bool writeNew(const QString& path, const QByteArray& bytes) override;
    void append(const QString& path, const QByteArray& bytes, Flush flush) override;
    void move(const QString& from, const QString& to) override;
    void remove(const QString& path) override;
    void createFolders(const QString& folder) override;

private:
    struct Node {
        QString path; // in the spelling it was made with
        FileStatus::Kind kind = FileStatus::Kind::Missing;
        QByteArray bytes = {}; // of a file; of a link where it leads
        int age = 0;
        quint32 owner = kUser;
        bool isWritable = true;
        quint64 fileNumber = 0;
    };
    using Key = std::pair<QString, QString>; // folder and name, so that what is in a folder lies together
    enum class Last { Itself, Followed };    // what a path means whose last component is a link

    static constexpr int kMaximumLinks = 32;

    class Listing final : public FolderEntries {
    public:
        explicit Listing(const QStringList& names)
            : m_names(names) {}
        std::optional<QString> next() override;

    private:
        QStringList m_names;
    };

    static QString nameOf(const QString& path);
    static QString parentOf(const QString& path);
    static QString inFolder(const QString& folder, const QString& name);
    static QStringList componentsOf(const QString& path);
    Key keyOf(const QString& path) const;

    // Where a path leads, whether or not something stands there: folders in the spelling they were made with, the last
    // name as it was given.
    QString placeOf(const QString& path, Last last) const;
    const Node* find(const QString& path) const;
    const Node& require(const QString& path) const;
    const Node& requireFolder(const QString& path) const;
    void requireChangeableNames(const QString& path) const;
    void requireReplaceable(const QString& path) const;
    Node& nodeAt(const QString& path);
    std::vector<Node> childrenOf(const QString& folder) const;
    void put(const QString& path, FileStatus::Kind kind, const QByteArray& bytes = {});
    void moveNodes(const QString& from, const QString& to);
    QString touch(const QString& path, Last last) const;
    void failIfAsked(Operation operation, const QString& path) const;
    QString begin(Operation operation, const QString& path, Last last) const;
    void countChange(const QString& path);
    QString beginChange(Operation operation, const QString& path);

    Case m_case;
    std::map<Key, Node> m_nodes;
    std::set<std::pair<Operation, Key>> m_failing;
    int m_nextAge = 1;
    quint64 m_nextFileNumber = 1;
    QStringList m_changedPaths;
    int m_changesUntilFailure = 0;
    mutable int m_listings = 0;
    mutable QSet<QString> m_touched;
};

} // namespace quorvane
