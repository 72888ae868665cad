#include "simulator/shell/ShellNesting.h"

namespace macsim {

namespace {

constexpr int kMaximumLevels = 400;
thread_local int levels = 0;

} // namespace

ShellNesting::ShellNesting() {
    if (levels >= kMaximumLevels) {
        throw ShellNestingError();
    }
    ++levels;
}

ShellNesting::~ShellNesting() {
    --levels;
}

bool ShellNesting::isOutermost() {
    return levels == 0;
}

} // namespace macsim
