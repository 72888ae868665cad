#pragma once

#include "simulator/Volume.h"

#include <QByteArray>
#include <QString>

class QFile;
struct stat;

namespace macsim {

// What a volume asks of the host's files. Links are never followed. Failures are FileErrors that tell of the path as the
// Mac sees it.

/// False when nothing is there, or it can't be told; errno says which.
bool lstatPath(const QString& hostPath, struct stat& info);
/// Throws errno as a FileError when a call of the system has failed.
void require(bool succeeded, const QString& path);

QString linkTargetOnHost(const QString& hostPath);
/// @param macParent  the folder that it is in; in the sealed system a link to the simulator is a Tool
/// @param path       told of in an error
Volume::Kind kindOnHost(const QString& hostPath, const QString& macParent, const QString& path);

/// Opens without following a link that took the file's place after it was looked up.
/// @param flags  as open(2) takes them
void openOnHost(QFile& file, const QString& hostPath, const QString& macPath, int flags);
/// Throws ENOSPC.
void writeWhole(QFile& file, const QByteArray& bytes, const QString& macPath);

} // namespace macsim
