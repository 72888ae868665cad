#include "readings/SystemReadings.h"

#include "core/FlowEnvironment.h"
#include "platform/Host.h"
#include "platform/Machine.h"
#include "readings/PowerSettings.h"

#include <QCoroTask>

#include <functional>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// What the output says, which counts only where the tool has succeeded.
template <typename T>
Reading<T> readingOf(const CommandResult& result, const std::function<std::optional<T>(const QString&)>& valueIn) {
    if (!result.isAnswered) {
        return Reading<T>::unanswered();
    }
    return Reading<T>::answered(result.status == 0 ? valueIn(result.standardOutput) : std::nullopt);
}

} // namespace

QCoro::Task<Reading<QString>> SystemReadings::readDefaultValue(QString domain, QString key, PreferenceHost host) const {
    const CommandResult result = co_await ask(defaultsCommand(u"read"_s, domain, key, host));
    co_return readingOf<QString>(result, [](const QString& output) { return output.trimmed(); });
}

QCoro::Task<Reading<QString>> SystemReadings::readPreference(const MacPreference& preference) const {
    const QString domain =
        preference.isNotificationCenters() ? notificationCenterPreferences() : preference.domain.toString();
    return readDefaultValue(domain, preference.key.toString(), preference.host);
}

QCoro::Task<Reading<PowerSettings>> SystemReadings::readPowerSettings() const {
    const QStringList arguments{u"/usr/bin/pmset"_s, u"-g"_s, u"custom"_s};
    const CommandResult result = co_await ask(arguments);
    co_return readingOf<PowerSettings>(result, parsedPowerSettings);
}

QCoro::Task<Reading<bool>> SystemReadings::readTimeMachineState() const {
    const QStringList arguments{u"/usr/bin/tmutil"_s, u"status"_s};
    const CommandResult result = co_await ask(arguments);
    co_return readingOf<bool>(result, [](const QString& output) { return output.contains(u"Running = 1"_s); });
}

QCoro::Task<Reading<bool>> SystemReadings::readSpotlightState() const {
    const QStringList arguments{u"/usr/bin/mdutil"_s, u"-s"_s, u"/"_s};
    const CommandResult result = co_await ask(arguments);
    co_return readingOf<bool>(result,
                              [](const QString& output) { return output.toLower().contains(u"indexing enabled"_s); });
}

QCoro::Task<CommandResult> SystemReadings::ask(QStringList arguments) const {
    return m_environment.runCommand(std::move(arguments), OutputCapture::Capture);
}

QString SystemReadings::notificationCenterPreferences() const {
    return m_environment.host().machine.homeFolder() + u"/Library/Preferences/ByHost/"_s +
           preference::kDoNotDisturb.domain.toString();
}

} // namespace quorvane
