#include "fakes/StartupSystem.h"

namespace quorvane {} // namespace quorvane
