#include "readings/SystemReadings.h"

#include "core/FlowEnvironment.h"
#include "platform/Host.h"
#include "platform/Machine.h"
#include "readings/PowerSettings.h"

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

QCoro::Task<std::optional<QString>> SystemReadings::readDefaultValue(QString domain, QString key,
                                                                     PreferenceHost host) const {
    const QStringList arguments = defaultsCommand(u"read"_s, domain, key, host);
    const CommandResult result = co_await m_environment.runCommand(arguments, OutputCapture::Capture);
    if (result.status != 0) {
        co_return std::nullopt;
    }
    co_return result.standardOutput.trimmed();
}

QCoro::Task<std::optional<QString>> SystemReadings::readPreference(const MacPreference& preference) const {
    const QString domain =
        preference.isNotificationCenters() ? notificationCenterPreferences() : preference.domain.toString();
    return readDefaultValue(domain, preference.key.toString(), preference.host);
}

QCoro::Task<PowerSettings> SystemReadings::readPowerSettings() const {
    const QStringList arguments{u"/usr/bin/pmset"_s, u"-g"_s, u"custom"_s};
    const CommandResult result = co_await m_environment.runCommand(arguments, OutputCapture::Capture);
    if (result.status != 0) {
        co_return PowerSettings();
    }
    co_return parsedPowerSettings(result.standardOutput);
}

QCoro::Task<std::optional<bool>> SystemReadings::readTimeMachineState() const {
    const QStringList arguments{u"/usr/bin/tmutil"_s, u"status"_s};
    const CommandResult result = co_await m_environment.runCommand(arguments, OutputCapture::Capture);
    if (result.status != 0) {
        co_return std::nullopt;
    }
    co_return result.standardOutput.contains(u"Running = 1"_s);
}

QCoro::Task<std::optional<bool>> SystemReadings::readSpotlightState() const {
    const QStringList arguments{u"/usr/bin/mdutil"_s, u"-s"_s, u"/"_s};
    const CommandResult result = co_await m_environment.runCommand(arguments, OutputCapture::Capture);
    if (result.status != 0) {
        co_return std::nullopt;
    }
    co_return result.standardOutput.toLower().contains(u"indexing enabled"_s);
}

QString SystemReadings::notificationCenterPreferences() const {
    return m_environment.host().machine.homeFolder() + u"/Library/Preferences/ByHost/"_s +
           preference::kDoNotDisturb.domain.toString();
}

} // namespace quorvane
