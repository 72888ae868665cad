#include "rehearsal/ProfileFile.h"

#include "platform/FileManager.h"
#include "platform/portable/DiskFileManager.h"
#include "profiles/ProfileJson.h"
#include "rehearsal/Arguments.h"
#include "startup/StartupChanges.h"

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

void requireApplicable(const UnifiedProfile& profile, const QString& hostPath) {
    if (profile.settings.cleanReboot) {
        throw UnusableInput(hostPath + u": \"Start Clean on Reboot\" can't be applied yet"_s);
    }
    if (hasStartupChanges(profile.startup)) {
        throw UnusableInput(hostPath + u": startup changes can't be applied yet"_s);
    }
}

} // namespace quorvane
