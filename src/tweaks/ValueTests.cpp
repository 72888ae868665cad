#include "tweaks/ValueTests.h"

#include <QStringList>

namespace quorvane {

using namespace Qt::StringLiterals;

bool isTruthy(const std::optional<QString>& value) {
    static const QStringList words{u"1"_s, u"true"_s, u"yes"_s};
    return value && words.contains(value->toLower());
}

bool isFalsy(const std::optional<QString>& value) {
    static const QStringList words{u"0"_s, u"false"_s, u"no"_s};
    return !value || words.contains(value->toLower());
}

bool isOffValue(const std::optional<QString>& value) {
    static const QStringList words{u"0"_s, u"false"_s, u"no"_s, u"off"_s};
    return value && words.contains(value->toLower());
}

} // namespace quorvane
