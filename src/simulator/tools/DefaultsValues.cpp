#include "simulator/tools/DefaultsValues.h"

#include "simulator/PropertyListText.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

using Change = DefaultsCommand::Change;
using Kind = DefaultsMisuse::Kind;

[[noreturn]] void refuseValue() {
    throw DefaultsMisuse(Kind::Usage);
}

/// As many characters from the start as make a number; 0 where there are none: `defaults` stores that without
/// a word.
QString leadingNumber(const QRegularExpression& number, const QString& text) {
    const QRegularExpressionMatch match = number.match(text);
    return match.hasMatch() ? match.captured(1) : u"0"_s;
}

PropertyList integerValue(const QString& text) {
    static const QRegularExpression number(u"^\\s*([+-]?[0-9]+)"_s);
    const QString digits = leadingNumber(number, text);
    bool fits = false;
    const qint64 value = digits.toLongLong(&fits);
    if (fits) {
        return value;
    }
    using Limits = std::numeric_limits<qint64>;
    return digits.startsWith(u'-') ? Limits::min() : Limits::max();
}

PropertyList realValue(const QString& text) {
    static const QRegularExpression number(u"^\\s*([+-]?(?:[0-9]+\\.?[0-9]*|\\.[0-9]+)(?:[eE][+-]?[0-9]+)?)"_s);
    return leadingNumber(number, text).toDouble();
}

/// 1 and 0 are not accepted.
PropertyList booleanValue(const QString& text) {
    const QString word = text.toLower();
    if (word == u"yes"_s || word == u"true"_s) {
        return true;
    }
    if (word == u"no"_s || word == u"false"_s) {
        return false;
    }
    refuseValue();
}

/// An odd number of digits lacks the first one, a zero.
PropertyList dataValue(const QString& text) {
    static const QRegularExpression digits(u"\\A[0-9a-fA-F]*\\z"_s);
    if (!digits.match(text).hasMatch()) {
        refuseValue();
    }
    return QByteArray::fromHex(text.toLatin1());
}

/// "2026-01-31 10:00:00 +0000", as `defaults read` prints it, or ISO 8601. A Mac also takes a date in words;
/// it isn't known which, so none is taken here.
PropertyList dateValue(const QString& text) {
    static const QRegularExpression printed(
        u"\\A(\\d{4}-\\d{2}-\\d{2}) (\\d{2}:\\d{2}:\\d{2}) ([+-]\\d{2}):?(\\d{2})\\z"_s);
    QString iso = text;
    iso.replace(printed, u"\\1T\\2\\3:\\4"_s);
    const QDateTime date = QDateTime::fromString(iso, Qt::ISODate).toUTC();
    if (!date.isValid() || date.date().year() < 1) {
        refuseValue();
    }
    return date;
}

PropertyList stringValue(const QString& text) {
    return text;
}

using ScalarReader = PropertyList (*)(const QString& text);

ScalarReader scalarReader(const QString& flag) {
    static constexpr std::array<std::pair<QStringView, ScalarReader>, 8> kReaders{{
        {u"-string", stringValue},
        {u"-data", dataValue},
        {u"-int", integerValue},
        {u"-integer", integerValue},
        {u"-float", realValue},
        {u"-bool", booleanValue},
        {u"-boolean", booleanValue},
        {u"-date", dateValue},
    }};
    const auto* reader =
        std::find_if(kReaders.begin(), kReaders.end(), [&flag](const auto& entry) { return entry.first == flag; });
    return reader == kReaders.end() ? nullptr : reader->second;
}

bool isArrayFlag(const QString& argument) {
    return argument == u"-array"_s || argument == u"-array-add"_s;
}
bool isDictionaryFlag(const QString& argument) {
    return argument == u"-dict"_s || argument == u"-dict-add"_s;
}

/// Takes one scalar, with or without a flag, from the front of what is left.
PropertyList takeScalar(QStringList& arguments) {
    if (arguments.isEmpty()) {
        refuseValue();
    }
    const QString first = arguments.takeFirst();
    if (isArrayFlag(first) || isDictionaryFlag(first)) {
        throw DefaultsMisuse(Kind::Explained, u"Cannot nest composite types (arrays and dictionaries); exiting"_s);
    }
    const ScalarReader reader = scalarReader(first);
    if (!reader) {
        return parseDefaultsRepresentation(first);
    }
    if (arguments.isEmpty()) {
        refuseValue();
    }
    return reader(arguments.takeFirst());
}

PropertyList arrayValue(QStringList arguments) {
    PropertyList::Array array;
    while (!arguments.isEmpty()) {
        array.push_back(takeScalar(arguments));
    }
    return array;
}

PropertyList dictionaryValue(QStringList arguments) {
    PropertyList::Dictionary dictionary;
    while (!arguments.isEmpty()) {
        const PropertyList key = takeScalar(arguments);
        const auto* name = key.as<QString>();
        if (!name) {
            throw DefaultsMisuse(Kind::Explained, u"Dictionary keys must be strings"_s);
        }
        if (arguments.isEmpty()) {
            throw DefaultsMisuse(Kind::Explained, u"Key %1 lacks a corresponding value"_s.arg(*name));
        }
        dictionary.insert_or_assign(*name, takeScalar(arguments));
    }
    return dictionary;
}

} // namespace

DefaultsValue parseDefaultsValue(const QStringList& arguments) {
    QStringList rest = arguments;
    const QString flag = rest.value(0);
    if (isArrayFlag(flag)) {
        return {flag == u"-array"_s ? Change::Replace : Change::AppendToArray, arrayValue(rest.mid(1))};
    }
    if (isDictionaryFlag(flag)) {
        return {flag == u"-dict"_s ? Change::Replace : Change::AddToDictionary, dictionaryValue(rest.mid(1))};
    }
    const PropertyList value = takeScalar(rest);
    if (!rest.isEmpty()) {
        throw DefaultsMisuse(Kind::Explained,
                             u"Unexpected argument %1; leaving defaults unchanged."_s.arg(rest.first()));
    }
    return {Change::Replace, value};
}

PropertyList parseDefaultsRepresentation(const QString& text) {
    static const QRegularExpression marks(u"[\"()\\[\\]{}<>]"_s);
    if (!text.contains(marks)) {
        return text;
    }
    std::optional<PropertyList> list = parsePropertyListText(text);
    if (!list && text.trimmed().startsWith(u'<')) {
        list = parsePropertyList(text.trimmed().toUtf8());
    }
    if (!list) {
        throw DefaultsMisuse(Kind::Explained, u"Could not parse: %1.  Try single-quoting it."_s.arg(text));
    }
    return *std::move(list);
}

} // namespace macsim
