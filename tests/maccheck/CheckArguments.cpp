#include "maccheck/CheckArguments.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

CheckArguments wrong(const QString& why) {
    CheckArguments arguments;
    arguments.error = why;
    return arguments;
}

} // namespace

CheckArguments parsedCheckArguments(const QStringList& arguments) {
    CheckArguments parsed;
    bool refusesRights = false;
    for (qsizetype index = 0; index < arguments.size(); ++index) {
        const QString& argument = arguments[index];
        if (argument == u"--help"_s) {
            parsed.wantsHelp = true;
        } else if (argument == u"--ask"_s) {
            parsed.asksPeople = true;
        } else if (argument == u"--no-rights"_s) {
            refusesRights = true;
        } else if (argument != u"--report"_s && argument != u"--filter"_s) {
            return wrong(u"Unknown argument: "_s + argument);
        } else if (++index == arguments.size() || arguments[index].isEmpty()) {
            return wrong(argument + u" needs a value."_s);
        } else {
            (argument == u"--report"_s ? parsed.report : parsed.filter) = arguments[index];
        }
    }
    return parsed.asksPeople && refusesRights ? wrong(u"--ask and --no-rights exclude each other."_s) : parsed;
}

QString checkHelp() {
    return u"Checks on this Mac what Quorvane's adapters promise. One line per check: PASS, FAIL or SKIP, its name, "
           u"and why.\n"
           "\n"
           "  --no-rights      nothing that needs a person, or a right that a person gives; so it is without options, "
           "too\n"
           "  --ask            also what does: a password is asked for, and a finger\n"
           "  --report FILE    writes the same lines to a file\n"
           "  --filter NAMES   only checks with these names: 'Machine*:*Keychain*'\n"
           "  --help           this\n"
           "\n"
           "The exit status is 0 when none failed, 1 when one did, and 2 for wrong arguments.\n"_s;
}

} // namespace quorvane
