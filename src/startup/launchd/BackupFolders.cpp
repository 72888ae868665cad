#include "startup/launchd/BackupFolders.h"

#include "core/FlowEnvironment.h"
#include "platform/FileManager.h"
#include "platform/Host.h"
#include "platform/Machine.h"
#include "startup/launchd/LaunchFolders.h"

namespace quorvane {

using namespace Qt::StringLiterals;

void createBackupFolder(FlowEnvironment& environment) {
    const Host& host = environment.host();
    try {
        host.files.createFolders(backupFolder(host.machine.homeFolder()));
    } catch (const FileError& error) {
        environment.log(u"  [WARNING] Could not create the backup folder: "_s + error.message());
    }
}

bool requireRealFolders(FlowEnvironment& environment, const QStringList& folders) {
    FileManager& files = environment.host().files;
    for (const QString& folder : folders) {
        try {
            if (files.status(folder).kind == FileStatus::Kind::Missing) {
                files.createFolders(folder);
            }
        } catch (const FileError& error) {
            environment.log(u"  [WARNING] Could not create "_s + error.message()); // the next line tells of it
        }
        if (files.status(folder).kind != FileStatus::Kind::Folder) {
            logUnusableFolder(environment, folder);
            return false;
        }
    }
    return true;
}

void logUnusableFolder(FlowEnvironment& environment, const QString& folder) {
    environment.log(u"  [ERROR] Backup folder is not usable: "_s + folder);
}

} // namespace quorvane
