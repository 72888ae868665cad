#include "platform/macos/DescriptorLimit.h"

#include <algorithm>

#include <sys/resource.h>

namespace quorvane {

bool raiseDescriptorLimit(unsigned wanted) {
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) {
        return false;
    }
    limit.rlim_cur = std::max(limit.rlim_cur, std::min<rlim_t>(wanted, limit.rlim_max));
    return ::setrlimit(RLIMIT_NOFILE, &limit) == 0;
}

} // namespace quorvane
