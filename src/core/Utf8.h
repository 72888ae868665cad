#pragma once

#include <QByteArray>
#include <QString>

namespace quorvane {

/// Text that isn't UTF-8 counts as no text: no reader may decide on half of an output.
QString strictUtf8(const QByteArray& bytes);

} // namespace quorvane
