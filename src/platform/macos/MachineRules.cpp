#include "platform/macos/MachineRules.h"

namespace quorvane {

using namespace Qt::StringLiterals;

QString versionText(long major, long minor, long patch) {
    const QString text = u"%1.%2"_s.arg(major).arg(minor);
    return patch == 0 ? text : text + u'.' + QString::number(patch);
}

} // namespace quorvane
