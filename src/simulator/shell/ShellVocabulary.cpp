#include "simulator/shell/ShellVocabulary.h"

#include <QSet>

namespace macsim {

using namespace Qt::StringLiterals;

bool isShellReservedWord(const QString& word) {
    static const QSet<QString> kWords{u"if"_s,    u"then"_s,  u"else"_s, u"elif"_s, u"fi"_s,       u"for"_s,
                                      u"while"_s, u"until"_s, u"do"_s,   u"done"_s, u"case"_s,     u"esac"_s,
                                      u"in"_s,    u"[["_s,    u"]]"_s,   u"time"_s, u"function"_s, u"select"_s};
    return kWords.contains(word);
}

bool isUnsupportedShellBuiltin(const QString& name) {
    static const QSet<QString> kNames{
        u"."_s,       u"alias"_s,   u"bg"_s,       u"bind"_s,     u"break"_s,   u"builtin"_s, u"caller"_s,
        u"command"_s, u"compgen"_s, u"complete"_s, u"continue"_s, u"declare"_s, u"dirs"_s,    u"disown"_s,
        u"enable"_s,  u"eval"_s,    u"exec"_s,     u"fc"_s,       u"fg"_s,      u"getopts"_s, u"hash"_s,
        u"help"_s,    u"history"_s, u"jobs"_s,     u"let"_s,      u"local"_s,   u"logout"_s,  u"popd"_s,
        u"printf"_s,  u"pushd"_s,   u"read"_s,     u"readonly"_s, u"return"_s,  u"set"_s,     u"shift"_s,
        u"shopt"_s,   u"source"_s,  u"suspend"_s,  u"times"_s,    u"trap"_s,    u"type"_s,    u"typeset"_s,
        u"ulimit"_s,  u"umask"_s,   u"unalias"_s,  u"unset"_s,    u"wait"_s};
    return kNames.contains(name);
}

bool isUnsupportedShellVariable(const QString& name) {
    static const QSet<QString> kNames{u"CDPATH"_s,     u"DIRSTACK"_s, u"EUID"_s,     u"FUNCNAME"_s, u"GLOBIGNORE"_s,
                                      u"GROUPS"_s,     u"HISTCMD"_s,  u"HOSTNAME"_s, u"HOSTTYPE"_s, u"IFS"_s,
                                      u"LINENO"_s,     u"MACHTYPE"_s, u"OPTARG"_s,   u"OPTIND"_s,   u"OSTYPE"_s,
                                      u"PIPESTATUS"_s, u"PPID"_s,     u"RANDOM"_s,   u"SECONDS"_s,  u"SHELLOPTS"_s,
                                      u"UID"_s,        u"_"_s};
    return kNames.contains(name) || name.startsWith(u"BASH"_s);
}

} // namespace macsim
