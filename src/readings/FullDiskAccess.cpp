#include "readings/FullDiskAccess.h"

#include "platform/FileManager.h"

namespace quorvane {

using namespace Qt::StringLiterals;

/// The system has no call that tells. It keeps its own record of permissions from whoever wasn't given access.
FullDiskAccess readFullDiskAccess(const FileManager& files) {
    try {
        files.list(u"/Library/Application Support/com.apple.TCC"_s);
        return FullDiskAccess::Given;
    } catch (const FileError& error) {
        return error.cause() == FileError::Cause::NotPermitted ? FullDiskAccess::Missing : FullDiskAccess::Unknown;
    }
}

} // namespace quorvane
