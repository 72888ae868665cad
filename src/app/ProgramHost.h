#pragma once

#include "app/AppDelegate.h"

namespace quorvane {

/// The platform that the program runs on, with all that the program asks of it. It lives from after the application object has
/// been made until after the delegate has gone.
class ProgramHost {
public:
    ProgramHost() = default;
    ProgramHost(const ProgramHost&) = delete;
    ProgramHost& operator=(const ProgramHost&) = delete;
    virtual ~ProgramHost() = default;

    virtual AppParts parts() = 0;
};

/// Makes the one of a platform.
/// @param dataFolder  the user's folder for what programs keep of their own; it is there, and one process at a time has it
/// Throws std::exception with a text for the user.
using ProgramHostMaker = std::function<std::unique_ptr<ProgramHost>(const QString& dataFolder)>;

} // namespace quorvane
