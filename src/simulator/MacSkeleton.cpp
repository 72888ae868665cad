#include "simulator/MacSkeleton.h"

#include "simulator/Mac.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <array>
#include <stdexcept>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

void makeFolder(const QString& hostPath) {
    if (!QDir().mkpath(hostPath)) {
        throw std::runtime_error(hostPath.toStdString() + ": the folder can't be made");
    }
}

void makeLink(const QString& target, const QString& hostPath) {
    if (!QFile::link(target, hostPath)) {
        throw std::runtime_error(hostPath.toStdString() + ": the link can't be made");
    }
}

void makeSystemFolders(const QString& root) {
    static constexpr std::array<QStringView, 25> kFolders{u"/Applications",
                                                          u"/Library/LaunchAgents",
                                                          u"/Library/LaunchDaemons",
                                                          u"/Library/Preferences",
                                                          u"/Library/Application Support",
                                                          u"/Library/Application Support/com.apple.TCC",
                                                          u"/System/Applications",
                                                          u"/System/Library/CoreServices",
                                                          u"/System/Library/LaunchAgents",
                                                          u"/System/Library/LaunchDaemons",
                                                          u"/System/Volumes/Data",
                                                          u"/Users/Shared",
                                                          u"/Volumes",
                                                          u"/bin",
                                                          u"/dev",
                                                          u"/private/etc",
                                                          u"/private/tmp",
                                                          u"/private/var/db/simulator",
                                                          u"/private/var/folders",
                                                          u"/private/var/root/Library/Preferences/ByHost",
                                                          u"/sbin",
                                                          u"/usr/bin",
                                                          u"/usr/libexec",
                                                          u"/usr/local/bin",
                                                          u"/usr/sbin"};
    for (const QStringView folder : kFolders) {
        makeFolder(root + folder.toString());
    }
    for (const QString& name : {u"etc"_s, u"tmp"_s, u"var"_s}) {
        makeLink(u"private/"_s + name, root + u'/' + name);
    }
    QFile null(root + u"/dev/null"_s);
    if (!null.open(QIODevice::WriteOnly)) {
        throw std::runtime_error(null.fileName().toStdString() + ": the file can't be made");
    }
}

void makeUserFolders(const QString& root, const Machine& machine) {
    static constexpr std::array<QStringView, 10> kHomeFolders{u"/Desktop",        u"/Documents",
                                                              u"/Downloads",      u"/Library/Application Support",
                                                              u"/Library/Caches", u"/Library/LaunchAgents",
                                                              u"/Library/Logs",   u"/Library/Preferences/ByHost",
                                                              u"/Music",          u"/.Trash"};
    for (const QStringView folder : kHomeFolders) {
        makeFolder(root + u"/Users/"_s + machine.userName + folder.toString());
    }
    makeFolder(root + userTemporaryFolder(machine) + u"/T"_s);
    makeFolder(root + userTemporaryFolder(machine) + u"/C"_s);
}

} // namespace

void createMacSkeleton(const QString& hostFolder, const Json& machine, const QStringList& commands,
                       const QString& program) {
    const Machine facts = machineFromJson(machine);
    if (facts.userName.isEmpty() || facts.userName.contains(u'/') || facts.userName.startsWith(u'.')) {
        throw std::runtime_error("a user's name is no path");
    }
    makeFolder(hostFolder);
    const QString root = QDir(hostFolder).canonicalPath();
    if (!QDir(root).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)) {
        throw std::runtime_error(hostFolder.toStdString() + ": the folder isn't empty");
    }
    makeSystemFolders(root);
    makeUserFolders(root, facts);
    for (const QString& command : commands) {
        makeFolder(QFileInfo(root + command).path());
        makeLink(program, root + command);
    }
    StateStore(root + kStateFolder.toString()).update("machine", [&machine](Json& state) { state = machine; });
}

void relinkCommands(const QString& hostFolder, const QString& program) {
    for (const QString& folder : {u"/bin"_s, u"/sbin"_s, u"/usr/bin"_s, u"/usr/libexec"_s, u"/usr/sbin"_s}) {
        const QFileInfoList commands = QDir(hostFolder + folder).entryInfoList(QDir::Files | QDir::System);
        for (const QFileInfo& command : commands) {
            if (command.isSymLink() && command.symLinkTarget() != program) {
                QFile::remove(command.filePath());
                makeLink(program, command.filePath());
            }
        }
    }
}

} // namespace macsim
