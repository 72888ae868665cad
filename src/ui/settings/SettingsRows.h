#pragma once

#include "actions/PageTexts.h"
#include "ui/pieces/RowContent.h"

namespace quorvane {

/// A row of a section of Settings.
inline RowContent settingsRow(const RowText& text, BadgeColor tint) {
    return {.symbol = text.symbol, .tint = tint, .title = text.title, .description = text.subtitle};
}

} // namespace quorvane
