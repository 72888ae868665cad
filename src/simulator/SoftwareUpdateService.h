#pragma once

#include <QString>

namespace macsim {

class Mac;

/// What the service that looks for updates does about its own settings when a command has changed them. From macOS 26 on it
/// deletes "AutomaticCheckEnabled". A Mac takes seconds for that; here the key is gone before the next command runs.
/// @param writtenFile  the property list that was changed, as the Mac sees it; of any other the service takes no notice
void softwareUpdateServiceNotices(const Mac& mac, const QString& writtenFile);

} // namespace macsim
