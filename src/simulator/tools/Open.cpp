#include "simulator/tools/Open.h"

#include "simulator/ApplicationFinder.h"
#include "simulator/ProcessTable.h"
#include "simulator/tools/ToolOptions.h"

#include <QRegularExpression>

#include <algorithm>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr OptionRules kOpenRules{u"etfFWRnghjb:a:s:u:i:o:", u"gjab",
                                 u"Usage: open [-e] [-t] [-f] [-W] [-R] [-n] [-g] [-h] [-s <partial SDK name>]"
                                 u"[-b <bundle identifier>] [-a <application>] [-u URL] [filenames] "
                                 u"[--args arguments]\n",
                                 1};

/// Starts an application unless it runs already.
void launch(const ToolContext& context, const Application& application) {
    const ProcessTable processes(context.mac.state());
    const std::vector<Process> running = processes.list();
    const bool runs = std::any_of(running.begin(), running.end(), [&application](const Process& process) {
        return process.name == application.executable;
    });
    if (runs) {
        return;
    }
    Process process;
    process.name = application.executable;
    process.path = application.path + u"/Contents/MacOS/"_s + application.executable;
    process.userId = context.isRoot() ? 0 : context.mac.machine().userId;
    processes.start(process);
}

int openNamed(ToolContext& context, const QString& name) {
    const auto application = name.contains(u'/') ? readApplication(context.volume, context.absolutePath(name))
                                                 : findApplication(context.mac, context.volume, name);
    if (!application) {
        context.complain(u"Unable to find application named '"_s + name + u"'\n"_s);
        return 1;
    }
    launch(context, *application);
    return 0;
}

int openIdentified(ToolContext& context, const QString& identifier) {
    const auto application = findApplicationByIdentifier(context.mac, context.volume, identifier);
    if (!application) {
        context.complain(u"LSCopyApplicationURLsForBundleIdentifier() failed while trying to determine the application "
                         u"with bundle identifier "_s +
                         identifier + u".\n"_s);
        return 1;
    }
    launch(context, *application);
    return 0;
}

/// The scheme of an address, in lower case; empty for a path.
QString schemeOf(const QString& operand) {
    static const QRegularExpression kScheme(u"^([A-Za-z][A-Za-z0-9+.-]*):"_s);
    return kScheme.match(operand).captured(1).toLower();
}

bool isKnownScheme(const QString& scheme) {
    static const QStringList kSchemes{u"http"_s, u"https"_s, u"mailto"_s, u"x-apple.systempreferences"_s};
    return kSchemes.contains(scheme);
}

int openAddress(ToolContext& context, const QString& address, bool withApplication) {
    if (withApplication || isKnownScheme(schemeOf(address))) {
        return 0;
    }
    context.complain(
        u"No application knows how to open URL "_s + address +
        u" (Error Domain=NSOSStatusErrorDomain Code=-10814 \"kLSApplicationNotFoundErr: E.g. no application "
        u"claims the file\").\n"_s);
    return 1;
}

int openFile(ToolContext& context, const QString& typed, bool withApplication) {
    const QString path = context.absolutePath(typed);
    if (!context.volume.exists(path)) {
        context.complain(u"The file "_s + path + u" does not exist.\n"_s);
        return 1;
    }
    const auto application = withApplication ? std::nullopt : readApplication(context.volume, path);
    if (application) {
        launch(context, *application);
    }
    return 0;
}

int openOperand(ToolContext& context, const QString& operand, bool withApplication) {
    const bool isFile = schemeOf(operand).isEmpty() || context.volume.exists(context.absolutePath(operand));
    return isFile ? openFile(context, operand, withApplication) : openAddress(context, operand, withApplication);
}

} // namespace

int runOpen(ToolContext& context) {
    const bool hasLongOption = std::any_of(context.arguments.cbegin(), context.arguments.cend(),
                                           [](const QString& word) { return word.startsWith(u"--"_s); });
    if (hasLongOption) {
        return notSimulated(context, u"an option that begins with \"--\""_s);
    }
    const ToolOptions options = parseOptions(context.arguments, kOpenRules.letters);
    if (const std::optional<int> refused = refuseOptions(context, options, kOpenRules)) {
        return *refused;
    }
    const bool withApplication = options.has(u'a') || options.has(u'b');
    if (!withApplication && options.operands.isEmpty()) {
        return refuseWithUsage(context, kOpenRules);
    }
    // A file that is missing is told of before any application is looked for.
    for (const QString& operand : options.operands) {
        if (const int status = openOperand(context, operand, withApplication); status != 0) {
            return status;
        }
    }
    if (!withApplication) {
        return 0;
    }
    return options.has(u'a') ? openNamed(context, options.value(u'a')) : openIdentified(context, options.value(u'b'));
}

} // namespace macsim
