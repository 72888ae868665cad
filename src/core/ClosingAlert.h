#pragma once

#include <QString>

namespace quorvane {

/// What the window says at the end of a flow.
struct ClosingAlert {
    QString title;
    QString text; ///< paragraphs, which an empty line divides

    bool operator==(const ClosingAlert&) const = default;
};

} // namespace quorvane
