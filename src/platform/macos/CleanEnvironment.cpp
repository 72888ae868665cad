#include "platform/macos/CleanEnvironment.h"

#include <QStringList>

#include <algorithm>
#include <cstdlib>

extern "C" char** environ; // as POSIX has a program declare it

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// Also of variables whose names aren't text.
QList<QByteArray> ownVariables() {
    QList<QByteArray> names;
    for (char** variable = environ; variable && *variable; ++variable) {
        const QByteArrayView text(*variable);
        names.append(text.first(std::max<qsizetype>(text.indexOf('='), 0)).toByteArray());
    }
    return names;
}

} // namespace

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

void takeEnvironment(const QProcessEnvironment& wanted) {
    const QList<QByteArray> former = ownVariables();
    for (const QByteArray& name : former) {
        ::unsetenv(name.constData());
    }
    const QStringList names = wanted.keys();
    for (const QString& name : names) {
        ::setenv(name.toLocal8Bit().constData(), wanted.value(name).toLocal8Bit().constData(), 1);
    }
}

} // namespace quorvane
