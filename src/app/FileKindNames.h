#pragma once

#include "platform/FilePanels.h"

namespace quorvane {

/// What a panel for files of a kind shows, as Qt writes a filter: "Profiles (*.json)".
QString fileFilterOf(FileKind kind);
/// What a new file's name ends with when nobody says otherwise, without the dot.
QString fileSuffixOf(FileKind kind);

} // namespace quorvane
