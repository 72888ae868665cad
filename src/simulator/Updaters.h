#pragma once

#include "simulator/Mac.h"

#include <QByteArray>
#include <QString>

namespace macsim {

// What others do on a Mac while a program that switches startup items off believes to know it. None of it asks for
// anybody's rights: it is done by whoever may.

/// An updater installs its property list in a launch folder, where it was or wasn't before: macOS registers it anew (its
/// record is enabled, and stays disallowed if the user has disallowed it), and launchd loads it if it would start at the
/// next login.
void updaterInstalls(const Mac& mac, const QString& plistPath, const QByteArray& plist);

/// An application registers itself, or what has this label in its bundle, again: "enabled" is written over an override
/// that there is, each record of it is enabled and allowed, and its job is loaded if its file is there.
/// @param label  the identifier of the application or of what it holds, without its number
/// @return false where no record has it: an application has to be known before it registers anything again
bool applicationRegisters(const Mac& mac, const QString& label);

/// The user flips "Allow in the Background" in System Settings for every record with a label. Disallowed, its job stops;
/// allowed, it is loaded if it would start at the next login.
void userAllows(const Mac& mac, const QString& label, bool isAllowed);

} // namespace macsim
