#pragma once

#include "fakes/MemoryFileManager.h"
#include "fakes/SimulatedMacFolder.h"
#include "platform/portable/DiskFileManager.h"
#include "platform/simulated/SimulatedFileManager.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <unistd.h>

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

class DiskFileSubject final : public FileSubject {
public:
    FileManager& files() override { return m_files; }
    QString folder() const override { return m_folder.path(); }
    ~DiskFileSubject() override {
        for (const QString& folder : m_locked) {
            QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        }
    }
    void link(const QString& path, const QString& target) override { QFile::link(target, path); }
    void addEmptyFile(const QString& path) override { addEmptyHostFile(path); }
    bool lock(const QString& folder) override {
        m_locked.append(folder);
        return ::geteuid() != 0 && QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner);
    }
    QString unreadableFile() override {
        const QString file = folder() + u"/closed"_s;
        addEmptyFile(file);
        return ::geteuid() != 0 && QFile::setPermissions(file, QFile::WriteOwner) ? file : QString();
    }
    quint32 userId() const override { return ::geteuid(); }

private:
    QTemporaryDir m_folder;
    QStringList m_locked;
    DiskFileManager m_files;
};

class SimulatedFileSubject final : public FileSubject {
public:
    FileManager& files() override { return m_files; }
    QString folder() const override { return u"/Users/alex/Documents"_s; }
    void link(const QString& path, const QString& target) override {
        m_mac.mac.volume(macsim::Actor::User).createLink(path, target);
    }
    void addEmptyFile(const QString& path) override { addEmptyHostFile(m_mac.hostFolder() + path); }
    bool lock(const QString& folder) override {
        m_mac.mac.volume(macsim::Actor::Root).setOwner(folder, macsim::Actor::Root);
        return true;
    }
    QString unreadableFile() override {
        const QString file = u"/Library/Preferences/com.apple.TimeMachine.plist"_s;
        addEmptyFile(file);
        m_mac.mac.state().update("permissions", [](macsim::Json& state) { state["fullDiskAccess"] = false; });
        return file;
    }
    quint32 userId() const override { return 501; }

private:
    macsim::SimulatedMacFolder m_mac;
    SimulatedFileManager m_files{m_mac.mac.volume(macsim::Actor::User)};
};

class MemoryFileSubject final : public FileSubject {
public:
    MemoryFileSubject() { m_files.addFolders(folder()); }
    FileManager& files() override { return m_files; }
    QString folder() const override { return u"/Users/alex/Documents"_s; }
    void link(const QString& path, const QString& target) override { m_files.addLink(path, target); }
    void addEmptyFile(const QString& path) override { m_files.addFile(path, {}); }
    bool lock(const QString& folder) override {
        m_files.makeUnwritable(folder);
        return true;
    }
    QString unreadableFile() override {
        const QString file = folder() + u"/closed"_s;
        m_files.addFile(file, {});
        m_files.failOn(MemoryFileManager::Operation::Read, file);
        return file;
    }
    quint32 userId() const override { return MemoryFileManager::kUser; }

private:
    MemoryFileManager m_files;
};

/// A test of every file manager.
class OnEveryFileManager : public ::testing::TestWithParam<std::unique_ptr<FileSubject> (*)()> {
protected:
    QString path(const QString& name) const { return subject->folder() + u'/' + name; }
    QStringList sortedNames() {
        QStringList names = files.list(subject->folder());
        names.sort();
        return names;
    }

    std::unique_ptr<FileSubject> subject = GetParam()();
    FileManager& files = subject->files();
};

template <typename Each>
std::unique_ptr<FileSubject> makeFileSubject() {
    return std::make_unique<Each>();
}

inline const auto kEveryFileManager = ::testing::Values(
    &makeFileSubject<DiskFileSubject>, &makeFileSubject<SimulatedFileSubject>, &makeFileSubject<MemoryFileSubject>);

inline std::string nameOfFileManager(const ::testing::TestParamInfo<std::unique_ptr<FileSubject> (*)()>& info) {
    static constexpr const char* kNames[] = {"Disk", "Simulated", "Memory"};
    return kNames[info.index];
}

} // namespace quorvane
