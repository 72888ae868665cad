#include "rehearsal/ProfileFile.h"

#include "core/JsonErrors.h"
#include "platform/FileManager.h"
#include "platform/portable/DiskFileManager.h"
#include "profiles/ProfileJson.h"
#include "rehearsal/Arguments.h"

namespace quorvane {

using namespace Qt::StringLiterals;

UnifiedProfile profileFromFile(const QString& hostPath) {
    try {
        return decodeProfile(DiskFileManager().read(hostPath));
    } catch (const FileError& error) {
        throw UnusableInput(error.message());
    } catch (const DecodingError& error) {
        throw UnusableInput(hostPath + u": not a profile: "_s + error.message());
    }
}

} // namespace quorvane
