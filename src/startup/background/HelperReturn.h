#pragma once

#include "startup/background/BackgroundRecord.h"

#include <QSet>
#include <QString>
#include <QStringList>

namespace quorvane {

class Bundles;

/// What the way back does with a helper that was taken out of its application.
enum class HelperReturn {
    GoesBack,
    IsWhole,          ///< something stands in its place: the application has been installed or updated since
    IsAnotherVersion, ///< the application isn't the one, or the version, that it was taken out of
    IsNotSafe, ///< the record, or what lies on the way, isn't as the program has left it; or the user may not write there
};
/// Both the record and the quarantine are the user's to change, so nothing is believed of them: the helper goes nowhere but
/// into a folder for helpers of its own application, by no link.
/// @param copy  its path in the quarantine
HelperReturn helperReturn(const TakenHelper& helper, const QString& copy, const FileManager& files,
                          const Bundles& bundles);

/// Where a helper lies in the quarantine; empty for one whose label or place can't be a name there.
QString helperCopy(const TakenHelper& helper, const QString& quarantineFolder);

/// The paths of the helpers in the quarantine that aren't among the recorded ones, sorted.
QStringList unrecordedHelpers(const QString& quarantineFolder, const QSet<QString>& recorded, const FileManager& files);

} // namespace quorvane
