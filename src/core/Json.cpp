#include "core/Json.h"

#include "core/OneLine.h"
#include "core/Utf8.h"

#include <QRegularExpression>

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace quorvane {

namespace {

// Foundation's own limit.
constexpr std::size_t kDeepestNesting = 512;

/// Adds to an object without the library's look-up of the key, which makes a large object cost the square of
/// its size, and without a vector's own growth, which copies the values, because their keys can't be moved.
void append(Json::object_t& members, std::string key, Json value) {
    if (members.size() == members.capacity()) {
        Json::object_t larger;
        larger.reserve(std::max<std::size_t>(4, members.size() * 2));
        for (auto& [name, member] : members) {
            static_cast<Json::object_t::Container&>(larger).emplace_back(name, std::move(member));
        }
        members.swap(larger);
    }
    static_cast<Json::object_t::Container&>(members).emplace_back(std::move(key), std::move(value));
}

/// Goes through the bytes of a JSON text and leaves out the blanks that follow a blank, outside of strings. The library
/// keeps all that stands before a token, and spells it out in an error of its own, eight bytes for a line end.
class SignificantBytes {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    static SignificantBytes beginOf(const QByteArray& bytes) { return {bytes.begin(), bytes.end()}; }
    static SignificantBytes endOf(const QByteArray& bytes) { return {bytes.end(), bytes.end()}; }

    reference operator*() const { return *m_place; }
    SignificantBytes& operator++() {
        const char passed = *m_place++;
        if (m_isInString) {
            m_isInString = m_isEscaped || passed != '"';
            m_isEscaped = !m_isEscaped && passed == '\\';
        } else {
            m_isInString = passed == '"';
            m_place = isBlank(passed) ? std::find_if_not(m_place, m_end, isBlank) : m_place;
        }
        return *this;
    }
    bool operator==(const SignificantBytes& other) const { return m_place == other.m_place; }
    bool operator!=(const SignificantBytes& other) const { return m_place != other.m_place; }
    const char* place() const { return m_place; }

private:
    SignificantBytes(const char* place, const char* end)
        : m_place(place)
        , m_end(end) {}
    static bool isBlank(char byte) { return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r'; }

    const char* m_place;
    const char* m_end;
    bool m_isInString = false;
    bool m_isEscaped = false;
};

/// Builds the tree from the parser's events. Open objects and arrays stand on a stack of their own; one is
/// put into its parent when it ends.
class TreeBuilder {
public:
    explicit TreeBuilder(const QByteArray& bytes)
        : m_bytes(bytes) {}

    Json takeTree() { return std::move(m_tree); }

    bool null() { return add(nullptr); }
    bool boolean(bool value) { return add(value); }
    bool number_integer(Json::number_integer_t value) { return add(value); }
    bool number_unsigned(Json::number_unsigned_t value) { return add(value); }
    bool number_float(Json::number_float_t value, const std::string&) { return add(value); }
    bool string(std::string& value) { return add(std::move(value)); }
    bool binary(Json::binary_t& value) { return add(std::move(value)); }
    bool key(std::string& name) {
        m_open.back().key = std::move(name);
        return true;
    }
    bool start_object(std::size_t) { return open(Json::object()); }
    bool end_object() { return close(); }
    bool start_array(std::size_t) { return open(Json::array()); }
    bool end_array() { return close(); }

    /// @param offset  in the text, at which it is no longer JSON
    [[noreturn]] void failAt(qsizetype offset) const {
        const auto line = 1 + std::count(m_bytes.begin(), m_bytes.begin() + offset, '\n');
        throw DecodingError(u"not valid JSON (line %1)"_s.arg(line));
    }
    bool parse_error(std::size_t position, const std::string&, const nlohmann::detail::exception&) {
        SignificantBytes last = SignificantBytes::beginOf(m_bytes);
        const SignificantBytes end = SignificantBytes::endOf(m_bytes);
        for (std::size_t byte = 1; byte < position && last != end; ++byte) {
            ++last;
        }
        failAt(std::min<qsizetype>(last.place() - m_bytes.begin() + 1, m_bytes.size()));
    }

private:
    struct Open {
        Json value;
        std::string key; // of the member that comes next
    };

    bool add(Json value) {
        if (m_open.empty()) {
            m_tree = std::move(value);
        } else if (Open& parent = m_open.back(); parent.value.is_array()) {
            parent.value.get_ref<Json::array_t&>().push_back(std::move(value));
        } else {
            append(parent.value.get_ref<Json::object_t&>(), std::move(parent.key), std::move(value));
        }
        return true;
    }

    bool open(Json value) {
        if (m_open.size() == kDeepestNesting) {
            throw DecodingError(u"nested too deeply"_s);
        }
        m_open.push_back({std::move(value), {}});
        return true;
    }

    bool close() {
        Json value = std::move(m_open.back().value);
        m_open.pop_back();
        return add(std::move(value));
    }

    const QByteArray& m_bytes;
    std::vector<Open> m_open;
    Json m_tree;
};

QString textOf(const Json& json) {
    if (!json.is_string()) {
        throw DecodingError(u"not a string"_s);
    }
    return jsonString(json.get_ref<const std::string&>());
}

bool fitsInt(const Json& number) {
    return number.is_number_unsigned() ? std::in_range<int>(number.get<quint64>())
                                       : std::in_range<int>(number.get<qint64>());
}

} // namespace

DecodingError::DecodingError(const QString& problem, const QString& key)
    : m_problem(problem)
    , m_key(key)
    , m_text((key.isEmpty() ? problem : u"\"%1\": %2"_s.arg(key, problem)).toUtf8()) {}

DecodingError DecodingError::within(const QString& step) const {
    const QString shown = quotedForError(step).chopped(1).mid(1);
    const bool joinsDirectly = m_key.isEmpty() || m_key.startsWith(u'[');
    return DecodingError(m_problem, joinsDirectly ? shown + m_key : shown + u'.' + m_key);
}

Json parseJson(const QByteArray& bytes) {
    TreeBuilder builder(bytes);
    // The library takes a null character for the end of the text, whatever follows.
    if (const qsizetype null = bytes.indexOf('\0'); null >= 0) {
        builder.failAt(null);
    }
    Json::sax_parse(SignificantBytes::beginOf(bytes), SignificantBytes::endOf(bytes), &builder);
    return builder.takeTree();
}

QByteArray jsonText(const Json& json) {
    return QByteArray::fromStdString(json.dump(2));
}

QByteArray sortedJsonText(const Json& json) {
    return QByteArray::fromStdString(nlohmann::json(json).dump(2));
}

const Json* findMember(const Json& object, const char* key) {
    requireObject(object);
    const auto member = object.find(key);
    return member == object.end() ? nullptr : &*member;
}

void appendMember(Json& object, std::string key, Json value) {
    append(object.get_ref<Json::object_t&>(), std::move(key), std::move(value));
}

QString quotedForError(const QString& text) {
    constexpr qsizetype kLongest = 40;
    const QString shown = text.size() > kLongest ? text.left(kLongest) + u'…' : text;
    return onOneLine(jsonString(encodeJson(shown).dump()));
}

QString jsonString(const std::string& utf8) {
    return wholeUtf8(utf8).value_or(QString()); // what isn't UTF-8 is no JSON
}

Json encodeJson(bool value) {
    return value;
}

Json encodeJson(int value) {
    return value;
}

Json encodeJson(const QString& text) {
    return text.toStdString();
}

Json encodeJson(const QDateTime& date) {
    const QDateTime utc = date.toUTC();
    if (!utc.isValid() || utc.date().year() < 1 || utc.date().year() > 9999) {
        throw EncodingError(u"The date can't be written."_s);
    }
    return encodeJson(utc.toString(u"yyyy-MM-dd'T'HH:mm:ss'Z'"_s));
}

Json encodeJson(const QUuid& id) {
    return encodeJson(id.toString(QUuid::WithoutBraces).toUpper());
}

void decodeJson(const Json& json, bool& value) {
    if (!json.is_boolean()) {
        throw DecodingError(u"not a boolean"_s);
    }
    value = json.get<bool>();
}

void decodeJson(const Json& json, int& value) {
    if (!json.is_number_integer()) {
        throw DecodingError(u"not a whole number"_s);
    }
    if (!fitsInt(json)) {
        throw DecodingError(u"too large a number"_s);
    }
    value = json.get<int>();
}

void decodeJson(const Json& json, QString& text) {
    text = textOf(json);
}

void decodeJson(const Json& json, QDateTime& date) {
    static const QRegularExpression form(u"\\A([0-9]{4})-([0-9]{2})-([0-9]{2})T([0-9]{2}):([0-9]{2}):([0-9]{2})Z\\z"_s);
    const QString text = textOf(json);
    const QRegularExpressionMatch match = form.match(text);
    const auto number = [&match](int group) { return match.capturedView(group).toInt(); };
    const QDate day(number(1), number(2), number(3));
    const QTime time(number(4), number(5), number(6));
    if (!match.hasMatch() || !day.isValid() || !time.isValid()) {
        throw DecodingError(u"not a date of the form 2026-11-15T21:05:37Z"_s);
    }
    date = QDateTime(day, time, Qt::UTC);
}

void decodeJson(const Json& json, QUuid& id) {
    static const QRegularExpression form(u"\\A[0-9A-Fa-f]{8}(-[0-9A-Fa-f]{4}){3}-[0-9A-Fa-f]{12}\\z"_s);
    const QString text = textOf(json);
    if (!form.match(text).hasMatch()) {
        throw DecodingError(u"not a UUID"_s);
    }
    id = QUuid::fromString(text);
}

void requireArray(const Json& json) {
    if (!json.is_array()) {
        throw DecodingError(u"not an array"_s);
    }
}

void requireObject(const Json& json) {
    if (!json.is_object()) {
        throw DecodingError(u"not an object"_s);
    }
}

} // namespace quorvane
