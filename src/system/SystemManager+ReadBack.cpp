// The end of each way back: the Mac is read once more, and compared with what it went by. Nothing is claimed that wasn't seen.

#include "system/SystemManager.h"

#include "core/OneLine.h"
#include "core/Paths.h"
#include "flows/FlowJournal.h"
#include "matching/SystemVerification.h"
#include "platform/Clock.h"
#include "platform/FileManager.h"
#include "snapshots/RestoreComparison.h"
#include "startup/launchd/LaunchItems.h"
#include "startup/launchd/Launchd.h"
#include "startup/launchd/PutAsideRecord.h"
#include "startup/login/LoginItems.h"
#include "tweaks/TweakCatalogue.h"
#include "verification/ComparedSettings.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <chrono>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using State = ComparedSetting::State;

constexpr int kLooksAtSpotlight = 5;
constexpr auto kBetweenLooksAtSpotlight = 1s;

/// A name of its own takes the place of what was said of it before.
void sayMissing(QList<ComparedSetting>& settings, const QString& name, const QString& what) {
    settings.removeIf([&name](const ComparedSetting& setting) { return setting.name == name; });
    settings.append({name, State::Missing, what});
}

QString lineOf(const ComparedSetting& setting) {
    switch (setting.state) {
    case State::Back:
        return u"  [OK] "_s + setting.name;
    case State::Missing:
        return u"  [MISSING] %1 — %2"_s.arg(setting.name, setting.what);
    case State::LeftAlone:
        break;
    }
    return u"  [INFO] Not restored: "_s + setting.name;
}

/// Spotlight's answer lags behind its orders: it is asked until it is right, a few seconds at most.
QCoro::Task<CurrentSettings> withSettledIndexing(const SystemReadings& readings, Clock& clock,
                                                 std::optional<SystemSnapshot> goneBackTo, CurrentSettings current) {
    const bool isByVolume = goneBackTo && goneBackTo->spotlightByVolume;
    for (int look = 0; look < kLooksAtSpotlight && mayIndexingStillChange(goneBackTo, current); ++look) {
        co_await clock.sleepFor(kBetweenLooksAtSpotlight);
        if (isByVolume) {
            current.indexing = co_await readings.readIndexingOfAll();
        } else {
            current.indexing = co_await readings.readIndexing();
        }
    }
    co_return std::as_const(current);
}

/// What the program has switched off and hasn't seen on since isn't back, unless the user had it off.
void sayBackupsStillOff(QList<ComparedSetting>& settings, const std::optional<TimeMachineState>& now) {
    const QString name = tweakOf(&PerformanceSettings::timeMachine).name;
    if (now == TimeMachineState::NotPermitted) {
        sayMissing(settings, name, u"could not be read"_s);
    } else if (now == TimeMachineState::Off) {
        sayMissing(settings, name, u"automatic backup is off, was on"_s);
    }
}

/// Overrides that the program has written and that aren't lifted.
void sayWhatLaunchdKeeps(QList<ComparedSetting>& settings, const QList<LaunchdService>& recorded) {
    for (const LaunchdService& service : recorded) {
        sayMissing(settings, nameOnOneLine(service.label), u"still switched off"_s);
    }
}

/// Launch items that the program has put aside and that aren't at their places again.
void sayItemsStillAside(QList<ComparedSetting>& settings, const Host& host) {
    QStringList paths = PutAsideRecord(host.files, host.machine).read().keys();
    paths.sort();
    for (const QString& path : std::as_const(paths)) {
        if (host.files.status(path).kind == FileStatus::Kind::Missing) {
            sayMissing(settings, u"launch item "_s + nameOnOneLine(lastPathComponent(path)), u"still put aside"_s);
        }
    }
}

} // namespace

/// All that a way back brings back, read afresh and told in the log.
/// @param goneBackTo                none for a fresh macOS
/// @param services                  as they were read behind the batch; none where they aren't compared
/// @param isNotificationCenterBack  false where launchd keeps it switched off
/// @return the names of what isn't back
QCoro::Task<QStringList> SystemManager::readBack(std::optional<SystemSnapshot> goneBackTo, ReadBackOf which,
                                                 std::optional<QList<NetworkServiceState>> services,
                                                 bool isNotificationCenterBack) {
    const SystemReadings& readings = m_verification->readings();
    const CurrentSettings first = co_await lookAtTweaks(volumesFor(goneBackTo));
    const CurrentSettings current = co_await withSettledIndexing(readings, m_host.clock, goneBackTo, first);
    strikeTweaksSeenBack(current);
    const bool comparesLoginItems = which == ReadBackOf::WholeSystem && goneBackTo && goneBackTo->loginItems;
    LoginItemList loginItems;
    if (comparesLoginItems) {
        m_loginItems->drop();
        loginItems = co_await m_loginItems->current();
    }
    const bool areItemsKnown = comparesLoginItems && loginItems.tellsAll();
    QList<ComparedSetting> settings;
    if (goneBackTo) {
        const TypedReadings typed = co_await readings.readTypedValues(preferencesToCompareByType(*goneBackTo, current));
        const auto items = areItemsKnown ? std::optional(loginItems.items) : std::nullopt;
        settings = comparedWith(*goneBackTo, current, typed, items, services);
    } else {
        settings = comparedWithStandard(current);
    }
    if (comparesLoginItems && !areItemsKnown && !goneBackTo->loginItems->isEmpty()) {
        sayMissing(settings, u"login items"_s, u"could not be read"_s);
    }
    const bool wereBackupsOff = goneBackTo && goneBackTo->timeMachineEnabled == false;
    if (readings.hasSwitchedBackupsOff() && !wereBackupsOff) {
        sayBackupsStillOff(settings, current.timeMachine.value);
    }
    if (!isNotificationCenterBack) {
        sayMissing(settings, tweakOf(&PerformanceSettings::notifications).name, u"still switched off"_s);
    }
    if (which == ReadBackOf::WholeSystem) {
        sayWhatLaunchdKeeps(settings, m_launchItems->launchd().recordedOverrides());
        if (goneBackTo) {
            sayItemsStillAside(settings, m_host);
        }
    }
    if (isQuitting()) {
        co_return QStringList();
    }
    for (const ComparedSetting& setting : std::as_const(settings)) {
        log(lineOf(setting));
    }
    if (m_journal->underWay()) {
        noteLeft(asVerification(settings));
    }
    co_return namesOfMissing(settings);
}

} // namespace quorvane
