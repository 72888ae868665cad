#pragma once

#include "platform/Activity.h"

namespace quorvane {

/// Where no system slows down programs that nobody sees.
class UnwatchedActivity final : public Activity {
public:
    void setWorking(bool /*isWorking*/) override {}
};

} // namespace quorvane
