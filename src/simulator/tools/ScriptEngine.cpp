#include "simulator/tools/ScriptEngine.h"

#include "simulator/Authorizer.h"
#include "simulator/ScriptProtocol.h"
#include "simulator/tools/ScriptRunner.h"

#include <QFile>

#include <cstdio>

namespace macsim {

namespace {

/// Asks the program at the other end. One that hangs up has cancelled.
class ProgramAuthorizer final : public Authorizer {
public:
    ProgramAuthorizer(QFile& fromProgram, QFile& toProgram)
        : m_fromProgram(fromProgram)
        , m_toProgram(toProgram) {}

    Authorization ask(const QString& prompt) override {
        m_toProgram.write(ScriptProtocol::authorizationWanted(prompt));
        m_toProgram.flush();
        const ScriptProtocol::Message message = ScriptProtocol::parsed(m_fromProgram.readLine());
        return message.kind == ScriptProtocol::Message::Kind::Answer ? message.answer : Authorization::Cancel;
    }

private:
    QFile& m_fromProgram;
    QFile& m_toProgram;
};

} // namespace

int runScriptEngine(ToolContext& context) {
    QFile fromProgram;
    QFile toProgram;
    fromProgram.open(stdin, QIODevice::ReadOnly | QIODevice::Unbuffered);
    toProgram.open(stdout, QIODevice::WriteOnly);
    const ScriptProtocol::Message request = ScriptProtocol::parsed(fromProgram.readLine());
    if (request.kind != ScriptProtocol::Message::Kind::Source) {
        return 1;
    }
    ProgramAuthorizer authorizer(fromProgram, toProgram);
    ToolContext script{context.mac,
                       context.tools,
                       authorizer,
                       context.volume,
                       context.arguments,
                       context.environment,
                       context.workingFolder,
                       {},
                       {},
                       {}};
    script.faults = context.faults;
    script.journal = context.journal;
    const auto outcome = runScriptOnMac(request.text, script);
    const auto* error = std::get_if<ScriptError>(&outcome);
    toProgram.write(error ? ScriptProtocol::error(error->message, error->number)
                          : ScriptProtocol::result(std::get<ScriptResult>(outcome).text));
    return 0;
}

} // namespace macsim
