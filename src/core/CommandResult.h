#pragma once

#include <QString>

#include <cstdint>

namespace quorvane {

/// The outcome of one command or administrator run.
struct CommandResult {
    /// The exit status. 1 for a launch failure and for a failed administrator run, 0 for a command queued
    /// into a batch, 128 and the signal's number for a tool ended by a signal.
    std::int32_t status = 0;
    QString standardOutput; ///< empty if not captured or not UTF-8
    QString standardError;  ///< as the output; the system's message for a launch or administrator failure
    /// Of a command: it was started and came to its end by itself. False when it couldn't be started, was ended by a signal,
    /// or ended after the program had begun to quit: status and output tell nothing of the Mac then.
    /// Of an administrator run that failed: its line came to its end, whatever became of its commands. False when it wasn't run,
    /// as after a cancel.
    bool isAnswered = true;
};

} // namespace quorvane
