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

QString appleScriptText(const QString& text) {
    QString escaped;
    escaped.reserve(text.size());
    for (const QChar character : text) {
        if (character == u'\\' || character == u'"') {
            escaped += u'\\';
        }
        escaped += character;
    }
    return escaped;
}

QString shellQuoted(const QString& text) {
    QString quoted(u'\'');
    quoted.reserve(text.size() + 2);
    for (const QChar character : text) {
        if (character == u'\'') {
            quoted += u"'\\''";
        } else {
            quoted += character;
        }
    }
    return quoted + u'\'';
}

QString shellWord(const QString& text) {
    return standsBare(text) ? text : shellQuoted(text);
}

} // namespace quorvane
