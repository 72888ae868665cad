#include "simulator/tools/Env.h"

#include "simulator/tools/ToolOptions.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr OptionRules kEnvRules{u"0iP:S:u:v", u"iu",
                                u"usage: env [-0iv] [-P utilpath] [-S string] [-u name]\n"
                                u"           [name=value ...] [utility [argument ...]]\n",
                                1};
constexpr QStringView kDefaultSearchPath = u"/usr/bin:/bin"; // where execvp looks when there is no PATH

void changeEnvironment(const ToolOptions& options, QStringList& words, QMap<QString, QString>& environment) {
    if (options.has(u'i') || (!words.isEmpty() && words.first() == u"-"_s)) {
        environment.clear();
    }
    if (!words.isEmpty() && words.first() == u"-"_s) {
        words.removeFirst();
    }
    for (const ToolOptions::Given& option : options.given) {
        if (option.letter == u'u') {
            environment.remove(option.value);
        }
    }
    while (!words.isEmpty() && words.first().contains(u'=')) {
        const QString word = words.takeFirst();
        const qsizetype equals = word.indexOf(u'=');
        environment.insert(word.left(equals), word.mid(equals + 1));
    }
}

void printEnvironment(ToolContext& context) {
    for (auto entry = context.environment.cbegin(); entry != context.environment.cend(); ++entry) {
        context.print(entry.key() + u'=' + entry.value() + u'\n');
    }
}

CommandLookUp findAlongSearchPath(const QString& name, const ToolContext& context) {
    if (context.environment.contains(u"PATH"_s)) {
        return findCommand(name, context);
    }
    ToolContext withDefault = context;
    withDefault.environment.insert(u"PATH"_s, kDefaultSearchPath.toString());
    return findCommand(name, withDefault);
}

int runUtility(ToolContext& context, const QStringList& words) {
    const QString& name = words.first();
    const CommandLookUp command = findAlongSearchPath(name, context);
    switch (command.outcome) {
    case CommandLookUp::Outcome::Missing:
        context.complain(u"env: "_s + name + u": No such file or directory\n"_s);
        return 127;
    case CommandLookUp::Outcome::NotExecutable:
        context.complain(u"env: "_s + name + u": Permission denied\n"_s);
        return 126;
    case CommandLookUp::Outcome::Found:
        break;
    }
    context.arguments = words;
    return runCommand(command, context);
}

} // namespace

int runEnv(ToolContext& context) {
    const ToolOptions options = parseOptions(context.arguments, kEnvRules.letters);
    if (const std::optional<int> refused = refuseOptions(context, options, kEnvRules)) {
        return *refused;
    }
    QStringList words = options.operands;
    changeEnvironment(options, words, context.environment);
    if (words.isEmpty()) {
        printEnvironment(context);
        return 0;
    }
    return runUtility(context, words);
}

} // namespace macsim
