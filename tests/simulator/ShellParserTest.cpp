#include "simulator/shell/ShellParser.h"

#include "simulator/ShellBench.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QStringList>

using namespace macsim;
using namespace Qt::StringLiterals;

namespace {

QString describe(const ShellList& list);

/// 'quoted', unquoted, $name, "$name", $(commands), ~user
QString describe(const ShellWord& word) {
    QString text;
    for (const ShellWordPart& part : word) {
        const QString quote = part.isQuoted ? u"\""_s : QString();
        switch (part.kind) {
        case ShellWordPart::Kind::Text:
            text += part.isQuoted ? u'\'' + part.text + u'\'' : part.text;
            break;
        case ShellWordPart::Kind::Variable:
            text += quote + u'$' + part.text + quote;
            break;
        case ShellWordPart::Kind::Substitution:
            text += quote + u"$("_s + describe(*part.commands) + u')' + quote;
            break;
        case ShellWordPart::Kind::Home:
            text += u"<~"_s + part.text + u'>';
        }
    }
    return text;
}

QString describe(const ShellRedirection& redirection) {
    const QString descriptor = QString::number(redirection.descriptor);
    switch (redirection.kind) {
    case ShellRedirection::Kind::Read:
        return descriptor + u'<' + describe(redirection.target);
    case ShellRedirection::Kind::Write:
        return descriptor + u'>' + describe(redirection.target);
    case ShellRedirection::Kind::Append:
        return descriptor + u">>"_s + describe(redirection.target);
    case ShellRedirection::Kind::Duplicate:
        break;
    }
    return descriptor + u">&"_s + QString::number(redirection.source);
}

QString describe(const ShellCommand& command) {
    QStringList parts;
    for (const ShellAssignment& assignment : command.assignments) {
        parts.append(assignment.name + u":="_s + describe(assignment.value));
    }
    for (const ShellWord& word : command.words) {
        parts.append(describe(word));
    }
    if (command.body) {
        const bool isGroup = command.kind == ShellCommand::Kind::Group;
        parts.append((isGroup ? u"{"_s : u"("_s) + describe(*command.body) + (isGroup ? u'}' : u')'));
    }
    for (const ShellRedirection& redirection : command.redirections) {
        parts.append(describe(redirection));
    }
    return parts.join(u' ');
}

QString describe(const ShellAndOr& item) {
    QString text;
    for (const ShellPipeline& pipeline : item.pipelines) {
        switch (pipeline.condition) {
        case ShellPipeline::Condition::Always:
            break;
        case ShellPipeline::Condition::AfterSuccess:
            text += u" && "_s;
            break;
        case ShellPipeline::Condition::AfterFailure:
            text += u" || "_s;
        }
        QStringList commands;
        for (const ShellCommand& command : pipeline.commands) {
            commands.append(describe(command));
        }
        text += (pipeline.isNegated ? u"! "_s : QString()) + commands.join(u" | "_s);
    }
    return text + (item.isInBackground ? u" &"_s : QString());
}

QString describe(const ShellList& list) {
    QStringList items;
    for (const ShellAndOr& item : list.items) {
        items.append(describe(item));
    }
    return items.join(u"; "_s);
}

struct Parsed {
    const char* text;
    const char* tree;
};

class ShellTree : public testing::TestWithParam<Parsed> {};

TEST_P(ShellTree, isWhatTheTextSays) {
    const ShellList list = parseShellText(QString::fromUtf8(GetParam().text));
    EXPECT_EQ(describe(list), QString::fromUtf8(GetParam().tree)) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(Words, ShellTree,
                         testing::Values(Parsed{"a b  c\t d", "a b c d"},                                        //
                                         Parsed{"'a b'", "'a b'"},                                               //
                                         Parsed{"a'b'\"c\"d", "a'bc'd"},                                         //
                                         Parsed{"''", "''"},                                                     //
                                         Parsed{"\"\"", "''"},                                                   //
                                         Parsed{"a\\ b", "a' 'b"},                                               //
                                         Parsed{"\\'", "'''"},                                                   //
                                         Parsed{"'a\\'", "'a\\'"},                                               //
                                         Parsed{"\"\\a\\$\\`\\\"\\\\\"", "'\\a$`\"\\'"}, Parsed{"a\\\nb", "ab"}, //
                                         Parsed{"\"a\\\nb\"", "'ab'"},                                           //
                                         Parsed{"'a\\\nb'", "'a\\\nb'"},                                         //
                                         Parsed{"a \\\n b", "a b"},                                              //
                                         Parsed{"a\\", "a'\\'"},                                                 //
                                         Parsed{"a#b #c", "a#b"},                                                //
                                         Parsed{"# a\nb", "b"},                                                  //
                                         Parsed{"a # 'b\nc", "a; c"},                                            //
                                         Parsed{"# a \\\nb", "b"},                                               //
                                         Parsed{"echo if then }", "echo if then }"},
                                         Parsed{"echo {a} {} a{ {a,b", "echo {a} {} a{ {a,b"},
                                         Parsed{"'if' \"a\"", "'if' 'a'"}, //
                                         Parsed{"", ""},                   //
                                         Parsed{" \n\t\n ", ""},           //
                                         Parsed{"a\r", "a\r"}));

INSTANTIATE_TEST_SUITE_P(Expansions, ShellTree,
                         testing::Values(Parsed{"$A", "$A"},                                  //
                                         Parsed{"\"$A\"", "''\"$A\""},                        //
                                         Parsed{"${A}b$C-", "$Ab$C-"},                        //
                                         Parsed{"'$A'", "'$A'"},                              //
                                         Parsed{"\\$A", "'$'A"},                              //
                                         Parsed{"$? $$", "$? $$"},                            //
                                         Parsed{"a$ \"$\" $/ $%", "a$ '$' $/ $%"},            //
                                         Parsed{"$(a b)", "$(a b)"},                          //
                                         Parsed{"$()", "$()"},                                //
                                         Parsed{"$(a $(b) c)d", "$(a $(b) c)d"},              //
                                         Parsed{"\"$(a \"b c\")\"", "''\"$(a 'b c')\""},      //
                                         Parsed{"$( (a) )", "$((a))"},                        //
                                         Parsed{"$(a ')' # )\n)", "$(a ')')"},                //
                                         Parsed{"`a b`", "$(a b)"},                           //
                                         Parsed{"`a \\`b\\``", "$(a $(b))"},                  //
                                         Parsed{"`a \\$b \\\\c`", "$(a $b 'c')"},             //
                                         Parsed{"\"`a \\\"b c\\\"`\"", "''\"$(a 'b c')\""},   //
                                         Parsed{"`a \\\"b`", "$(a '\"'b)"},                   //
                                         Parsed{"~ ~/a ~b/c ~b", "<~> <~>/a <~b>/c <~b>"},    //
                                         Parsed{"a~ \\~ \"~\" ~\"a\"", "a~ '~' '~' ~'a'"},    //
                                         Parsed{"~$A ~\\a", "~$A ~'a'"},                      //
                                         Parsed{"a:~ a=~", "a:~ a=~"},                        //
                                         Parsed{"A=~/b:~:c:~d/e", "A:=<~>/b:<~>:c:<~d>/e"})); //

INSTANTIATE_TEST_SUITE_P(Assignments, ShellTree,
                         testing::Values(Parsed{"A=b", "A:=b"},                        //
                                         Parsed{"A=", "A:="},                          //
                                         Parsed{"_a1='b c'd", "_a1:='b c'd"},          //
                                         Parsed{"A=1 B=$A c D=2", "A:=1 B:=$A c D=2"}, //
                                         Parsed{"A=1 >b c", "A:=1 c 1>b"},             //
                                         Parsed{"1A=b", "1A=b"},                       //
                                         Parsed{"'A'=b", "'A'=b"},                     //
                                         Parsed{"A\\=b", "A'='b"},                     //
                                         Parsed{"$A=b", "$A=b"},                       //
                                         Parsed{"A={a,b}", "A:={a,b}"},                //
                                         Parsed{"A==", "A:=="}));

INSTANTIATE_TEST_SUITE_P(Lists, ShellTree,
                         testing::Values(Parsed{"a;b", "a; b"},                      //
                                         Parsed{"a ; b ;", "a; b"},                  //
                                         Parsed{"a\nb\n\n\nc\n", "a; b; c"},         //
                                         Parsed{"a&&b||c", "a && b || c"},           //
                                         Parsed{"a &\\\n& b", "a && b"},             //
                                         Parsed{"a &&\n\n# c\nb", "a && b"},         //
                                         Parsed{"a | b|c", "a | b | c"},             //
                                         Parsed{"a |\nb", "a | b"},                  //
                                         Parsed{"a&b", "a &; b"},                    //
                                         Parsed{"a && b &", "a && b &"},             //
                                         Parsed{"! a | b && ! c", "! a | b && ! c"}, //
                                         Parsed{"!a", "!a"},                         //
                                         Parsed{"(a;b)", "(a; b)"},                  //
                                         Parsed{"( (a) )", "((a))"},                 //
                                         Parsed{"(a)|(b)&&(c)", "(a) | (b) && (c)"}, //
                                         Parsed{"{ a; b; }", "{a; b}"},              //
                                         Parsed{"{\na\n}", "{a}"},                   //
                                         Parsed{"{ (a) }", "{(a)}"},                 //
                                         Parsed{"{ echo }; }", "{echo }}"},          //
                                         Parsed{"{a", "{a"},                         //
                                         Parsed{"(a) >b 2>&1", "(a) 1>b 2>&1"},      //
                                         Parsed{"pmset -a standby 0 ; mdutil -a -i off || true",
                                                "pmset -a standby 0; mdutil -a -i off || true"}));

INSTANTIATE_TEST_SUITE_P(Redirections, ShellTree,
                         testing::Values(Parsed{"a <b >c", "a 0<b 1>c"},                                             //
                                         Parsed{"a 2> b 2>>c", "a 2>b 2>>c"},                                        //
                                         Parsed{"a>b", "a 1>b"},                                                     //
                                         Parsed{"a 2>&1 1>&2 >&2", "a 2>&1 1>&2 1>&2"}, Parsed{"a2>b", "a2 1>b"},    //
                                         Parsed{"a 2 >b", "a 2 1>b"},                                                //
                                         Parsed{"a '2'>b", "a '2' 1>b"},                                             //
                                         Parsed{">a", "1>a"},                                                        //
                                         Parsed{">a b", "b 1>a"},                                                    //
                                         Parsed{"a >~/b>'c d'", "a 1><~>/b 1>'c d'"}, Parsed{"a >$(b)", "a 1>$(b)"}, //
                                         Parsed{"a 3>&1 0<b", "a 3>&1 0<b"}));

struct Rejected {
    const char* text;
    const char* message;
    int line = 1;
};

class ShellRejects : public testing::TestWithParam<Rejected> {};

TEST_P(ShellRejects, theTextWithItsReasonAndLine) {
    try {
        const ShellList list = parseShellText(QString::fromUtf8(GetParam().text));
        FAIL() << GetParam().text << " was taken for " << describe(list).toStdString();
    } catch (const ShellSyntaxError& error) {
        EXPECT_EQ(error.message(), QString::fromUtf8(GetParam().message)) << GetParam().text;
        EXPECT_EQ(error.line(), GetParam().line) << GetParam().text;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Unterminated, ShellRejects,
    testing::Values(Rejected{"echo 'a", "unexpected EOF while looking for matching `''"},
                    Rejected{"a\necho \"a\n\n", "unexpected EOF while looking for matching `\"'", 2},
                    Rejected{"echo \"a\\\"", "unexpected EOF while looking for matching `\"'"},
                    Rejected{"echo `a", "unexpected EOF while looking for matching ``'"},
                    Rejected{"echo ${a", "unexpected EOF while looking for matching `}'"},
                    Rejected{"echo ${", "unexpected EOF while looking for matching `}'"},
                    Rejected{"echo $(a", "unexpected end of file"}, //
                    Rejected{"echo $(a # )", "unexpected end of file"},
                    Rejected{"echo \"$(a\"", "unexpected EOF while looking for matching `\"'"},
                    Rejected{"echo `'`", "unexpected EOF while looking for matching `''"},
                    Rejected{"(a", "unexpected end of file"},                                                     //
                    Rejected{"{ a }", "unexpected end of file"}, Rejected{"a &&", "unexpected end of file"},      //
                    Rejected{"a |\n\n", "unexpected end of file", 3}, Rejected{"a ||", "unexpected end of file"}, //
                    Rejected{"!", "unexpected end of file"},                                                      //
                    Rejected{"a >", "unexpected end of file"}));

INSTANTIATE_TEST_SUITE_P(Misplaced, ShellRejects,
                         testing::Values(Rejected{";", "unexpected token `;'"},         //
                                         Rejected{"a;;b", "`;;' is not supported"},     //
                                         Rejected{"a; ;b", "unexpected token `;'"},     //
                                         Rejected{"a\n; b", "unexpected token `;'", 2}, //
                                         Rejected{"a & ; b", "unexpected token `;'"},   //
                                         Rejected{"&& a", "unexpected token `&&'"},     //
                                         Rejected{"a && || b", "unexpected token `||'"},
                                         Rejected{"a | | b", "unexpected token `|'"},      //
                                         Rejected{"a & & b", "unexpected token `&'"},      //
                                         Rejected{"| a", "unexpected token `|'"},          //
                                         Rejected{"a) b", "unexpected token `)'"},         //
                                         Rejected{"()", "unexpected token `)'"},           //
                                         Rejected{"( )", "unexpected token `)'"},          //
                                         Rejected{"{ }", "unexpected token `}'"},          //
                                         Rejected{"}", "unexpected token `}'"},            //
                                         Rejected{"a; }", "unexpected token `}'"},         //
                                         Rejected{"{ (a }", "unexpected end of file"},     //
                                         Rejected{"( { a; ) }", "unexpected token `)'"},   //
                                         Rejected{"a (b)", "unexpected token `('"},        //
                                         Rejected{"(a) b", "unexpected token `b'"},        //
                                         Rejected{"(a) (b)", "unexpected token `('"},      //
                                         Rejected{"{ a; } b", "unexpected token `b'"},     //
                                         Rejected{"A=1 (a)", "unexpected token `('"},      //
                                         Rejected{"A=(a b)", "unexpected token `('"},      //
                                         Rejected{"a > > b", "unexpected token `>'"},      //
                                         Rejected{"a > ; b", "unexpected token `;'"},      //
                                         Rejected{"a >\nb", "unexpected token `newline'"}, //
                                         Rejected{"a >> && b", "unexpected token `&&'"},   //
                                         Rejected{"! ! a", "unexpected token `!'"},        //
                                         Rejected{"a | ! b", "unexpected token `!'"},      //
                                         Rejected{"f() { a; }", "unexpected token `('"},   //
                                         Rejected{"$(a;;)", "`;;' is not supported"},      //
                                         Rejected{"echo \"$(\n\n)\" `\n ;`", "unexpected token `;'", 4}));

INSTANTIATE_TEST_SUITE_P(Unsupported, ShellRejects,
                         testing::Values(Rejected{"a <<EOF\nEOF", "`<<' is not supported"}, //
                                         Rejected{"a <<<b", "`<<' is not supported"},       //
                                         Rejected{"a <<-b", "`<<' is not supported"},       //
                                         Rejected{"a &>b", "`&>' is not supported"},        //
                                         Rejected{"a |& b", "`|&' is not supported"},       //
                                         Rejected{"a >|b", "`>|' is not supported"},        //
                                         Rejected{"a <>b", "`<>' is not supported"},        //
                                         Rejected{"a <&3", "`<&' is not supported"},        //
                                         Rejected{"a <(b)", "`<(' is not supported"},       //
                                         Rejected{"a >(b)", "`>(' is not supported"},       //
                                         Rejected{"a >&-", "`>&' is not supported"},        //
                                         Rejected{"a >&b", "`>&' is not supported"},        //
                                         Rejected{"a >&2b", "`>&' is not supported"},       //
                                         Rejected{"a >&$B", "`>&' is not supported"},       //
                                         Rejected{"a 0>b", "`0>' is not supported"},        //
                                         Rejected{"a 3<b", "`3<' is not supported"},        //
                                         Rejected{"a 256>b", "`256' is not supported"},     //
                                         Rejected{"a 99999999999>b", "`99999999999' is not supported"},
                                         Rejected{"((1))", "`((' is not supported"},             //
                                         Rejected{"echo $((1+1))", "`$((' is not supported"},    //
                                         Rejected{"echo \"$((1))\"", "`$((' is not supported"},  //
                                         Rejected{"echo $[1+1]", "`$[' is not supported"},       //
                                         Rejected{"echo $'a'", "`$'' is not supported"},         //
                                         Rejected{"echo $\"a\"", "`$\"' is not supported"},      //
                                         Rejected{"echo $1", "`$1' is not supported"},           //
                                         Rejected{"echo $0", "`$0' is not supported"},           //
                                         Rejected{"echo $#", "`$#' is not supported"},           //
                                         Rejected{"echo \"$@\"", "`$@' is not supported"},       //
                                         Rejected{"echo $*", "`$*' is not supported"},           //
                                         Rejected{"echo $!", "`$!' is not supported"},           //
                                         Rejected{"echo $-", "`$-' is not supported"},           //
                                         Rejected{"echo ${a:-b}", "`${a:' is not supported"},    //
                                         Rejected{"echo ${a%b}", "`${a%' is not supported"},     //
                                         Rejected{"echo ${#a}", "`${#' is not supported"},       //
                                         Rejected{"echo ${!a}", "`${!' is not supported"},       //
                                         Rejected{"echo ${}", "`${}' is not supported"},         //
                                         Rejected{"echo ${1}", "`${1' is not supported"},        //
                                         Rejected{"echo ${?}", "`${?' is not supported"},        //
                                         Rejected{"echo {a,b}", "`{…}' is not supported"},       //
                                         Rejected{"echo a{1..3}", "`{…}' is not supported"},     //
                                         Rejected{"echo {a,{b}}", "`{…}' is not supported"},     //
                                         Rejected{"echo {$A,b}", "`{…}' is not supported"},      //
                                         Rejected{"a >{b,c}", "`{…}' is not supported"},         //
                                         Rejected{"A+=b", "`A+=b' is not supported"},            //
                                         Rejected{"A[0]=b", "`A[0]=b' is not supported"},        //
                                         Rejected{"IFS=,", "`IFS=' is not supported"},           //
                                         Rejected{"echo $RANDOM", "`$RANDOM' is not supported"}, //
                                         Rejected{"echo ${BASH_VERSION}", "`$BASH_VERSION' is not supported"},
                                         Rejected{"a; b\n'eval' c", "`eval' is not supported", 2},
                                         Rejected{"A=1 exec b", "`exec' is not supported"}, //
                                         Rejected{">a . b", "`.' is not supported"}));

class ShellKeyword : public testing::TestWithParam<const char*> {};

TEST_P(ShellKeyword, isRefusedWhereACommandStarts) {
    const QString word = QString::fromUtf8(GetParam());
    for (const QString& before :
         {u""_s, u"a; "_s, u"a && "_s, u"a | "_s, u"! "_s, u"("_s, u"{ "_s, u"$("_s, u"a &\n"_s}) {
        EXPECT_THROW(parseShellText(before + word + u" b"_s), ShellSyntaxError) << (before + word).toStdString();
    }
    EXPECT_NO_THROW(parseShellText(u"echo "_s + word));
}

INSTANTIATE_TEST_SUITE_P(Reserved, ShellKeyword,
                         testing::Values("if", "then", "else", "elif", "fi", "for", "while", "until", "do", "done",
                                         "case", "esac", "function", "in", "[[", "]]", "select", "time"));
INSTANTIATE_TEST_SUITE_P(Builtin, ShellKeyword,
                         testing::Values("eval", "exec", ".", "source", "set", "unset", "readonly", "trap", "alias",
                                         "read", "local", "return", "shift", "wait", "jobs", "ulimit", "umask",
                                         "command", "type", "hash", "getopts", "printf", "let", "declare", "typeset",
                                         "break", "continue", "unalias", "times", "shopt", "builtin", "pushd", "popd"));

TEST(ShellParser, aNullCharacterIsRefused) {
    EXPECT_THROW(parseShellText(u"echo a"_s + QChar::Null + u"b"_s), ShellSyntaxError);
}

QString nested(const QString& opening, const QString& closing, int depth) {
    return opening.repeated(depth) + u"a"_s + closing.repeated(depth);
}

TEST(ShellParser, nestingHasALimit) {
    for (const auto& [opening, closing] : {std::pair(u"( "_s, u" )"_s), std::pair(u"{ "_s, u"; }"_s),
                                           std::pair(u"$("_s, u")"_s), std::pair(u"\"$("_s, u")\""_s)}) {
        EXPECT_NO_THROW(parseShellText(nested(opening, closing, 200)));
        EXPECT_THROW(parseShellText(nested(opening, closing, 201)), ShellSyntaxError);
        EXPECT_THROW(parseShellText(nested(opening, closing, 100000)), ShellSyntaxError);
        EXPECT_THROW(parseShellText(opening.repeated(100000)), ShellSyntaxError);
    }
    EXPECT_THROW(parseShellText(nested(u"$("_s, u")"_s, 200).replace(u"a"_s, u"`a`"_s)), ShellSyntaxError);
}

TEST(ShellParser, aLongTextTakesLinearTime) {
    const QStringList pieces{u"echo 'a' \"b $C\" | cat >d 2>&1 && (e; f) || `g` ; "_s,
                             u"1"_s,
                             u"{"_s,
                             u"a\\\n"_s,
                             u"x{a"_s,
                             u"echo ~/a:~/b & "_s,
                             u"A=~:"_s};
    for (const QString& piece : pieces) {
        const QString text = piece.repeated(1000000 / static_cast<int>(piece.size()));
        QElapsedTimer timer;
        timer.start();
        EXPECT_NO_THROW(parseShellText(text)) << piece.toStdString();
        EXPECT_LT(timer.elapsed(), 20000) << piece.toStdString();
    }
}

} // namespace
