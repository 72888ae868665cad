// The rehearsal: the program's flows on a simulated Mac, from a terminal.

#include "platform/portable/QuitSignals.h"
#include "rehearsal/Commands.h"
#include "rehearsal/MacCommands.h"
#include "rehearsal/Rehearsal.h"
#include "rehearsal/Report.h"
#include "rehearsal/Terminal.h"

#include <QCoroTask>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QTimer>

#include <cstdio>
#include <memory>

namespace {

using namespace quorvane;
using namespace Qt::StringLiterals;

using Flow = RehearsalCommand::Flow;

QCoro::Task<void> runFlowToItsEnd(Rehearsal& rehearsal, Flow flow, Arguments arguments) {
    int status = kUnusable;
    try {
        const RehearsalOutcome outcome = co_await (rehearsal.*flow)(arguments);
        co_await rehearsal.finished();
        const bool isTold = !arguments.json || printReport(jsonReport(arguments.command, rehearsal.log(), outcome));
        status = outcome.isDone() && isTold ? kDone : kNotDone;
    } catch (const std::exception& error) {
        complain(QString::fromUtf8(error.what()));
    }
    QCoreApplication::exit(status);
}

int runFlowOnMac(Flow flow, const Arguments& arguments) {
    const ChosenMac mac(arguments);
    Rehearsal rehearsal(mac.folder(), arguments.authorization, hostOptions(arguments));
    if (!arguments.json) {
        QObject::connect(&rehearsal, &Rehearsal::linePrinted, [&rehearsal](const QString& line) {
            if (!printLine(line)) {
                // Not at once: whoever prints is in the midst of a flow.
                QMetaObject::invokeMethod(&rehearsal, &Rehearsal::quit, Qt::QueuedConnection);
            }
        });
    }
    QuitSignals quitSignals(OutputReader::Needed);
    QObject::connect(&quitSignals, &QuitSignals::quitRequested, &rehearsal, &Rehearsal::quit);
    QCoro::Task<void> running;
    QTimer::singleShot(0, &rehearsal, [&] { running = runFlowToItsEnd(rehearsal, flow, arguments); });
    return QCoreApplication::exec();
}

int run(const QStringList& list) {
    if (list == QStringList(u"--help"_s)) {
        std::fputs(usageText().toUtf8().constData(), stdout);
        return kDone;
    }
    const Arguments arguments = parsedArguments(list);
    const auto& command = commandNamed(arguments.command).run;
    const auto* const flow = std::get_if<Flow>(&command);
    return flow != nullptr ? runFlowOnMac(*flow, arguments) : std::get<RehearsalCommand::Tool>(command)(arguments);
}

/// The label on the wallpaper is painted without a display. Where there is none, Qt complains that it has no folder of the
/// session for one.
std::unique_ptr<QGuiApplication> makeApplication(int& argumentCount, char** arguments) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QLoggingCategory::setFilterRules(u"default.warning=false"_s);
    auto application = std::make_unique<QGuiApplication>(argumentCount, arguments);
    QLoggingCategory::setFilterRules({});
    return application;
}

} // namespace

int main(int argumentCount, char** arguments) {
    const std::unique_ptr<QGuiApplication> application = makeApplication(argumentCount, arguments);
    try {
        return run(QCoreApplication::arguments().mid(1));
    } catch (const std::exception& error) {
        complain(u"quorvane-rehearsal: "_s + QString::fromUtf8(error.what()));
        return kUnusable;
    }
}
