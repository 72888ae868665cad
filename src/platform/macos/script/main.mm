// Runs one AppleScript on its own main thread, for a program that ProcessScriptEngine is in: the source comes over standard
// input, the outcome goes over standard output. Closing its input doesn't end it; a signal does.

#include "platform/macos/AppleScript.h"
#include "platform/portable/ProcessScriptEngine.h"
#include "json/ScriptProtocol.h"

#include <QFile>

#include <cstdio>

int main() {
    QFile input;
    QFile output;
    if (!input.open(stdin, QIODevice::ReadOnly) || !output.open(stdout, QIODevice::WriteOnly)) {
        return 1;
    }
    const ScriptProtocol::Message request = ScriptProtocol::parsed(input.readLine());
    if (request.kind != ScriptProtocol::Message::Kind::Source) {
        return 1;
    }
    const QByteArray reply = quorvane::scriptReply(quorvane::runAppleScript(request.text));
    return output.write(reply) == reply.size() && output.flush() ? 0 : 1;
}
