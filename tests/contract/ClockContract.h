#pragma once

#include "contract/Subject.h"
#include "platform/Clock.h"

namespace quorvane {

/// A clock needs nothing of the world.
class ClockContract : public ContractTest<Clock> {};

} // namespace quorvane
