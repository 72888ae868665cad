#include "fakes/AskedOfSystemEvents.h"

#include <QRegularExpression>
#include <QStringList>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kReading =
    u"tell application \"System Events\"\n"
    "    set output to \"\"\n"
    "    try\n"
    "        with timeout of 120 seconds\n"
    "            set itemCount to count of login items\n"
    "        end timeout\n"
    "        with timeout of 20 seconds\n"
    "            repeat with itemNumber from 1 to itemCount\n"
    "                set itemName to \"Unreadable login item \" & itemNumber\n"
    "                set itemPath to \"\"\n"
    "                set itemHidden to \"unreadable\"\n"
    "                try\n"
    "                    set itemName to name of login item itemNumber\n"
    "                    set itemHidden to false\n"
    "                    set itemHidden to hidden of login item itemNumber\n"
    "                    set itemPath to path of login item itemNumber\n"
    "                on error errMsg number errNum\n"
    "                    if errNum is -1743 or errNum is -600 or errNum is -609 then error errMsg number errNum\n"
    "                    if errNum is -1712 and itemHidden is \"unreadable\" then error errMsg number errNum\n"
    "                end try\n"
    "                set output to output & itemName & \"|\" & itemPath & \"|\" & itemHidden & \"\\n\"\n"
    "            end repeat\n"
    "        end timeout\n"
    "    on error errMsg number errNum\n"
    "        return \"ERROR|\" & errNum & \"|\" & errMsg\n"
    "    end try\n"
    "    return output\n"
    "end tell"_s;

const QString kChangesStart = u"tell application \"System Events\"\n"
                              "    set output to \"\"\n"
                              "    try\n"
                              "        with timeout of 120 seconds\n"
                              "            count login items\n"
                              "        end timeout\n"
                              "    on error errMsg number errNum\n"
                              "        return \"ERROR|\" & errNum & \"|\" & errMsg\n"
                              "    end try\n"
                              "    with timeout of 20 seconds\n"_s;
const QString kChangesEnd = u"    end timeout\n"
                            "    return output\n"
                            "end tell"_s;
const QString kStepEnd = u"\n"
                         "                set output to output & \"ok\\n\"\n"
                         "            end if\n"
                         "        on error number errNum\n"
                         "            set output to output & \"error:\" & errNum & \"\\n\"\n"
                         "        end try\n"_s;

/// A text of AppleScript's, without the quotes.
const QString kText = u"((?:[^\"\\\\]|\\\\[\"\\\\])*)"_s;

QString escaped(const QString& text) {
    return QRegularExpression::escape(text);
}

QString quoted(const QString& start) {
    return escaped(start + u" \""_s) + kText + u'"';
}

/// Groups: path and name, or name alone.
QString conditionPattern() {
    return u"(?:"_s + quoted(u"path is"_s) + u"(?: and "_s + quoted(u"name is"_s) + u")?|"_s + quoted(u"name is"_s) +
           u')';
}

QRegularExpression deletionPattern() {
    const QString items =
        escaped(u"(every login item whose "_s) + u"(?<items>"_s + conditionPattern() + u')' + escaped(u")"_s);
    return QRegularExpression(escaped(u"        try\n            if (count of "_s) + items +
                              escaped(u") is 0 then\n                set output to output & \"missing\\n\"\n"
                                      "            else\n                delete (every login item whose "_s) +
                              u"\\k<items>"_s + escaped(u")"_s + kStepEnd));
}

QRegularExpression hidingPattern() {
    const QString items =
        escaped(u"(every login item whose "_s) + u"(?<items>"_s + conditionPattern() + u')' + escaped(u")"_s);
    return QRegularExpression(escaped(u"        try\n            if (count of "_s) + items +
                              escaped(u") is 0 then\n                set output to output & \"missing\\n\"\n"
                                      "            else\n                set hidden of (every login item whose "_s) +
                              u"\\k<items>"_s + escaped(u") to "_s) + u"(?<hidden>true|false)"_s + escaped(kStepEnd));
}

QRegularExpression additionPattern() {
    return QRegularExpression(
        escaped(u"        try\n            if (count of (every login item whose path is \""_s) + u"(?<path>"_s + kText +
        u')' +
        escaped(u"\")) > 0 then\n                set output to output & \"exists\\n\"\n"
                "            else\n                make new login item at end of login items with "
                "properties {path:\""_s) +
        u"\\k<path>"_s + escaped(u"\", hidden:"_s) + u"(?<hidden>true|false)"_s + escaped(u"}"_s + kStepEnd));
}

QString unescaped(const QString& literal) {
    QString text;
    for (qsizetype place = 0; place < literal.size(); ++place) {
        place += literal.at(place) == u'\\' ? 1 : 0;
        text.append(literal.at(place));
    }
    return text;
}

std::optional<AskedOfSystemEvents::Step> stepAt(const QString& script, qsizetype& place) {
    static const QRegularExpression deletion = deletionPattern();
    static const QRegularExpression addition = additionPattern();
    static const QRegularExpression hiding = hidingPattern();
    const auto match = [&](const QRegularExpression& pattern) {
        return pattern.match(script, place, QRegularExpression::NormalMatch,
                             QRegularExpression::AnchorAtOffsetMatchOption);
    };
    if (const auto found = match(addition); found.hasMatch()) {
        place = found.capturedEnd();
        return AskedOfSystemEvents::Step{
            true, {}, unescaped(found.captured(u"path"_s)), found.captured(u"hidden"_s) == u"true"};
    }
    auto found = match(deletion);
    const bool isHiding = !found.hasMatch();
    if (isHiding) {
        found = match(hiding);
    }
    if (!found.hasMatch()) {
        return std::nullopt;
    }
    place = found.capturedEnd();
    const QString name = found.captured(3) + found.captured(4); // one of the two at most
    const bool hidden = isHiding && found.captured(u"hidden"_s) == u"true";
    return AskedOfSystemEvents::Step{false, unescaped(name), unescaped(found.captured(2)), hidden, isHiding};
}

/// The numbers of the items whose names a script reads; none for any other script.
QList<qsizetype> namesAskedFor(const QString& script) {
    static const QRegularExpression item(u"login item ([0-9]+)\\)"_s);
    QList<qsizetype> numbers;
    QString whole = u"tell application \"System Events\"\n"
                    "    set output to \"\"\n"
                    "    with timeout of 20 seconds\n"_s;
    for (const QRegularExpressionMatch& match : item.globalMatch(script)) {
        numbers.append(match.captured(1).toLongLong());
        whole += u"        try\n"
                 "            set output to output & (name of login item "_s +
                 match.captured(1) +
                 u") & \"\\n\"\n"
                 "        on error\n"
                 "            set output to output & \"\\n\"\n"
                 "        end try\n"_s;
    }
    whole += kChangesEnd;
    return script == whole ? numbers : QList<qsizetype>();
}

} // namespace

bool AskedOfSystemEvents::Step::isFor(const QString& nameOfItem, const QString& pathOfItem) const {
    return (name.isEmpty() || nameOfItem.compare(name, Qt::CaseInsensitive) == 0) &&
           (path.isEmpty() || pathOfItem.compare(path, Qt::CaseInsensitive) == 0);
}

QString AskedOfSystemEvents::Step::purpose() const {
    if (isAddition) {
        return u"add "_s + path + (hidden ? u" hidden:true"_s : u" hidden:false"_s);
    }
    const QString verb =
        isHiding ? (hidden ? u"set hidden:true where "_s : u"set hidden:false where "_s) : u"delete where "_s;
    QStringList conditions;
    if (!path.isEmpty()) {
        conditions.append(u"path is "_s + path);
    }
    if (!name.isEmpty()) {
        conditions.append(u"name is "_s + name);
    }
    return verb + conditions.join(u" and "_s);
}

QString AskedOfSystemEvents::purpose() const {
    QStringList purposes;
    if (!numbers.isEmpty()) {
        purposes.append(u"names of"_s);
        for (const qsizetype number : numbers) {
            purposes.append(QString::number(number));
        }
        return purposes.join(u' ');
    }
    for (const Step& step : steps) {
        purposes.append(step.purpose());
    }
    return steps.isEmpty() ? u"list"_s : purposes.join(u"; "_s);
}

std::optional<AskedOfSystemEvents> askedOfSystemEvents(const QString& script) {
    AskedOfSystemEvents asked;
    if (script == kReading) {
        return asked;
    }
    asked.numbers = namesAskedFor(script);
    if (!asked.numbers.isEmpty()) {
        return asked;
    }
    if (!script.startsWith(kChangesStart) || !script.endsWith(kChangesEnd)) {
        return std::nullopt;
    }
    qsizetype place = kChangesStart.size();
    while (place < script.size() - kChangesEnd.size()) {
        const std::optional<AskedOfSystemEvents::Step> step = stepAt(script, place);
        if (!step) {
            return std::nullopt;
        }
        asked.steps.append(*step);
    }
    return asked.steps.isEmpty() ? std::nullopt : std::optional(asked);
}

} // namespace quorvane
