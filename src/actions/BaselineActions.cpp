#include "actions/BaselineActions.h"

#include "actions/ActionStage.h"
#include "actions/ActionTexts.h"
#include "actions/BaselineTexts.h"
#include "actions/SettingsStatus.h"
#include "actions/Tasks.h"
#include "core/JsonErrors.h"
#include "core/OneLine.h"
#include "platform/Clock.h"
#include "platform/FileManager.h"
#include "platform/Host.h"
#include "platform/Machine.h"
#include "readings/ReadingSession.h"
#include "readings/SystemReadings.h"
#include "snapshots/ChosenBaseline.h"
#include "snapshots/FirstBaseline.h"
#include "snapshots/HomeBaselines.h"
#include "system/SystemManager.h"

#include <QCoroTask>
#include <QScopeGuard>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kGone = u"This restore baseline is gone, or can’t be read any more."_s;

/// Its file keeps whole seconds.
QDateTime wholeSeconds(const QDateTime& moment) {
    return QDateTime::fromSecsSinceEpoch(moment.toSecsSinceEpoch(), Qt::UTC);
}

QString lineOf(const MasterSystemBaseline& baseline, const Machine& machine) {
    const QString label = baseline.label ? u" \"%1\""_s.arg(nameOnOneLine(*baseline.label)) : QString();
    return u"\n[BASELINE] Chosen to go back to:%1 of %2, saved on %3."_s.arg(
        label, machine.dateAndTimeText(baseline.capturedAt), nameOnOneLine(baseline.deviceName));
}

} // namespace

BaselineActions::BaselineActions(ActionStage& stage, const Parts& parts)
    : m_stage(stage)
    , m_parts(parts)
    , m_kept(parts.system.host()) {}

// ---- Looking

QCoro::Task<KeptCaptures> BaselineActions::readCaptures() {
    const Host& host = m_parts.system.host();
    KeptCaptures captures = capturesAtHome(host.files, host.machine);
    captures.master = co_await m_parts.system.masterBaselines().loadLatestMasterBaseline();
    co_return std::as_const(captures);
}

/// What is here comes first, and what iCloud has last.
/// @param showIt  called whenever more is known
QCoro::Task<void> BaselineActions::look(Looked looked, std::function<void()> showIt) {
    const Host& host = m_parts.system.host();
    looked->kept = m_kept.atHome();
    looked->captures = capturesAtHome(host.files, host.machine);
    showIt();
    ReadingSession session(m_parts.system);
    const SystemReadings readings(session);
    looked->now = co_await readings.readCurrentSettings(SystemReadings::Volumes::All);
    showIt();
    const std::function<void(const QList<KeptBaseline>&)> showThem = [looked, showIt](const QList<KeptBaseline>& kept) {
        looked->kept = kept;
        showIt();
    };
    looked->kept = co_await m_kept.all(showThem);
    looked->captures = co_await readCaptures();
    showIt();
}

QCoro::Task<ActionOutcome> BaselineActions::list(ActionListener& listener) {
    return m_stage.run(listener, [this](Action& action) -> QCoro::Task<void> {
        const Turnstile::Hold busy = action.carryingOut(u"Looking for restore baselines…"_s);
        const auto looked = std::make_shared<LookedAtBaselines>();
        co_await look(looked, [] {});
        m_rows = baselineRows(*looked, m_parts.system.host().machine);
        action.outcome.succeeded = true;
    });
}

// ---- The sheet

QCoro::Task<ActionOutcome> BaselineActions::choose(ActionListener& listener) {
    return m_stage.run(listener, [this](Action& action) { return carryOutChoice(action); });
}

/// The sheet stays until its user closes it: it shows what is used.
QCoro::Task<void> BaselineActions::carryOutChoice(Action& action) {
    const auto choice = std::make_shared<RowChoice>(baselineChoiceTexts());
    const auto looked = std::make_shared<LookedAtBaselines>();
    const auto goes = qScopeGuard([choice] { choice->end(); });
    m_parts.tasks.start(load(choice, looked));
    action.show(choice);
    std::optional<QString> id = co_await choice->answer();
    while (id) {
        co_await useFromSheet(action, choice, *id);
        looked->captures = co_await readCaptures();
        choice->setRows(baselineRows(*looked, m_parts.system.host().machine));
        id = co_await choice->answer();
    }
}

QCoro::Task<void> BaselineActions::load(std::shared_ptr<RowChoice> choice, Looked looked) {
    choice->beginLoading();
    const std::function<void()> showIt = [this, choice, looked] {
        choice->setRows(baselineRows(*looked, m_parts.system.host().machine));
    };
    co_await look(looked, showIt);
    choice->endLoading({});
}

QCoro::Task<void> BaselineActions::useFromSheet(Action& action, std::shared_ptr<RowChoice> choice, QString id) {
    const std::function<void(bool)> showIt = [choice](bool isUnderWay) {
        if (isUnderWay) {
            choice->beginCarryingOut();
        } else {
            choice->endCarryingOut({});
        }
    };
    const std::optional<QString> failure = co_await carryOutUse(action, id, showIt);
    choice->endCarryingOut(failure.value_or(QString()));
}

// ---- Choosing

QCoro::Task<ActionOutcome> BaselineActions::use(const QString& id, ActionListener& listener) {
    return m_stage.run(listener, [=, this](Action& action) -> QCoro::Task<void> {
        const std::optional<QString> failure = co_await carryOutUse(action, id, [](bool) {});
        if (failure) {
            co_await action.tell(errorAlert(*failure));
        }
    });
}

/// What it is about is read afresh, and what was written is read back.
/// @param showUnderWay  called with true when it begins or goes on, and with false when the user is asked
/// @return what went wrong; none also where the user thought better of it
QCoro::Task<std::optional<QString>> BaselineActions::carryOutUse(Action& action, QString id,
                                                                 std::function<void(bool)> showUnderWay) {
    if (!co_await action.passesGate(u"choose a restore baseline"_s)) {
        co_return std::nullopt;
    }
    showUnderWay(true);
    const auto readAnew = qScopeGuard([this] { m_parts.status.readAnew(); });
    if (id == kLatestBaselineId) {
        action.carryOutAtOnce({.snapshot = true});
        const std::optional<QString> failure = chosenLatest();
        action.outcome.succeeded = !failure;
        co_return failure;
    }
    const std::optional<MasterSystemBaseline> baseline = co_await m_kept.read(id);
    if (!baseline) {
        co_return kGone;
    }
    std::optional<Alert> question;
    if (originOf(*baseline, identityOf(m_parts.system.host().machine)) == BaselineOrigin::AnotherMac) {
        question = anotherMacsBaselineQuestion(baseline->deviceName);
        showUnderWay(false);
    }
    if (!co_await action.isAgreedTo(question)) {
        co_return std::nullopt;
    }
    showUnderWay(true);
    const KeptCaptures captures = co_await readCaptures();
    action.carryOutAtOnce({.snapshot = true});
    const std::optional<QString> failure = chosen(*baseline, captures);
    action.outcome.succeeded = !failure;
    co_return failure;
}

/// Captured at the same moment, or later by a clock that was set back since, nothing ends the choice.
std::optional<QString> BaselineActions::chosen(const MasterSystemBaseline& baseline, const KeptCaptures& captures) {
    const Host& host = m_parts.system.host();
    const QDateTime newest = newestCapture(captures);
    const QDateTime now = wholeSeconds(host.clock.now());
    const ChosenBaseline wanted{newest.isValid() ? std::max(now, newest) : now, baseline};
    ChosenBaselineFile file(host.files, host.machine);
    try {
        file.save(wanted);
    } catch (const FileError& error) {
        return error.message();
    } catch (const EncodingError& error) {
        return error.message();
    }
    if (file.load() != wanted) {
        return kGone;
    }
    m_parts.system.log(lineOf(baseline, host.machine));
    return std::nullopt;
}

std::optional<QString> BaselineActions::chosenLatest() {
    const Host& host = m_parts.system.host();
    ChosenBaselineFile file(host.files, host.machine);
    try {
        file.remove();
    } catch (const FileError& error) {
        return error.message();
    }
    m_parts.system.log(u"\n[BASELINE] Chosen to go back to: the latest."_s);
    return std::nullopt;
}

} // namespace quorvane
