#pragma once

#include "simulator/PropertyList.h"

#include <QString>
#include <QStringView>

#include <optional>

namespace macsim {

/// A property list as `defaults read` prints it, without the last line's end. A lone text stands as it is;
/// inside a container a text is quoted unless it consists of ASCII letters and digits. It can't be read back:
/// the types are lost, long data is cut short.
QString propertyListText(const PropertyList& list);

/// Reads an old-style property list: ( a, "b c" ), { key = value; }, <0fbd777f>, "text", text. Its scalars
/// are texts and data; it has no numbers. Nothing where it is malformed, nested too deeply or followed by
/// something else.
std::optional<PropertyList> parsePropertyListText(QStringView text);

} // namespace macsim
