#pragma once

#include <QSet>
#include <QString>

namespace quorvane {

/// A profile's name as it is saved, and as its file is named: trimmed, with "-" for each of "/", ":" and "\".
/// May be empty.
QString sanitizedProfileName(const QString& name);

/// True for a name that is the base name of a file in the profiles folder: one that sanitizing leaves as it
/// is. Any other name could lead out of the folder, or to the file of another profile.
bool isProfileFileName(const QString& name);

/// True for a name under which a profile can be saved: one that isn't empty when it is sanitized, and no longer than the name
/// of a file may be.
bool isUsableProfileName(const QString& name);

/// The one form by which names are compared: as it is saved, composed (a Mac's volume takes both forms of "é" for one) and
/// without case.
QString profileNameKey(const QString& name);

/// `base`, or the first of "{base} 2", "{base} 3", … that isn't used.
/// @param usedLowercasedNames  made by profileNameKey
QString uniqueProfileName(const QString& base, const QSet<QString>& usedLowercasedNames);

} // namespace quorvane
