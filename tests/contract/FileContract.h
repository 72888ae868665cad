#pragma once

#include "contract/Subject.h"
#include "platform/FileManager.h"

#include <QFile>
#include <QString>
#include <QStringList>

namespace quorvane {

using namespace Qt::StringLiterals;

/// A file manager and a folder that it may fill.
class FileSubject {
public:
    virtual ~FileSubject() = default;
    virtual FileManager& files() = 0;
    virtual QString folder() const = 0;
    /// Makes a link, or an empty file, by other means.
    virtual void link(const QString& path, const QString& target) = 0;
    virtual void addEmptyFile(const QString& path) = 0;
    /// Takes the right to change the names in a folder; false where the tests run as root, who has every right.
    virtual bool lock(const QString& folder) = 0;
    /// A file that is there and that the program may not read; empty where the tests run as root.
    virtual QString unreadableFile() = 0;
    virtual quint32 userId() const = 0;
};

/// Quicker than a write that has to survive a power failure.
inline void addEmptyHostFile(const QString& path) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::NewOnly));
}

/// A test of every file manager.
class OnEveryFileManager : public ContractTest<FileSubject> {
protected:
    QString path(const QString& name) const { return subject->folder() + u'/' + name; }
    QStringList sortedNames() {
        QStringList names = files.list(subject->folder());
        names.sort();
        return names;
    }

    FileManager& files = subject->files();
};

class FileManagerContract : public OnEveryFileManager {};
class TreeRemovalContract : public OnEveryFileManager {};

} // namespace quorvane
