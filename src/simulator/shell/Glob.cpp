#include "simulator/shell/Glob.h"

#include <array>
#include <optional>
#include <string_view>
#include <utility>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

using View = std::u32string_view;

struct CharacterClass {
    View name;
    bool (*contains)(char32_t character);
};

bool isAscii(char32_t character) {
    return character < 0x80;
}
bool isGraph(char32_t character) {
    return QChar::isPrint(character) && !QChar::isSpace(character);
}

constexpr std::array<CharacterClass, 12> kClasses{{
    {U"alpha", [](char32_t c) { return QChar::isLetter(c); }},
    {U"digit", [](char32_t c) { return c >= U'0' && c <= U'9'; }},
    {U"alnum", [](char32_t c) { return QChar::isLetter(c) || (c >= U'0' && c <= U'9'); }},
    {U"upper", [](char32_t c) { return QChar::isUpper(c); }},
    {U"lower", [](char32_t c) { return QChar::isLower(c); }},
    {U"space", [](char32_t c) { return QChar::isSpace(c); }},
    {U"blank", [](char32_t c) { return c == U' ' || c == U'\t'; }},
    {U"punct", [](char32_t c) { return isGraph(c) && !QChar::isLetterOrNumber(c); }},
    {U"print", [](char32_t c) { return QChar::isPrint(c); }},
    {U"graph", isGraph},
    {U"cntrl", [](char32_t c) { return isAscii(c) && (c < U' ' || c == 0x7f); }},
    {U"xdigit", [](char32_t c) { return isAscii(c) && View(U"0123456789abcdefABCDEF").find(c) != View::npos; }},
}};

/// A class like "[:alpha:]" at the start of a text: whether it has the character, and the class's length.
std::optional<std::pair<bool, std::size_t>> matchClass(View text, char32_t character) {
    if (!text.starts_with(U"[:")) {
        return {};
    }
    for (const CharacterClass& candidate : kClasses) {
        const View rest = text.substr(2);
        if (rest.starts_with(candidate.name) && rest.substr(candidate.name.size()).starts_with(U":]")) {
            return std::pair(candidate.contains(character), candidate.name.size() + 4);
        }
    }
    return {};
}

/// One character of a bracket; a backslash protects it.
char32_t takeMember(View pattern, std::size_t& at) {
    if (pattern[at] == U'\\' && at + 1 < pattern.size()) {
        ++at;
    }
    return pattern[at++];
}

/// What a bracket at the start of a pattern says of a character, and its length; nothing when it isn't closed
/// and therefore stands for itself.
std::optional<std::pair<bool, std::size_t>> matchBracket(View pattern, char32_t character) {
    std::size_t at = 1;
    const bool isNegated = at < pattern.size() && (pattern[at] == U'!' || pattern[at] == U'^');
    at += isNegated ? 1 : 0;
    bool contains = false;
    for (const std::size_t first = at; at < pattern.size();) {
        if (pattern[at] == U']' && at != first) {
            return std::pair(contains != isNegated, at + 1);
        }
        if (const auto matched = matchClass(pattern.substr(at), character)) {
            contains = contains || matched->first;
            at += matched->second;
            continue;
        }
        const char32_t low = takeMember(pattern, at);
        const bool isRange = at + 1 < pattern.size() && pattern[at] == U'-' && pattern[at + 1] != U']';
        const char32_t high = isRange ? takeMember(pattern, ++at) : low;
        contains = contains || (low <= character && character <= high);
    }
    return {};
}

/// The length of the pattern's first element when it matches the character; 0 when it doesn't.
std::size_t matchElement(View pattern, char32_t character) {
    switch (pattern[0]) {
    case U'?':
        return 1;
    case U'[':
        if (const auto bracket = matchBracket(pattern, character)) {
            return bracket->first ? bracket->second : 0;
        }
        return character == U'[' ? 1 : 0;
    case U'\\':
        return pattern.size() > 1 && pattern[1] == character ? 2 : 0;
    default:
        return pattern[0] == character ? 1 : 0;
    }
}

/// Only the last "*" is ever tried again: whatever an earlier one could take, the later can take instead.
bool matches(View pattern, View name) {
    std::size_t at = 0;
    std::size_t position = 0;
    std::optional<std::pair<std::size_t, std::size_t>> star; // behind it in the pattern; where its text ends
    while (position < name.size()) {
        if (at < pattern.size() && pattern[at] == U'*') {
            star = {++at, position};
            continue;
        }
        const std::size_t length = at < pattern.size() ? matchElement(pattern.substr(at), name[position]) : 0;
        if (length > 0) {
            at += length;
            ++position;
        } else if (star) {
            at = star->first;
            position = ++star->second;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of(U'*', at) == View::npos;
}

QString withBackslashes(const QString& text, QStringView special) {
    QString made;
    for (const QChar character : text) {
        if (special.contains(character)) {
            made += u'\\';
        }
        made += character;
    }
    return made;
}

} // namespace

QString globQuoted(const QString& text) {
    return withBackslashes(text, u"*?[]\\!^-:");
}

QString globUnquoted(const QString& text) {
    return withBackslashes(text, u"\\");
}

QString globText(const QString& pattern) {
    QString text;
    for (qsizetype at = 0; at < pattern.size(); ++at) {
        at += pattern[at] == u'\\' && at + 1 < pattern.size() ? 1 : 0;
        text += pattern[at];
    }
    return text;
}

bool isGlob(const QString& pattern) {
    bool isBracketOpen = false;
    for (qsizetype at = 0; at < pattern.size(); ++at) {
        const QChar character = pattern[at];
        if (character == u'*' || character == u'?' || (character == u']' && isBracketOpen)) {
            return true;
        }
        isBracketOpen = isBracketOpen || character == u'[';
        at += character == u'\\' ? 1 : 0;
    }
    return false;
}

bool matchesGlob(const QString& pattern, const QString& name) {
    if (name.startsWith(u'.') && !pattern.startsWith(u'.')) {
        return false;
    }
    return matches(pattern.toStdU32String(), name.toStdU32String());
}

} // namespace macsim
