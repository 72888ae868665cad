#include "core/Quoting.h"

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

bool standsBare(const QString& text) {
    const auto isPlain = [](QChar c) {
        return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') || c == u'.' ||
               c == u'_' || c == u'-';
    };
    return !text.isEmpty() && !text.startsWith(u'-') && std::all_of(text.begin(), text.end(), isPlain);
}

} // namespace

QString appleScriptText(QString text) {
    return text.replace(u'\\', u"\\\\"_s).replace(u'"', u"\\\""_s);
}

QString shellQuoted(const QString& text) {
    return u'\'' + QString(text).replace(u'\'', u"'\\''"_s) + u'\'';
}

QString shellWord(const QString& text) {
    return standsBare(text) ? text : shellQuoted(text);
}

} // namespace quorvane
