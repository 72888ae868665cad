#include "startup/login/LoginItemScripts.h"

#include "core/Quoting.h"

#include <QRegularExpression>
#include <QStringList>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// In UTF-8. A script is one argument of a command, which Linux, where Macs are simulated, limits to 128 KiB.
constexpr qsizetype kLongestScript = 60'000;

/// Stands in the place of whether it opens hidden.
constexpr QStringView kUnreadable = u"unreadable";

QString loginItemsWhere(const LoginItemSelector& selector) {
    QStringList conditions;
    if (!selector.path.isEmpty() || selector.name.isEmpty()) {
        conditions.append(u"path is \"%1\""_s.arg(appleScriptText(selector.path)));
    }
    if (!selector.name.isEmpty()) {
        conditions.append(u"name is \"%1\""_s.arg(appleScriptText(selector.name)));
    }
    return u"(every login item whose "_s + conditions.join(u" and "_s) + u')';
}

/// What a changing script does for one item: where the condition holds only the word is printed, else it is changed.
QString step(const QString& condition, const QString& word, const QString& change) {
    return uR"(        try
            if (count of )"_s +
           condition + uR"( then
                set output to output & ")"_s +
           word + uR"(\n"
            else
                )"_s +
           change + uR"(
                set output to output & "ok\n"
            end if
        on error number errNum
            set output to output & "error:" & errNum & "\n"
        end try
)"_s;
}

QString removal(const LoginItemSelector& selector) {
    const QString items = loginItemsWhere(selector);
    return step(items + u") is 0"_s, u"missing"_s, u"delete "_s + items);
}

QString addition(const LoginItemAddition& item) {
    const QString properties =
        u"{path:\""_s + appleScriptText(item.path) + (item.hidden ? u"\", hidden:true}"_s : u"\", hidden:false}"_s);
    return step(loginItemsWhere({{}, item.path}) + u") > 0"_s, u"exists"_s,
                u"make new login item at end of login items with properties "_s + properties);
}

QString hiding(const LoginItemHiding& hiding) {
    const QString items = loginItemsWhere(hiding.item);
    return step(items + u") is 0"_s, u"missing"_s,
                u"set hidden of "_s + items + (hiding.hidden ? u" to true"_s : u" to false"_s));
}

QString changingScript(const QString& steps) {
    return uR"(tell application "System Events"
    set output to ""
    try
        with timeout of 120 seconds
            count login items
        end timeout
    on error errMsg number errNum
        return "ERROR|" & errNum & "|" & errMsg
    end try
    with timeout of 20 seconds
)"_s + steps +
           uR"(    end timeout
    return output
end tell)"_s;
}

template <typename Item>
QList<LoginItemScript> changingScripts(const QList<Item>& items, QString (*stepOf)(const Item&)) {
    QList<LoginItemScript> scripts;
    QString steps;
    qsizetype count = 0;
    const auto finish = [&] {
        if (count > 0) {
            scripts.append({changingScript(std::exchange(steps, {})), std::exchange(count, 0)});
        }
    };
    for (const Item& item : items) {
        const QString next = stepOf(item);
        if (steps.toUtf8().size() + next.toUtf8().size() > kLongestScript) {
            finish();
        }
        steps += next;
        ++count;
    }
    finish();
    return scripts;
}

/// None for anything but "ERROR|{number}|{text}": an item may be called ERROR.
std::optional<ScriptFailure> failureIn(const QString& output) {
    static const QRegularExpression failure(u"^ERROR\\|(-?\\d+)\\|(.*)$"_s,
                                            QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = failure.match(output);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const QString text = match.captured(2).trimmed();
    return ScriptFailure{match.captured(1).toInt(), text.isEmpty() ? u"error "_s + match.captured(1) : text};
}

/// Where the name of a line ends; negative for a line that isn't an item's.
qsizetype endOfName(QStringView line, const QString& name) {
    const bool isKnown = !name.isEmpty() && line.startsWith(name + u'|') && line.lastIndexOf(u'|') > name.size();
    return isKnown ? name.size() : line.indexOf(u'|');
}

/// Where its path ends. A "|" in the path can be told from that before whether it opens hidden only where the name is known.
qsizetype endOfPath(QStringView line, qsizetype afterName, bool isNameKnown) {
    if (afterName < 0) {
        return -1;
    }
    return isNameKnown ? line.lastIndexOf(u'|') : line.indexOf(u'|', afterName + 1);
}

LoginItemList unreadList(const ScriptFailure& failure) {
    LoginItemList list;
    list.failure = failure;
    return list;
}

} // namespace

QString readLoginItemsScript() {
    return uR"(tell application "System Events"
    set output to ""
    try
        with timeout of 120 seconds
            set itemCount to count of login items
        end timeout
        with timeout of 20 seconds
            repeat with itemNumber from 1 to itemCount
                set itemName to "Unreadable login item " & itemNumber
                set itemPath to ""
                set itemHidden to "unreadable"
                try
                    set itemName to name of login item itemNumber
                    set itemHidden to false
                    set itemHidden to hidden of login item itemNumber
                    set itemPath to path of login item itemNumber
                on error errMsg number errNum
                    if errNum is -1743 or errNum is -600 or errNum is -609 then error errMsg number errNum
                    if errNum is -1712 and itemHidden is "unreadable" then error errMsg number errNum
                end try
                set output to output & itemName & "|" & itemPath & "|" & itemHidden & "\n"
            end repeat
        end timeout
    on error errMsg number errNum
        return "ERROR|" & errNum & "|" & errMsg
    end try
    return output
end tell)"_s;
}

QList<LoginItemScript> removeLoginItemsScripts(const QList<LoginItemSelector>& selectors) {
    return changingScripts(selectors, removal);
}

QList<LoginItemScript> addLoginItemsScripts(const QList<LoginItemAddition>& additions) {
    return changingScripts(additions, addition);
}

QList<LoginItemScript> hideLoginItemsScripts(const QList<LoginItemHiding>& hidings) {
    return changingScripts(hidings, hiding);
}

QList<qsizetype> ambiguousLoginItems(const QString& output) {
    QList<qsizetype> numbers;
    qsizetype number = 0;
    for (const QStringView line : QStringTokenizer{output, u'\n', Qt::SkipEmptyParts}) {
        ++number;
        if (line.count(u'|') > 2) {
            numbers.append(number);
        }
    }
    return numbers;
}

QString readLoginItemNamesScript(const QList<qsizetype>& numbers) {
    QString steps;
    for (const qsizetype number : numbers) {
        steps += uR"(        try
            set output to output & (name of login item )"_s +
                 QString::number(number) + uR"() & "\n"
        on error
            set output to output & "\n"
        end try
)"_s;
    }
    return uR"(tell application "System Events"
    set output to ""
    with timeout of 20 seconds
)"_s + steps +
           uR"(    end timeout
    return output
end tell)"_s;
}

LoginItemNames parsedLoginItemNames(const QString& output, const QList<qsizetype>& numbers) {
    const QStringList lines = output.split(u'\n');
    LoginItemNames names;
    for (qsizetype place = 0; place < numbers.size() && place < lines.size(); ++place) {
        if (!lines.at(place).isEmpty()) {
            names.insert(numbers.at(place), lines.at(place));
        }
    }
    return names;
}

LoginItemList parsedLoginItems(const QString& output, const LoginItemNames& names) {
    if (const std::optional<ScriptFailure> failure = failureIn(output)) {
        return unreadList(*failure);
    }
    LoginItemList list{{}, true, output};
    qsizetype number = 0;
    for (const QStringView line : QStringTokenizer{output, u'\n', Qt::SkipEmptyParts}) {
        const QString name = names.value(++number);
        const qsizetype afterName = endOfName(line, name);
        const bool isNameKnown = !name.isEmpty() && afterName == name.size();
        const qsizetype afterPath = endOfPath(line, afterName, isNameKnown);
        if (afterPath < 0) {
            continue;
        }
        const QStringView path = line.mid(afterName + 1, afterPath - afterName - 1);
        const QStringView hidden = line.mid(afterPath + 1);
        list.items.append({line.left(afterName).toString(), path == kMissingPath ? QString() : path.toString(),
                           hidden.compare(u"true", Qt::CaseInsensitive) == 0});
        list.hasUnreadable = list.hasUnreadable || hidden == kUnreadable;
    }
    if (output.isEmpty() || (number > 0 && list.items.isEmpty())) { // nothing, or something else
        return unreadList({0, u"The answer of System Events isn’t understood."_s});
    }
    return list;
}

LoginItemAnswers parsedLoginItemAnswers(const QString& output, qsizetype count) {
    LoginItemAnswers parsed{QList<LoginItemAnswer>(count, LoginItemAnswer::Failed)};
    if (const std::optional<ScriptFailure> failure = failureIn(output)) {
        parsed.heldUpBy = failure->isOfPermission() ? failure : std::nullopt;
        return parsed;
    }
    qsizetype place = 0;
    for (const QStringView line : QStringTokenizer{output, u'\n'}) {
        if (place == count) {
            break;
        }
        if (line == u"ok") {
            parsed.answers[place] = LoginItemAnswer::Done;
        } else if (line == u"missing" || line == u"exists") {
            parsed.answers[place] = LoginItemAnswer::Unchanged;
        } else if (line == u"error:-1743") {
            parsed.heldUpBy = ScriptFailure{-1743, u"Not authorized to send Apple events to System Events."_s};
        }
        ++place;
    }
    return parsed;
}

QString shownLine(const LoginItemList& list, const QString& name) {
    if (!name.contains(u'|') && !name.contains(u'\n')) {
        return {};
    }
    const QString lines = u'\n' + list.output;
    const qsizetype start = lines.indexOf(u'\n' + name + u'|');
    if (start < 0) {
        return {};
    }
    const qsizetype end = lines.indexOf(u'\n', start + 1 + name.size());
    return lines.mid(start + 1, end < 0 ? -1 : end - start - 1);
}

} // namespace quorvane
