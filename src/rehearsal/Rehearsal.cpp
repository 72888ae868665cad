#include "rehearsal/Rehearsal.h"

#include "actions/InterruptionTexts.h"
#include "actions/OpenGate.h"
#include "platform/Displays.h"
#include "platform/FileManager.h"
#include "profiles/ProfileNames.h"
#include "rehearsal/ProfileFile.h"
#include "rehearsal/Report.h"
#include "rehearsal/Terminal.h"
#include "wallpaper/WallpaperProfileOverlay.h"

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Manners = TerminalListener::Manners;

QList<ListedBackup> backupRows(const QList<ProfileCloudBackupInfo>& backups, const Machine& machine) {
    QList<ListedBackup> rows;
    for (const ProfileCloudBackupInfo& info : backups) {
        rows.append({info.id, info.title(machine), info.detail()});
    }
    return rows;
}

} // namespace

Rehearsal::Rehearsal(const QString& macFolder, macsim::Authorization authorization, const SimulatedHostOptions& options)
    : m_authorization(authorization)
    , m_host(macFolder, m_authorization, options)
    , m_session(m_host.host(), sessionParts()) {
    connect(&m_session.system, &SystemManager::messageLogged, this, &Rehearsal::linePrinted);
    connect(m_session.label.get(), &ProfileLabel::displaysLabelled, this, &Rehearsal::showLabels);
}

SessionParts Rehearsal::sessionParts() {
    const auto makeLabel = [this](SystemManager& system) {
        const Host host = m_host.host();
        const WallpaperPorts ports{host.files,    host.machine,  host.propertyLists,
                                   host.displays, host.defaults, host.notifications};
        auto overlay = std::make_unique<WallpaperProfileOverlay>(ports);
        overlay->follow(system);
        return overlay;
    };
    return {[] { return std::make_unique<OpenGate>(); }, makeLabel, [this] { m_host.shutDown(); }};
}

void Rehearsal::print(const QStringList& lines) {
    for (const QString& line : lines) {
        Q_EMIT linePrinted(line);
    }
}

void Rehearsal::showLabels(const QList<DisplayLabel>& labels) {
    m_labels = labels;
    print(labelLines(labels));
}

TerminalListener Rehearsal::listener(Manners manners) {
    return TerminalListener([this](const QStringList& lines) { print(lines); }, manners);
}

// ---- Profiles

QCoro::Task<RehearsalOutcome> Rehearsal::apply(Arguments arguments) {
    const UnifiedProfile given = profileFromFile(arguments.operand());
    if (isDefaultProfile(given)) {
        co_return co_await restoreDefault(arguments);
    }
    if (!arguments.replaces) {
        requireOwnName(given, arguments.operand());
    }
    const std::optional<UnifiedProfile> stored = storedProfile(given, arguments.operand());
    if (!stored) {
        co_return RehearsalOutcome{};
    }
    TerminalListener quiet = listener({.tells = false});
    co_return co_await outcome(quiet, m_session.profileActions.review(*stored, quiet));
}

/// A save would replace another profile, or a file that may hold one. Throws UnusableInput.
void Rehearsal::requireOwnName(const UnifiedProfile& profile, const QString& hostPath) const {
    if (!isProfileFileName(sanitizedProfileName(profile.name))) {
        return; // the save refuses it
    }
    const ProfileManager& store = m_session.profileStore;
    const std::optional<UnifiedProfile> other = store.loadProfile(profile.name);
    const QString saved = u" is saved as \"%1\"; --replace replaces it"_s.arg(sanitizedProfileName(profile.name));
    if (store.isUnreadable(profile.name)) {
        throw UnusableInput(hostPath + u": a file that can't be read"_s + saved);
    }
    if (other && *other != profile) {
        throw UnusableInput(hostPath + u": another profile"_s + saved);
    }
}

/// Saves the profile and reads it afresh, so that what is applied is what is stored.
std::optional<UnifiedProfile> Rehearsal::storedProfile(const UnifiedProfile& profile, const QString& hostPath) {
    try {
        m_session.profileStore.saveProfile(profile);
    } catch (const ProfileStoreError& error) {
        throw UnusableInput(hostPath + u": "_s + error.message());
    } catch (const FileError& error) {
        complain(u"The profile could not be saved: "_s + error.message());
        return std::nullopt;
    }
    const QString name = sanitizedProfileName(profile.name);
    const std::optional<UnifiedProfile> stored = m_session.profileStore.loadProfile(name);
    if (!stored) {
        complain(u"Could not load profile \"%1\"."_s.arg(name));
    }
    return stored;
}

QCoro::Task<RehearsalOutcome> Rehearsal::preview(Arguments arguments) {
    const UnifiedProfile profile = profileFromFile(arguments.operand());
    RehearsalOutcome outcome;
    outcome.preview = co_await m_session.system.previewProfile(profile);
    outcome.succeeded = true;
    print(previewLines(*outcome.preview));
    co_return outcome;
}

QCoro::Task<RehearsalOutcome> Rehearsal::verify(Arguments arguments) {
    const UnifiedProfile profile = profileFromFile(arguments.operand());
    RehearsalOutcome outcome;
    outcome.verification = co_await m_session.system.verifyProfile(profile);
    outcome.succeeded = true;
    m_session.system.logVerificationResult(*outcome.verification, u"Profile: "_s + profile.name);
    co_return outcome;
}

QCoro::Task<RehearsalOutcome> Rehearsal::applyStartup(Arguments arguments) {
    const UnifiedProfile profile = profileFromFile(arguments.operand());
    TerminalListener quiet = listener({.tells = false});
    co_return co_await outcome(quiet, m_session.systemActions.applyStartup(profile.startup, quiet));
}

QCoro::Task<RehearsalOutcome> Rehearsal::applyTweaks(Arguments arguments) {
    const UnifiedProfile profile = profileFromFile(arguments.operand());
    TerminalListener quiet = listener({.tells = false});
    co_return co_await outcome(quiet, m_session.tweakActions.execute(profile.settings, cleanRebootOf(profile), quiet));
}

// ---- The system

QCoro::Task<RehearsalOutcome> Rehearsal::restoreDefault(Arguments) {
    TerminalListener scanning = listener({.scans = &m_session.scans});
    co_return co_await outcome(scanning, m_session.profileActions.restoreDefault(StartedFrom::Page, scanning));
}

QCoro::Task<RehearsalOutcome> Rehearsal::undoTweaks(Arguments) {
    TerminalListener telling = listener({});
    co_return co_await outcome(telling, m_session.tweakActions.undo(telling));
}

QCoro::Task<RehearsalOutcome> Rehearsal::reinstate(Arguments) {
    TerminalListener telling = listener({});
    co_return co_await outcome(telling, m_session.systemActions.reinstate(telling));
}

QCoro::Task<RehearsalOutcome> Rehearsal::resume(Arguments) {
    TerminalListener scanning = listener({.scans = &m_session.scans});
    co_return co_await outcome(scanning, m_session.interruptionActions.finish(scanning));
}

QCoro::Task<RehearsalOutcome> Rehearsal::rollBack(Arguments) {
    TerminalListener scanning = listener({.scans = &m_session.scans});
    co_return co_await outcome(scanning, m_session.interruptionActions.goBack(scanning));
}

QCoro::Task<RehearsalOutcome> Rehearsal::saveSnapshot(Arguments arguments) {
    using Archive = SystemManager::MasterArchive;
    TerminalListener telling = listener({});
    const std::optional<QString> label =
        arguments.operand().isEmpty() ? std::nullopt : std::optional(arguments.operand());
    const Archive archive = arguments.asMaster ? Archive::Yes : Archive::No;
    co_return co_await outcome(telling, m_session.systemActions.saveSnapshot(label, archive, telling));
}

QCoro::Task<RehearsalOutcome> Rehearsal::scan(Arguments) {
    if (const std::optional<FlowRecord> interrupted = m_session.system.interruptedFlow()) {
        print(QStringList(interruptionNote(*interrupted)));
    }
    TerminalListener telling = listener({});
    co_return co_await outcome(telling, m_session.systemActions.verify(telling));
}

QCoro::Task<RehearsalOutcome> Rehearsal::discover(Arguments) {
    RehearsalOutcome outcome;
    outcome.startupItems = co_await m_session.system.discoverStartupItems(SystemManager::StartupRefresh::UseCache);
    outcome.succeeded = true;
    print(startupItemLines(*outcome.startupItems));
    co_return outcome;
}

QCoro::Task<RehearsalOutcome> Rehearsal::maintain(Arguments arguments) {
    TerminalListener telling = listener({});
    co_return co_await outcome(telling, m_session.maintenanceActions.execute(arguments.maintenance, telling));
}

QCoro::Task<RehearsalOutcome> Rehearsal::operateNetwork(Arguments arguments) {
    TerminalListener telling = listener({});
    co_return co_await outcome(telling, m_session.networkActions.execute(arguments.network, telling));
}

// ---- The label on the wallpaper

QCoro::Task<RehearsalOutcome> Rehearsal::changeOverlay(Arguments arguments) {
    TerminalListener telling = listener({});
    SettingsActions& settings = m_session.settingsActions;
    QCoro::Task<ActionOutcome> action =
        arguments.withoutOverlay ? settings.removeLabel(telling) : settings.showLabel(arguments.operand(), telling);
    RehearsalOutcome result = co_await outcome(telling, std::move(action));
    result.displays = shownPictures();
    print(displayLines(*result.displays));
    co_return result;
}

QList<ShownPicture> Rehearsal::shownPictures() {
    const Displays& displays = m_host.host().displays;
    QList<ShownPicture> shown;
    for (const Display& display : displays.screens()) {
        shown.append({display.localizedName, displays.desktopPicture(display).value_or(QString())});
    }
    return shown;
}

// ---- Profiles in iCloud Drive

QCoro::Task<RehearsalOutcome> Rehearsal::backUpProfiles(Arguments) {
    TerminalListener telling = listener({});
    co_return co_await outcome(telling, m_session.backupActions.backUp(telling));
}

QCoro::Task<RehearsalOutcome> Rehearsal::listBackups(Arguments) {
    TerminalListener telling = listener({});
    RehearsalOutcome result = co_await outcome(telling, m_session.backupActions.refresh(telling));
    if (result.succeeded) {
        result.backups = backupRows(m_session.cloudBackups.backups(), m_host.host().machine);
        print(backupLines(*result.backups));
    }
    co_return result;
}

QCoro::Task<RehearsalOutcome> Rehearsal::restoreBackup(Arguments arguments) {
    TerminalListener telling = listener({});
    co_return co_await outcome(telling, m_session.backupActions.restore(arguments.operand(), telling));
}

// ---- The logs of earlier runs

QCoro::Task<RehearsalOutcome> Rehearsal::showLogs(Arguments arguments) {
    bool isNumber = true;
    const int number = arguments.operand().isEmpty() ? 0 : arguments.operand().toInt(&isNumber);
    if (!isNumber || number < 0 || (number == 0 && !arguments.operand().isEmpty())) {
        throw UnusableInput(u"logs: not the number of a run: "_s + arguments.operand());
    }
    const KeptRuns kept = m_session.logActions.keptRuns();
    if (!kept.problem.isEmpty()) {
        complain(kept.problem);
        co_return RehearsalOutcome{};
    }
    if (number > 0) {
        co_return co_await printKeptLog(kept.runs, number);
    }
    RehearsalOutcome listed;
    listed.runs = kept.runs;
    listed.succeeded = true;
    print(runLines(kept.runs));
    co_return listed;
}

QCoro::Task<RehearsalOutcome> Rehearsal::printKeptLog(QList<KeptRun> runs, int number) {
    RehearsalOutcome printed;
    if (number > runs.size()) {
        complain(u"There is no run %1."_s.arg(number));
        co_return printed;
    }
    const KeptLog log = co_await m_session.logActions.readKept(runs.at(number - 1));
    if (!log.problem.isEmpty()) {
        complain(log.problem);
        co_return printed;
    }
    printed.keptLog = log.lines;
    printed.succeeded = true;
    print(log.lines);
    co_return printed;
}

// ---- What there is to go back to

QCoro::Task<RehearsalOutcome> Rehearsal::listBaselines(Arguments) {
    TerminalListener telling = listener({});
    RehearsalOutcome result = co_await outcome(telling, m_session.baselineActions.list(telling));
    if (result.succeeded) {
        result.baselines = m_session.baselineActions.rows();
        print(baselineLines(*result.baselines));
    }
    co_return result;
}

QCoro::Task<RehearsalOutcome> Rehearsal::useBaseline(Arguments arguments) {
    TerminalListener telling = listener({});
    co_await m_session.baselineActions.list(telling);
    const QList<ChoosableRow>& rows = m_session.baselineActions.rows();
    bool isNumber = false;
    const int number = arguments.operand().toInt(&isNumber);
    if (!isNumber || number < 0 || number >= rows.size()) {
        throw UnusableInput(u"use-baseline: a number that \"baselines\" lists, not "_s + arguments.operand());
    }
    const QString id = rows.at(number).id;
    co_return co_await outcome(telling, m_session.baselineActions.use(id, telling));
}

/// What an action came to, as far as the terminal shows it.
QCoro::Task<RehearsalOutcome> Rehearsal::outcome(TerminalListener& listener, QCoro::Task<ActionOutcome> action) {
    const ActionOutcome of = co_await std::move(action);
    RehearsalOutcome shown{of, {}, {}, {}};
    shown.alert = listener.told();
    shown.labels = m_labels;
    if (listener.match()) {
        shown.match = listener.match();
    }
    co_return shown;
}

} // namespace quorvane
