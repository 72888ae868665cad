#pragma once

#include <QString>

namespace quorvane {

/// The one form of all texts that differ only in case or in how an accent is written, so that such texts compare as equal.
QString foldedText(const QString& text);

} // namespace quorvane
