#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace quorvane {

/// None for what isn't UTF-8. A byte order mark at the beginning is a character of the text like any other.
std::optional<QString> wholeUtf8(QByteArrayView bytes);

/// Text that isn't UTF-8 counts as no text: no reader may decide on half of an output.
QString strictUtf8(const QByteArray& bytes);

} // namespace quorvane
