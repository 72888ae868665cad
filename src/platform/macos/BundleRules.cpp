#include "platform/macos/BundleRules.h"

namespace quorvane {

using namespace Qt::StringLiterals;

bool countsAsInstalled(const QString& path, bool isOnReadOnlyVolume) {
    const bool isInTrash = path.contains(u"/.Trash/"_s) || path.contains(u"/.Trashes/"_s); // the user's, a volume's
    const bool isOnDiskImage = isOnReadOnlyVolume && path.startsWith(u"/Volumes/"_s);
    return path.startsWith(u'/') && !isInTrash && !isOnDiskImage;
}

} // namespace quorvane
