#include "platform/macos/CleanEnvironment.h"

#include <QStringList>

namespace quorvane {

using namespace Qt::StringLiterals;

QProcessEnvironment cleanEnvironment(const QProcessEnvironment& given, bool isDebugBuild) {
    static const QStringList kept{
        u"HOME"_s, u"USER"_s, u"LOGNAME"_s, u"SHELL"_s, u"TMPDIR"_s, u"LANG"_s, u"__CF_USER_TEXT_ENCODING"_s};
    QProcessEnvironment clean;
    const QStringList names = given.keys();
    for (const QString& name : names) {
        if (kept.contains(name) || (isDebugBuild && name.startsWith(u"QT_"_s))) {
            clean.insert(name, given.value(name));
        }
    }
    clean.insert(u"PATH"_s, u"/usr/bin:/bin:/usr/sbin:/sbin"_s);
    return clean;
}

} // namespace quorvane
