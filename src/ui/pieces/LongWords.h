#pragma once

#include <QString>

namespace quorvane {

/// The text with places inside its longest words where a line may end, which aren't seen: a name may be one word that is
/// wider than any window.
QString withBreaksInLongWords(const QString& text);

} // namespace quorvane
