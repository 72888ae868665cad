#include "simulator/shell/ShellWords.h"

#include "simulator/shell/ShellCursor.h"

#include <QStringList>

#include <algorithm>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

using PartKind = ShellWordPart::Kind;

bool isUnquotedText(const ShellWordPart& part) {
    return part.kind == PartKind::Text && !part.isQuoted;
}

ShellWordPart unquotedText(const QString& text) {
    return {PartKind::Text, false, text, nullptr};
}

bool isUserName(QStringView name) {
    return std::all_of(name.begin(), name.end(), [](QChar character) {
        return isInShellName(character) || character == u'.' || character == u'-';
    });
}

/// Appends a stretch of unquoted text, a "~" at its start as a part of its own.
/// @param isWhole  the prefix up to "/" or the end of the stretch is all there is of it: no quote or
/// expansion follows
void appendStretch(ShellWord& word, const QString& text, bool isWhole) {
    const qsizetype slash = text.indexOf(u'/');
    const QString name = text.mid(1, slash < 0 ? -1 : slash - 1);
    if (!text.startsWith(u'~') || (slash < 0 && !isWhole) || !isUserName(name)) {
        word.push_back(unquotedText(text));
        return;
    }
    word.push_back({PartKind::Home, false, name, nullptr});
    if (slash >= 0) {
        word.push_back(unquotedText(text.mid(slash)));
    }
}

/// Appends unquoted text out of a value, in which every colon starts a stretch.
void appendStretches(ShellWord& word, const QString& text, bool startsValue, bool endsValue) {
    const QStringList stretches = text.split(u':');
    for (qsizetype index = 0; index < stretches.size(); ++index) {
        if (index > 0) {
            word.push_back(unquotedText(u":"_s));
        }
        if (index > 0 || startsValue) {
            appendStretch(word, stretches[index], endsValue || index + 1 < stretches.size());
        } else {
            word.push_back(unquotedText(stretches[index]));
        }
    }
}

/// The length of a variable's name at the start of a text; 0 without one.
qsizetype nameLength(const QString& text) {
    if (text.isEmpty() || !startsShellName(text[0])) {
        return 0;
    }
    return std::find_if_not(text.begin(), text.end(), isInShellName) - text.begin();
}

} // namespace

std::optional<QString> literalShellText(const ShellWord& word) {
    QString text;
    for (const ShellWordPart& part : word) {
        if (part.kind != PartKind::Text) {
            return {};
        }
        text += part.text;
    }
    return text;
}

std::optional<QString> unquotedShellText(const ShellWord& word) {
    if (!std::all_of(word.begin(), word.end(), isUnquotedText)) {
        return {};
    }
    return literalShellText(word);
}

ShellWord withHomeAtStart(const ShellWord& word) {
    if (word.empty() || !isUnquotedText(word.front())) {
        return word;
    }
    ShellWord made;
    appendStretch(made, word.front().text, word.size() == 1);
    made.insert(made.end(), word.begin() + 1, word.end());
    return made;
}

ShellWord withHomesInValue(const ShellWord& value) {
    ShellWord made;
    for (const ShellWordPart& part : value) {
        if (isUnquotedText(part)) {
            appendStretches(made, part.text, &part == &value.front(), &part == &value.back());
        } else {
            made.push_back(part);
        }
    }
    return made;
}

bool hasBraceExpansion(const ShellWord& word) {
    std::vector<bool> separates; // for each open brace: was there a comma or ".." in it?
    QChar previous;
    for (const ShellWordPart& part : word) {
        if (!isUnquotedText(part)) {
            previous = {};
            continue;
        }
        for (const QChar character : part.text) {
            if (character == u'{') {
                separates.push_back(false);
            } else if (!separates.empty() && (character == u',' || (character == u'.' && previous == u'.'))) {
                separates.back() = true;
            } else if (!separates.empty() && character == u'}') {
                if (separates.back()) {
                    return true;
                }
                separates.pop_back();
            }
            previous = character;
        }
    }
    return false;
}

std::optional<ShellAssignment> assignmentFromWord(const ShellWord& word) {
    if (word.empty() || !isUnquotedText(word.front())) {
        return {};
    }
    const QString text = word.front().text;
    const qsizetype length = nameLength(text);
    if (length == 0 || text.mid(length, 1) != u"="_s) {
        return {};
    }
    ShellWord value = word;
    value.front().text = text.mid(length + 1);
    if (value.front().text.isEmpty()) {
        value.erase(value.begin());
    }
    return ShellAssignment{text.left(length), withHomesInValue(value)};
}

bool isUnsupportedShellAssignment(const ShellWord& word) {
    if (word.empty() || !isUnquotedText(word.front())) {
        return false;
    }
    const QString text = word.front().text;
    const qsizetype length = nameLength(text);
    if (length == 0) {
        return false;
    }
    const bool isElement = text.mid(length, 1) == u"["_s && std::any_of(word.begin(), word.end(), [](const auto& part) {
                               return isUnquotedText(part) && part.text.contains(u"]="_s);
                           });
    return isElement || text.mid(length, 2) == u"+="_s;
}

} // namespace macsim
