#include "system/SystemManager.h"

#include "readings/PowerSettings.h"

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

QCoro::Task<std::optional<QString>> SystemManager::readDefaultValue(QString domain, QString key, PreferenceHost host) {
    QStringList arguments{u"/usr/bin/defaults"_s};
    if (host == PreferenceHost::Current) {
        arguments.append(u"-currentHost"_s);
    }
    arguments += {u"read"_s, domain, key};
    const CommandResult result = co_await runCommand(arguments, OutputCapture::Capture);
    if (result.status != 0) {
        co_return std::nullopt;
    }
    co_return result.standardOutput.trimmed();
}

QCoro::Task<PowerSettings> SystemManager::readPowerSettings() {
    const QStringList arguments{u"/usr/bin/pmset"_s, u"-g"_s, u"custom"_s};
    const CommandResult result = co_await runCommand(arguments, OutputCapture::Capture);
    if (result.status != 0) {
        co_return PowerSettings();
    }
    co_return parsedPowerSettings(result.standardOutput);
}

QCoro::Task<std::optional<bool>> SystemManager::readTimeMachineState() {
    const QStringList arguments{u"/usr/bin/tmutil"_s, u"status"_s};
    const CommandResult result = co_await runCommand(arguments, OutputCapture::Capture);
    if (result.status != 0) {
        co_return std::nullopt;
    }
    co_return result.standardOutput.contains(u"Running = 1"_s);
}

QCoro::Task<std::optional<bool>> SystemManager::readSpotlightState() {
    const QStringList arguments{u"/usr/bin/mdutil"_s, u"-s"_s, u"/"_s};
    const CommandResult result = co_await runCommand(arguments, OutputCapture::Capture);
    if (result.status != 0) {
        co_return std::nullopt;
    }
    co_return result.standardOutput.toLower().contains(u"indexing enabled"_s);
}

} // namespace quorvane
