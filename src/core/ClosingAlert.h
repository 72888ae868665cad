#pragma once

#include "platform/AlertStyle.h"

#include <QString>

namespace quorvane {

/// What the window says at the end of a flow.
struct ClosingAlert {
    QString title;
    QString text; ///< paragraphs, which an empty line divides
    AlertStyle style = AlertStyle::Informational;

    bool operator==(const ClosingAlert&) const = default;
};

} // namespace quorvane
