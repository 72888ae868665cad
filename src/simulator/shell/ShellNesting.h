#pragma once

#include <exception>

namespace macsim {

/// Too many shells inside one another.
class ShellNestingError : public std::exception {
public:
    const char* what() const noexcept override { return "fork: Resource temporarily unavailable"; }
};

/// Counts the lists that are being run inside one another in this thread, across shells that start shells: a
/// line that starts itself forever ends as it does where the system has no more processes, and not in an
/// overflowing stack.
class ShellNesting {
public:
    /// Throws ShellNestingError.
    ShellNesting();
    ShellNesting(const ShellNesting&) = delete;
    ShellNesting& operator=(const ShellNesting&) = delete;
    ~ShellNesting();

    /// True outside of every shell.
    static bool isOutermost();
};

} // namespace macsim
