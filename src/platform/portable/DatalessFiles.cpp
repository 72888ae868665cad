#include "platform/portable/DatalessFiles.h"

#include <sys/stat.h>

namespace quorvane {

bool isDataless([[maybe_unused]] int descriptor) {
#ifdef SF_DATALESS
    struct stat info {};
    return ::fstat(descriptor, &info) == 0 && (info.st_flags & SF_DATALESS) != 0;
#else
    return false;
#endif
}

} // namespace quorvane
