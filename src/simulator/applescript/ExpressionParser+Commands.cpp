// Commands: a direct parameter, then labelled ones in any order.

#include "simulator/applescript/ExpressionParser.h"

using namespace Qt::StringLiterals;

namespace macsim::applescript {

ExpressionPtr ExpressionParser::parseShellScript(int start) {
    ShellScript command;
    command.line = parse();
    while (parseShellParameter(command)) {
    }
    return make(start, std::move(command));
}

bool ExpressionParser::parseShellParameter(ShellScript& command) {
    if (m_tokens.isAt(u"with") || m_tokens.isAt(u"without")) {
        return parseShellOption(command);
    }
    if (m_tokens.accept({u"user"_s, u"name"_s})) {
        parseOnce(command.userName);
        return true;
    }
    if (m_tokens.accept(u"password")) {
        parseOnce(command.password);
        return true;
    }
    return false;
}

bool ExpressionParser::parseShellOption(ShellScript& command) {
    if (m_tokens.accept({u"with"_s, u"prompt"_s})) {
        parseOnce(command.prompt);
        return true;
    }
    const bool isOn = m_tokens.isAt(u"with");
    m_tokens.take();
    if (!command.administratorPrivileges && m_tokens.accept({u"administrator"_s, u"privileges"_s})) {
        command.administratorPrivileges = isOn;
    } else if (!command.alteringLineEndings && m_tokens.accept({u"altering"_s, u"line"_s, u"endings"_s})) {
        command.alteringLineEndings = isOn;
    } else {
        m_tokens.fail(u"command parameter"_s);
    }
    return true;
}

void ExpressionParser::parseOnce(ExpressionPtr& parameter) {
    if (parameter) {
        m_tokens.fail(u"end of line, etc."_s);
    }
    parameter = parse();
}

} // namespace macsim::applescript
