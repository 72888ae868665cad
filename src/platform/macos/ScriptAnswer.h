#pragma once

#include "platform/ScriptEngine.h"

namespace quorvane {

/// What the system gives for a script.
struct ScriptAnswer {
    bool isGiven = false;                ///< a script that doesn't compile, fails or is cancelled gives none
    std::optional<QString> text;         ///< none for an answer that has no text, such as `missing value`
    std::optional<QString> errorMessage; ///< none where the system has none, or something else in its place
    std::optional<int> errorNumber;      ///< likewise
};

ScriptOutcome scriptOutcome(const ScriptAnswer& answer);

} // namespace quorvane
