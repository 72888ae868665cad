#pragma once

#include "simulator/Json.h"

#include <QString>

#include <vector>

namespace quorvane {

/// The rules of a file of faults that are for one of the program's own adapters ("files", "commands"); they stand beside
/// those for tools. No file is no faults. Throws std::invalid_argument.
std::vector<macsim::Json> adapterRules(const QString& hostPath, const char* adapter);

} // namespace quorvane
