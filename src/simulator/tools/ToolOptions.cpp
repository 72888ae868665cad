#include "simulator/tools/ToolOptions.h"

#include "simulator/MacPaths.h"

#include <algorithm>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr int kNotSimulatedStatus = 70; // EX_SOFTWARE

enum class Arity { Unknown, Flag, Value };

Arity arityOf(QChar letter, QStringView letters) {
    const qsizetype at = letter == u':' ? -1 : letters.indexOf(letter);
    if (at < 0) {
        return Arity::Unknown;
    }
    return at + 1 < letters.size() && letters[at + 1] == u':' ? Arity::Value : Arity::Flag;
}

/// Reads one word of options ("-rf", "-m755"). A value that isn't in the word is taken from `rest`.
void readWord(const QString& word, QStringView letters, QStringList& rest, ToolOptions& options) {
    for (qsizetype at = 1; at < word.size() && options.complaint.isEmpty(); ++at) {
        const QChar letter = word[at];
        const Arity arity = arityOf(letter, letters);
        if (arity == Arity::Unknown) {
            options.complaint = u"illegal option -- "_s + letter;
        } else if (arity == Arity::Flag) {
            options.given.push_back({letter, {}});
        } else if (at + 1 < word.size()) {
            options.given.push_back({letter, word.mid(at + 1)});
            return;
        } else if (!rest.isEmpty()) {
            options.given.push_back({letter, rest.takeFirst()});
        } else {
            options.complaint = u"option requires an argument -- "_s + letter;
        }
    }
}

} // namespace

bool ToolOptions::has(QChar letter) const {
    return std::any_of(given.begin(), given.end(), [letter](const Given& option) { return option.letter == letter; });
}

QString ToolOptions::value(QChar letter) const {
    const auto last =
        std::find_if(given.rbegin(), given.rend(), [letter](const Given& option) { return option.letter == letter; });
    return last == given.rend() ? QString() : last->value;
}

ToolOptions parseOptions(const QStringList& arguments, QStringView letters) {
    ToolOptions options;
    QStringList rest = arguments.mid(1);
    while (!rest.isEmpty() && rest.first().startsWith(u'-') && rest.first() != u"-"_s && options.complaint.isEmpty()) {
        const QString word = rest.takeFirst();
        if (word == u"--"_s) {
            break;
        }
        readWord(word, letters, rest, options);
    }
    options.operands = rest;
    return options;
}

std::optional<int> refuseOptions(ToolContext& context, const ToolOptions& options, const OptionRules& rules) {
    if (!options.complaint.isEmpty()) {
        context.complain(toolName(context) + u": "_s + options.complaint + u'\n');
        return refuseWithUsage(context, rules);
    }
    for (const ToolOptions::Given& option : options.given) {
        if (!rules.simulated.contains(option.letter)) {
            return notSimulated(context, u'-' + QString(option.letter));
        }
    }
    return std::nullopt;
}

QString toolName(const ToolContext& context) {
    return lastPathComponent(context.arguments.first());
}

int refuseWithUsage(ToolContext& context, const OptionRules& rules) {
    context.complain(rules.usage.toString());
    return rules.usageStatus;
}

int notSimulated(ToolContext& context, const QString& what) {
    context.complain(toolName(context) + u": "_s + what + u": not simulated\n"_s);
    return kNotSimulatedStatus;
}

} // namespace macsim
