#include "actions/ProfileExchange.h"

#include "actions/ActionStage.h"
#include "actions/ActionTexts.h"
#include "actions/ExportedFile.h"
#include "actions/ProfileChanges.h"
#include "actions/SavedProfiles.h"
#include "core/Background.h"
#include "core/JsonErrors.h"
#include "core/Paths.h"
#include "platform/Clock.h"
#include "platform/FileManager.h"
#include "platform/FilePanels.h"
#include "profiles/MasterProfileState.h"
#include "profiles/ProfileImporting.h"
#include "profiles/ProfileJson.h"
#include "profiles/ProfileNames.h"

#include <QCoroFuture>
#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kImportProfiles = u"import profiles"_s;

/// The profile in a file, or why there is none.
struct ReadProfile {
    std::optional<UnifiedProfile> profile{};
    QString problem{};
};

ReadProfile profileOf(const QByteArray& bytes) {
    try {
        return {decodeProfile(bytes)};
    } catch (const DecodingError& error) {
        return {std::nullopt, error.message()};
    }
}

} // namespace

// ---- Export

QCoro::Task<ActionOutcome> ProfileExchange::exportCurrent(ActionListener& listener) {
    return m_stage.run(listener, [this](Action& action) -> QCoro::Task<void> {
        const std::optional<UnifiedProfile> loaded = m_parts.workingCopy.currentProfile();
        if (!loaded) {
            co_return;
        }
        const UnifiedProfile shown = m_parts.workingCopy.makeProfile(loaded->name, m_parts.clock.now());
        const QString suggestedName = sanitizedProfileName(shown.name) + u".json"_s;
        const std::optional<QString> path =
            co_await m_parts.panels.save(u"Export Profile"_s, suggestedName, FileKind::Profile);
        if (!path || !action.mayGoOn()) {
            co_return;
        }
        action.carryOutAtOnce();
        const std::optional<QString> problem = problemOfExport(*path, shown);
        action.outcome.succeeded = !problem;
        co_await action.tell(profileExportAlert(problem));
    });
}

std::optional<QString> ProfileExchange::problemOfExport(const QString& path, const UnifiedProfile& profile) {
    try {
        return problemOfExporting(m_parts.panels.files(), path, encodeProfile(profile));
    } catch (const EncodingError& error) {
        return error.message();
    }
}

// ---- Import

QCoro::Task<ActionOutcome> ProfileExchange::importChosen(ActionListener& listener) {
    return m_stage.run(listener, [this](Action& action) -> QCoro::Task<void> {
        if (!co_await action.passesGate(kImportProfiles)) {
            co_return;
        }
        const std::optional<QString> path = co_await m_parts.panels.open(u"Import Profile"_s, FileKind::Profile);
        if (path && action.mayGoOn()) {
            co_await carryOutImport(action, *path);
        }
    });
}

QCoro::Task<ActionOutcome> ProfileExchange::importFile(const QString& path, ActionListener& listener) {
    return m_stage.run(listener, [=, this](Action& action) -> QCoro::Task<void> {
        if (co_await action.passesGate(kImportProfiles)) {
            co_await carryOutImport(action, path);
        }
    });
}

QCoro::Task<void> ProfileExchange::carryOutImport(Action& action, QString path) {
    ReadProfile read;
    try {
        const QByteArray bytes = m_parts.panels.files().read(path);
        read = co_await inBackground(profileOf, bytes);
    } catch (const FileError& error) {
        read.problem = error.message();
    }
    if (!read.profile) {
        co_await action.tell(notImportedAlert(read.problem));
        co_return;
    }
    const QString fileName = lastPathComponent(path);
    std::optional<Alert> question;
    if (action.asks()) {
        const QList<UnifiedProfile> arriving{*read.profile};
        question = co_await m_parts.changes.questionBeforeArrival(arriving, fileName);
    }
    if (co_await action.isAgreedTo(question)) {
        co_await takeIn(action, *read.profile, fileName);
    }
}

QCoro::Task<void> ProfileExchange::takeIn(Action& action, UnifiedProfile profile, QString fileName) {
    const ProfileListing before = co_await m_parts.saved.list();
    ProfileImportResult result;
    std::optional<QString> problem;
    {
        const Turnstile::Hold busy = action.carryingOut(u"Importing profile…"_s, {.match = true});
        try {
            const QList<UnifiedProfile> profiles{profile};
            result = co_await importInTurns(m_parts.clock, m_parts.store, profiles);
        } catch (const ProfileImportError& error) {
            problem = error.message();
        }
        co_await m_parts.changes.followArrival(before.profiles);
    }
    action.outcome.succeeded = !problem;
    const ClosingAlert alert =
        problem ? notImportedAlert(*problem) : profileImportedAlert(profile.name, fileName, result);
    co_await action.tell(alert);
}

} // namespace quorvane
