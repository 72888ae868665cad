#pragma once

#include "documentation/DocumentationPage.h"

namespace quorvane {

/// What the program brings along: the manual, the copyright and the logo. What can't be read is empty. Main thread.
DocumentationParts shippedDocumentation();

} // namespace quorvane
