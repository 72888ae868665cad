#include "simulator/tools/TestCommand.h"

#include "simulator/TestExpression.h"
#include "simulator/tools/ToolOptions.h"

namespace macsim {

using namespace Qt::StringLiterals;

int runTestCommand(ToolContext& context) {
    const QString name = toolName(context);
    QStringList words = context.arguments.mid(1);
    if (name == u"["_s && (words.isEmpty() || words.takeLast() != u"]"_s)) {
        context.complain(u"[: missing ]\n"_s);
        return 2;
    }
    QString error;
    const int status = evaluateTest(words, context, error);
    if (!error.isEmpty()) {
        context.complain(name + u": "_s + error + u'\n');
    }
    return status;
}

} // namespace macsim
