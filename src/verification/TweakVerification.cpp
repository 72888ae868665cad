#include "verification/TweakVerification.h"

#include "platform/Clock.h"
#include "readings/SystemReadings.h"
#include "tweaks/TweakCatalogue.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <chrono>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString kFocusNote =
    u"Notifications: the setting is stored. Turn on a Focus as well: Quorvane can't do that for you."_s;

constexpr int kFurtherLooks = 5;
constexpr auto kBetweenLooks = 1s;

using Settings = PerformanceSettings;

} // namespace

const TweakVerification::Check TweakVerification::kChecks[] = {
    {&Settings::appNap, &TweakVerification::appNap},
    {&Settings::updates, &TweakVerification::softwareUpdates},
    {&Settings::notifications, &TweakVerification::notifications},
    {&Settings::siri, &TweakVerification::siri},
    {&Settings::crashReporter, &TweakVerification::crashReporter},
    {&Settings::uiSounds, &TweakVerification::interfaceSounds},
    {&Settings::airdrop, &TweakVerification::airDrop},
    {&Settings::usbPower, &TweakVerification::usbPower},
    {&Settings::sms, &TweakVerification::motionSensor},
    {&Settings::spotlight, &TweakVerification::spotlight},
    {&Settings::timeMachine, &TweakVerification::timeMachine},
};

TweakVerification::TweakVerification(const SystemReadings& readings, Clock& clock, PerformanceSettings settings,
                                     UnselectedTweaks unselected, Context context)
    : m_readings(readings)
    , m_clock(clock)
    , m_settings(std::move(settings))
    , m_unselected(unselected)
    , m_context(std::move(context)) {}

QCoro::Task<ApplyVerificationResult> TweakVerification::run() {
    ApplyVerificationResult result;
    m_current.power = co_await m_readings.readPowerSources();
    for (const Check& check : kChecks) {
        const bool selected = m_settings.*check.setting;
        if (!selected && m_unselected == UnselectedTweaks::Ignored) {
            continue;
        }
        m_isAnswered = true;
        const Verdict found = co_await (this->*check.run)(selected);
        if (found.isLeftOut) {
            continue;
        }
        const QString name = tweakOf(check.setting).name;
        if (found.holds && m_isAnswered) {
            result.verified.append({name, found.verifiedDetail, found.isOnThisMac, found.note, found.isUsersOwn});
        } else {
            result.failed.append({name, found.failedDetail});
        }
    }
    result.lacksFullDiskAccess = m_lacksFullDiskAccess;
    co_return result;
}

TweakVerification::Verdict TweakVerification::verdict(bool holds, const QString& detail) {
    return {holds, detail, u"expected "_s + detail};
}

TweakVerification::Verdict TweakVerification::absent(const QString& detail) {
    return {true, detail, {}, {}, false};
}

TweakVerification::Verdict TweakVerification::leftOff(Setting tweak, const TweakComparison& comparison,
                                                      const Verdict& standard) const {
    Verdict found = standard;
    found.holds = comparison.isAsItWas();
    if (found.holds && !comparison.isStandard) {
        found.verifiedDetail = u"your own setting"_s;
    }
    if (comparison.isAsCaptured && !comparison.isCapturedStandard) {
        found.failedDetail = u"expected your own setting"_s;
    }
    found.isLeftOut = !found.holds && isUsersToDecide(tweak, comparison) && m_isAnswered;
    return found;
}

/// Nobody knows how it was, and the program hasn't changed it.
bool TweakVerification::isUsersToDecide(Setting tweak, const TweakComparison& comparison) const {
    return !comparison.isAsCaptured && !m_context.own.hasChanged(tweak);
}

/// In force or as the user had it, and what macOS goes by.
TweakVerification::Verdict TweakVerification::chosen(Setting tweak, bool selected, const Verdict& applied,
                                                     const Verdict& standard) const {
    const TweakComparison comparison = compared(tweak, m_current, m_context.own, ComparedPreferences::Deciding);
    if (!selected) {
        return leftOff(tweak, comparison, standard);
    }
    Verdict found = applied;
    found.holds = isInForce(tweak, m_current);
    found.isUsersOwn = comparison.isAsCaptured == true;
    return found;
}

/// One that an organization has set is nobody's to choose: left off, it holds as it is.
QCoro::Task<TweakVerification::Verdict> TweakVerification::preferences(Setting tweak, bool selected, QString applied,
                                                                       QString restored) {
    bool isManaged = false;
    bool isAnySet = false;
    for (const MacPreference& preference : kMacPreferences) {
        if (preference.tweak != tweak || !preference.decides) {
            continue;
        }
        const CurrentPreference current = co_await m_readings.readCurrentPreference(preference);
        m_current.of(preference) = current;
        isManaged = isManaged || current.isManaged;
        isAnySet = isAnySet || needed(current.reading).value;
    }
    Verdict found = chosen(tweak, selected, verdict(true, applied), verdict(true, restored));
    found.isUsersOwn = found.isUsersOwn || isManaged || (m_isAnswered && !isAnySet);
    if (isManaged) {
        const QString detail = u"set by your organization"_s;
        found = {!selected || found.holds, detail, detail, {}, true, true};
    }
    co_return found;
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::appNap(bool selected) {
    return preferences(&Settings::appNap, selected, u"disabled"_s, u"enabled"_s);
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::softwareUpdates(bool selected) {
    return preferences(&Settings::updates, selected, u"disabled"_s, u"enabled"_s);
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::notifications(bool selected) {
    Verdict found = co_await preferences(&Settings::notifications, selected, u"suppressed"_s, u"enabled"_s);
    if (selected) {
        found.note = kFocusNote;
    } else if (m_context.isNotificationCenterOff) {
        found = {false, {}, u"expected enabled"_s};
    }
    co_return found;
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::siri(bool selected) {
    return preferences(&Settings::siri, selected, u"disabled"_s, u"enabled"_s);
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::crashReporter(bool selected) {
    return preferences(&Settings::crashReporter, selected, u"disabled"_s, u"enabled"_s);
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::interfaceSounds(bool selected) {
    return preferences(&Settings::uiSounds, selected, u"muted"_s, u"enabled"_s);
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::airDrop(bool selected) {
    return preferences(&Settings::airdrop, selected, u"disabled"_s, u"enabled"_s);
}

/// What `pmset` has failed to tell is as good as not there.
QCoro::Task<TweakVerification::Verdict> TweakVerification::usbPower(bool selected) {
    const std::optional<QList<PowerSource>> sources = needed(m_current.power).value;
    const QStringList sleeping = sources ? sourcesThatSleep(*sources) : QStringList();
    const bool isNamed = !sleeping.isEmpty() && !sleeping.first().isEmpty();
    const Verdict applied{true, u"sleep disabled"_s,
                          isNamed ? u"expected 0 on "_s + sleeping.first() : u"expected standby/disk/sleep at 0"_s};
    co_return chosen(&Settings::usbPower, selected, applied,
                     {true, u"standard sleep"_s, u"expected standard sleep values"_s});
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::motionSensor(bool selected) {
    const std::optional<QList<PowerSource>> sources = needed(m_current.power).value;
    const bool isListed = sources && firstListed(*sources).sms;
    if (sources && !isListed) {
        co_return absent(u"not present on this Mac"_s);
    }
    Verdict standard{true, u"enabled"_s, isListed ? u"expected sms 1"_s : u"could not read pmset"_s};
    Verdict found = chosen(&Settings::sms, selected, {true, u"disabled"_s, u"expected sms 0"_s}, standard);
    if (!selected && !isListed) {
        found = {false, {}, standard.failedDetail};
    }
    co_return found;
}

/// After an order again while macOS is at it, else once more where what nobody chose isn't on.
QCoro::Task<void> TweakVerification::readIndexing(bool selected) {
    m_current.indexing = co_await m_readings.readIndexing();
    const auto isAsOrdered = [this, selected] {
        const TweakComparison comparison =
            compared(&Settings::spotlight, m_current, m_context.own, ComparedPreferences::Deciding);
        const bool isThere = selected ? isInForce(&Settings::spotlight, m_current)
                                      : comparison.isAsItWas() || isUsersToDecide(&Settings::spotlight, comparison);
        return isThere && !isChanging(m_current.indexing.value.value_or(QList<IndexedVolume>()));
    };
    if (m_context.after == AfterOrder::No) {
        const QList<IndexedVolume> volumes = m_current.indexing.value.value_or(QList<IndexedVolume>());
        if (!selected && m_current.indexing.isAnswered && indexesFiles(volumes) != true) {
            m_current.indexing = co_await m_readings.readIndexing();
        }
        co_return;
    }
    for (int look = 0; look < kFurtherLooks && m_current.indexing.isAnswered && !isAsOrdered(); ++look) {
        co_await m_clock.sleepFor(kBetweenLooks);
        m_current.indexing = co_await m_readings.readIndexing();
    }
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::spotlight(bool selected) {
    co_await readIndexing(selected);
    const QList<IndexedVolume> volumes = needed(m_current.indexing).value.value_or(QList<IndexedVolume>());
    Verdict applied = verdict(true, u"indexing off"_s);
    if (keepsIndexingFiles(volumes)) {
        applied.failedDetail = u"still indexing your files (macOS refused)"_s;
    }
    const bool isKnown = indexesFiles(volumes).has_value();
    const Verdict standard{true, u"indexing on"_s, isKnown ? u"expected indexing on"_s : u"could not read status"_s};
    Verdict found = chosen(&Settings::spotlight, selected, applied, standard);
    if (!selected && !isKnown) {
        found = {false, {}, standard.failedDetail};
    }
    co_return found;
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::timeMachine(bool selected) {
    m_current.timeMachine = co_await m_readings.readTimeMachineState();
    const std::optional<TimeMachineState> state = needed(m_current.timeMachine).value;
    if (state == TimeMachineState::NotSetUp) {
        co_return absent(u"not set up on this Mac"_s);
    }
    if (state == TimeMachineState::NotPermitted) {
        co_return unreadableTimeMachine(selected);
    }
    Verdict found = chosen(&Settings::timeMachine, selected, verdict(true, u"disabled"_s),
                           {true, u"enabled"_s, state ? u"expected enabled"_s : u"could not read status"_s});
    if (!selected && !state) {
        found = {false, {}, u"could not read status"_s};
    }
    if (selected && found.holds && co_await m_readings.readIsBackupRunning()) {
        found.note = u"A backup is running and will finish first."_s;
    }
    co_return found;
}

/// Backups that nobody chose to switch off are as the user has them, unless this program had switched them off.
TweakVerification::Verdict TweakVerification::unreadableTimeMachine(bool selected) {
    m_lacksFullDiskAccess = true;
    Verdict found{false, {}, u"could not read status"_s};
    found.isLeftOut = !selected && !m_context.own.hasChanged(&Settings::timeMachine);
    return found;
}

} // namespace quorvane
