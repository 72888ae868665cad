#include "simulator/shell/ShellParser.h"

#include "simulator/shell/ShellCursor.h"
#include "simulator/shell/ShellRedirectionReader.h"
#include "simulator/shell/ShellVocabulary.h"
#include "simulator/shell/ShellWordReader.h"
#include "simulator/shell/ShellWords.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

using Condition = ShellPipeline::Condition;

constexpr int kMaximumDepth = 200; // of nested ( ), { }, $( ) and backquotes

enum class Closer : char16_t { EndOfText = u'\0', Parenthesis = u')', Brace = u'}' };

/// A descent through the grammar: list, and-or, pipeline, command. It reads each character once.
class Parser final : private ShellSubstitutionReader {
public:
    Parser(QStringView text, int line, int depth)
        : m_cursor(text, line)
        , m_depth(depth) {}

    ShellList readText() { return readList(Closer::EndOfText); }

private:
    ShellList readList(Closer closer);
    ShellAndOr readAndOr();
    ShellPipeline readPipeline();
    ShellCommand readCommand();
    ShellCommand readSimpleCommand();
    ShellCommand readCompound(ShellCommand::Kind kind, Closer closer);
    void addWord(ShellCommand& command);
    void addRedirection(ShellCommand& command);
    ShellWord readWord();

    std::shared_ptr<const ShellList> readUpToParenthesis() override;
    std::shared_ptr<const ShellList> readBackquoted(const QString& text, int line) override;
    std::shared_ptr<const ShellList> readNested(Closer closer);

    bool takeSeparator(ShellAndOr& item);
    bool isAtWord(char16_t character) const;
    bool isAtCloser(Closer closer);
    void skipBlanks();
    void skipLinebreaks();
    [[noreturn]] void fail(const QString& message) const { throw ShellSyntaxError(message, m_cursor.line()); }
    [[noreturn]] void failAtToken();
    void refuse(QStringView text) const { ShellSyntaxError::refuse(m_cursor, text); }

    ShellCursor m_cursor;
    int m_depth;
};

ShellList Parser::readList(Closer closer) {
    ShellList list;
    skipLinebreaks();
    while (!isAtCloser(closer)) {
        list.items.push_back(readAndOr());
        skipBlanks();
        if (!takeSeparator(list.items.back()) && !isAtCloser(closer)) {
            failAtToken();
        }
        skipLinebreaks();
    }
    return list;
}

bool Parser::takeSeparator(ShellAndOr& item) {
    refuse(u"&>");
    refuse(u";;");
    item.isInBackground = m_cursor.look() == u'&';
    return item.isInBackground ? m_cursor.takeIf(u'&') : m_cursor.takeIf(u';') || m_cursor.takeIf(u'\n');
}

ShellAndOr Parser::readAndOr() {
    ShellAndOr item;
    Condition condition = Condition::Always;
    for (;;) {
        item.pipelines.push_back(readPipeline());
        item.pipelines.back().condition = condition;
        if (m_cursor.takeIf(u"&&")) {
            condition = Condition::AfterSuccess;
        } else if (m_cursor.takeIf(u"||")) {
            condition = Condition::AfterFailure;
        } else {
            return item;
        }
        skipLinebreaks();
    }
}

ShellPipeline Parser::readPipeline() {
    ShellPipeline pipeline;
    skipBlanks();
    if (isAtWord(u'!')) {
        m_cursor.takeIf(u'!');
        pipeline.isNegated = true;
    }
    for (;;) {
        pipeline.commands.push_back(readCommand());
        skipBlanks();
        refuse(u"|&");
        if (m_cursor.isAt(u"||") || !m_cursor.takeIf(u'|')) {
            return pipeline;
        }
        skipLinebreaks();
    }
}

ShellCommand Parser::readCommand() {
    skipBlanks();
    refuse(u"((");
    if (m_cursor.look() == u'(') {
        return readCompound(ShellCommand::Kind::Subshell, Closer::Parenthesis);
    }
    if (isAtWord(u'{')) {
        return readCompound(ShellCommand::Kind::Group, Closer::Brace);
    }
    if (isAtWord(u'}') || isAtWord(u'!')) {
        failAtToken();
    }
    return readSimpleCommand();
}

ShellCommand Parser::readCompound(ShellCommand::Kind kind, Closer closer) {
    ShellCommand command;
    command.kind = kind;
    command.line = m_cursor.line();
    m_cursor.take();
    command.body = readNested(closer);
    if (command.body->items.empty()) {
        fail(u"unexpected token `"_s + QChar(static_cast<char16_t>(closer)) + u'\'');
    }
    for (skipBlanks(); isAtShellRedirection(m_cursor); skipBlanks()) {
        addRedirection(command);
    }
    return command;
}

std::shared_ptr<const ShellList> Parser::readNested(Closer closer) {
    if (++m_depth > kMaximumDepth) {
        fail(u"nested more than %1 levels deep"_s.arg(kMaximumDepth));
    }
    auto list = std::make_shared<const ShellList>(readList(closer));
    m_cursor.take();
    --m_depth;
    return list;
}

std::shared_ptr<const ShellList> Parser::readUpToParenthesis() {
    return readNested(Closer::Parenthesis);
}

std::shared_ptr<const ShellList> Parser::readBackquoted(const QString& text, int line) {
    if (m_depth >= kMaximumDepth) {
        fail(u"nested more than %1 levels deep"_s.arg(kMaximumDepth));
    }
    return std::make_shared<const ShellList>(Parser(text, line, m_depth + 1).readText());
}

ShellCommand Parser::readSimpleCommand() {
    ShellCommand command;
    command.line = m_cursor.line();
    for (skipBlanks();; skipBlanks()) {
        if (isAtShellRedirection(m_cursor)) {
            addRedirection(command);
        } else if (!endsShellWord(m_cursor.look())) {
            addWord(command);
        } else {
            break;
        }
    }
    const bool isEmpty = command.words.empty() && command.assignments.empty() && command.redirections.empty();
    if (isEmpty || m_cursor.look() == u'(') {
        failAtToken();
    }
    return command;
}

void Parser::addWord(ShellCommand& command) {
    const int line = m_cursor.line();
    ShellWord word = readWord();
    if (!command.words.empty()) {
        command.words.push_back(withHomeAtStart(word));
        return;
    }
    if (isUnsupportedShellAssignment(word)) {
        throw ShellSyntaxError::notSupported(word.front().text, line);
    }
    if (std::optional<ShellAssignment> assignment = assignmentFromWord(word)) {
        if (isUnsupportedShellVariable(assignment->name)) {
            throw ShellSyntaxError::notSupported(assignment->name + u'=', line);
        }
        command.assignments.push_back(std::move(*assignment));
        return;
    }
    const bool mayBeReserved = command.assignments.empty() && command.redirections.empty();
    const QString unquoted = unquotedShellText(word).value_or(QString());
    const QString literal = literalShellText(word).value_or(QString());
    if ((mayBeReserved && isShellReservedWord(unquoted)) || isUnsupportedShellBuiltin(literal)) {
        throw ShellSyntaxError::notSupported(literal, line);
    }
    command.words.push_back(withHomeAtStart(word));
}

ShellWord Parser::readWord() {
    const int line = m_cursor.line();
    ShellWord word = ShellWordReader(m_cursor, *this).read();
    if (!assignmentFromWord(word) && hasBraceExpansion(word)) {
        throw ShellSyntaxError::notSupported(u"{…}"_s, line);
    }
    return word;
}

void Parser::addRedirection(ShellCommand& command) {
    ShellRedirection redirection = readShellRedirectionOperator(m_cursor);
    if (redirection.kind != ShellRedirection::Kind::Duplicate) {
        skipBlanks();
        if (endsShellWord(m_cursor.look())) {
            failAtToken();
        }
        redirection.target = withHomeAtStart(readWord());
    }
    command.redirections.push_back(redirection);
}

bool Parser::isAtWord(char16_t character) const {
    ShellCursor ahead = m_cursor;
    return ahead.takeIf(character) && endsShellWord(ahead.look());
}

bool Parser::isAtCloser(Closer closer) {
    if (closer == Closer::EndOfText) {
        return m_cursor.isAtEnd();
    }
    return closer == Closer::Brace ? isAtWord(u'}') : m_cursor.look() == static_cast<char16_t>(closer);
}

void Parser::skipBlanks() {
    m_cursor.skipBlanks();
    if (m_cursor.look() == u'#') {
        while (!m_cursor.lookRaw().isNull() && m_cursor.lookRaw() != u'\n') {
            m_cursor.take();
        }
    }
}

void Parser::skipLinebreaks() {
    for (skipBlanks(); m_cursor.takeIf(u'\n'); skipBlanks()) {
    }
}

void Parser::failAtToken() {
    if (m_cursor.isAtEnd()) {
        fail(u"unexpected end of file"_s);
    }
    const int line = m_cursor.line();
    QString token;
    for (const QStringView pair : {u"&&", u"||", u">>"}) {
        token = m_cursor.isAt(pair) ? pair.toString() : token;
    }
    if (token.isEmpty()) {
        const QChar first = m_cursor.take();
        token = first == u'\n' ? u"newline"_s : QString(first);
        while (!endsShellWord(first) && !endsShellWord(m_cursor.look())) {
            token += m_cursor.take();
        }
    }
    throw ShellSyntaxError(u"unexpected token `"_s + token + u'\'', line);
}

} // namespace

void ShellSyntaxError::refuse(const ShellCursor& cursor, QStringView text) {
    if (cursor.isAt(text)) {
        throw notSupported(text.toString(), cursor.line());
    }
}

ShellSyntaxError ShellSyntaxError::notSupported(const QString& what, int line) {
    return {u"`"_s + what + u"' is not supported"_s, line};
}

ShellList parseShellText(const QString& text) {
    if (text.contains(QChar::Null)) {
        throw ShellSyntaxError(u"a null character"_s, 1);
    }
    return Parser(text, 1, 0).readText();
}

} // namespace macsim
