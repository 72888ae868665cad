#include "simulator/shell/ShellBuiltins.h"

#include "simulator/TestExpression.h"
#include "simulator/shell/ShellEcho.h"

#include <QHash>
#include <QRegularExpression>

#include <cerrno>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

/// The words of bash 3.2, in which `test` says other things than /bin/test.
constexpr TestWording kTestWording{u"%1: unary operator expected", u"%1: binary operator expected",
                                   u"too many arguments", u"%1: integer expression expected", u"`)' expected"};

int succeed(ShellBuiltinCall&) {
    return 0;
}
int doFail(ShellBuiltinCall&) {
    return 1;
}

int echo(ShellBuiltinCall& call) {
    call.context.output += shellEchoText(call.arguments().mid(1));
    return 0;
}

/// Where -L (the default) or -P says so: true for a path without links.
struct PathOptions {
    bool isPhysical = false;
    QStringList operands;
};

/// Reads the options of cd and pwd; complains and gives nothing for any other option.
std::optional<PathOptions> readPathOptions(ShellBuiltinCall& call, const QString& usage) {
    PathOptions options;
    options.operands = call.arguments().mid(1);
    while (!options.operands.isEmpty() && options.operands[0].startsWith(u'-') && options.operands[0] != u"-"_s) {
        const QString option = options.operands.takeFirst();
        if (option == u"--"_s) {
            break;
        }
        if (option != u"-L"_s && option != u"-P"_s) {
            call.complain(option + u": invalid option"_s);
            call.context.complain(call.arguments()[0] + u": usage: "_s + usage + u'\n');
            return {};
        }
        options.isPhysical = option == u"-P"_s;
    }
    return options;
}

/// The path that cd goes to by the names alone: ".." takes back the name before it, link or not.
QString withoutDots(const QString& absolutePath) {
    QStringList names;
    for (const QString& name : absolutePath.split(u'/', Qt::SkipEmptyParts)) {
        if (name == u".."_s) {
            names = names.mid(0, names.size() - 1);
        } else if (name != u"."_s) {
            names.append(name);
        }
    }
    return u'/' + names.join(u'/');
}

/// Throws FileError when the path isn't a folder that the actor may enter.
void requireFolder(const Volume& volume, const QString& path) {
    if (!volume.isFolder(path)) {
        throw FileError(volume.exists(path) ? ENOTDIR : ENOENT, path);
    }
    volume.list(path);
}

/// Where cd goes, as typed; complains and gives nothing when that isn't known.
std::optional<QString> destination(ShellBuiltinCall& call, const QStringList& operands) {
    const bool goesBack = operands.value(0) == u"-"_s;
    if (!operands.isEmpty() && !goesBack) {
        return operands[0];
    }
    const QString name = goesBack ? u"OLDPWD"_s : u"HOME"_s;
    std::optional<QString> value = call.state.value(name);
    if (!value) {
        call.complain(name + u" not set"_s);
    }
    return value;
}

/// Operands behind the first are ignored, as bash 3.2 does.
int cd(ShellBuiltinCall& call) {
    const std::optional<PathOptions> options = readPathOptions(call, u"cd [-L|-P] [dir]"_s);
    if (!options) {
        return 2;
    }
    const std::optional<QString> typed = destination(call, options->operands);
    if (!typed) {
        return 1;
    }
    const QString named = typed->isEmpty() ? call.context.workingFolder : call.context.absolutePath(*typed);
    try {
        const Volume& volume = call.context.volume;
        const QString path = options->isPhysical ? volume.canonicalPath(named) : withoutDots(named);
        requireFolder(volume, path);
        call.state.enterFolder(path);
    } catch (const FileError& error) {
        call.complain(*typed + u": "_s + error.reason());
        return 1;
    }
    if (options->operands.value(0) == u"-"_s) {
        call.context.print(call.state.workingFolder() + u'\n');
    }
    return 0;
}

int pwd(ShellBuiltinCall& call) {
    const std::optional<PathOptions> options = readPathOptions(call, u"pwd [-LP]"_s);
    if (!options) {
        return 2;
    }
    const QString path = call.context.workingFolder;
    call.context.print((options->isPhysical ? call.context.volume.canonicalPath(path) : path) + u'\n');
    return 0;
}

int exitShell(ShellBuiltinCall& call) {
    const QStringList operands = call.arguments().mid(1);
    bool isNumber = true;
    const qint64 status = operands.isEmpty() ? call.state.lastStatus : operands[0].trimmed().toLongLong(&isNumber);
    if (!isNumber) {
        call.complain(operands[0] + u": numeric argument required"_s);
        call.exits = 255;
    } else if (operands.size() > 1) {
        call.complain(u"too many arguments"_s);
        call.exits = 1;
    } else {
        call.exits = static_cast<int>(status & 0xff);
    }
    return *call.exits;
}

int test(ShellBuiltinCall& call) {
    QStringList operands = call.arguments().mid(1);
    if (call.arguments()[0] == u"["_s && (operands.isEmpty() || operands.takeLast() != u"]"_s)) {
        call.complain(u"missing `]'"_s);
        return 2;
    }
    QString error;
    const int status = evaluateTest(operands, call.context, error, kTestWording);
    if (!error.isEmpty()) {
        call.complain(error);
    }
    return status;
}

/// "NAME" or "NAME=VALUE". The attribute alone, of a name that has no value yet, isn't simulated, and neither is an option.
int exportVariables(ShellBuiltinCall& call) {
    static const QRegularExpression form(u"\\A([A-Za-z_][A-Za-z0-9_]*)(?:=(.*))?\\z"_s,
                                         QRegularExpression::DotMatchesEverythingOption);
    int status = 0;
    for (const QString& operand : call.arguments().mid(1)) {
        const QRegularExpressionMatch match = form.match(operand);
        const QString name = match.captured(1);
        const std::optional<QString> value =
            match.hasCaptured(2) ? std::optional(match.captured(2)) : call.state.value(name);
        if (match.hasMatch() && value) {
            call.state.exportValue(name, *value);
        } else {
            call.complain(match.hasMatch() ? operand + u": not simulated without a value"_s
                                           : u"`"_s + operand + u"': not a valid identifier"_s);
            status = 1;
        }
    }
    return status;
}

} // namespace

void ShellBuiltinCall::complain(const QString& message) {
    context.complain(u"sh: line %1: "_s.arg(line - 1) + arguments()[0] + u": "_s + message + u'\n');
}

ShellBuiltin findShellBuiltin(const QString& name) {
    static const QHash<QString, ShellBuiltin> kBuiltins{
        {u":"_s, succeed}, {u"true"_s, succeed},   {u"false"_s, doFail}, {u"cd"_s, cd},  {u"pwd"_s, pwd},
        {u"echo"_s, echo}, {u"exit"_s, exitShell}, {u"test"_s, test},    {u"["_s, test}, {u"export"_s, exportVariables},
    };
    return kBuiltins.value(name, nullptr);
}

bool isSpecialShellBuiltin(const QString& name) {
    return name == u":"_s || name == u"exit"_s || name == u"export"_s;
}

} // namespace macsim
