#include "actions/BaselineTexts.h"

#include "core/OneLine.h"
#include "platform/Machine.h"
#include "snapshots/BaselineDifferences.h"
#include "snapshots/HomeBaselines.h"

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using BaselineKind = KeptBaseline::Kind;

const QString kUsed = u"Used"_s;

QString nameOf(BaselineKind kind) {
    switch (kind) {
    case BaselineKind::Snapshot:
        return u"Snapshot"_s;
    case BaselineKind::First:
        return u"Saved by Quorvane"_s;
    case BaselineKind::Archive:
        return u"Protected baseline"_s;
    case BaselineKind::Chosen:
        break;
    }
    return u"Chosen baseline"_s;
}

QString symbolOf(const KeptBaseline& kept) {
    switch (kept.kind) {
    case BaselineKind::Snapshot:
        return u"camera.fill"_s;
    case BaselineKind::First:
        return u"clock.arrow.circlepath"_s;
    case BaselineKind::Archive:
        return kept.isInCloud ? u"icloud.fill"_s : u"archivebox.fill"_s;
    case BaselineKind::Chosen:
        break;
    }
    return u"checkmark.seal.fill"_s;
}

QString labelOr(const std::optional<QString>& label, const QString& other) {
    const QString name = nameOnOneLine(label.value_or(QString()));
    return name.trimmed().isEmpty() ? other : name;
}

QString placeOf(const KeptBaseline& kept) {
    if (!kept.isInCloud) {
        return {};
    }
    return kept.isAtHome ? u", in iCloud and ~/.quorvane"_s : u", in iCloud"_s;
}

QString macOf(const KeptBaseline& kept) {
    return kept.isAnotherMacs ? u"saved on "_s + nameOnOneLine(kept.baseline->deviceName) : u"this Mac"_s;
}

/// "Protected baseline, Nov 15, 2026 at 9:05 PM, saved on Studio, in iCloud"
QString detailOf(const KeptBaseline& kept, const Machine& machine) {
    if (!kept.baseline) {
        return nameOf(kept.kind) + placeOf(kept);
    }
    return nameOf(kept.kind) + u", "_s + machine.dateAndTimeText(kept.baseline->capturedAt) + u", "_s + macOf(kept) +
           placeOf(kept);
}

QString noteOf(const KeptBaseline& kept, const std::optional<CurrentSettings>& now) {
    if (kept.state == KeptBaseline::State::Coming) {
        return u"Not downloaded from iCloud yet."_s;
    }
    if (!kept.baseline) {
        return u"Can’t be read."_s;
    }
    if (!now) {
        return {};
    }
    const QStringList differences = differencesFromNow(kept.baseline->snapshot, *now);
    return differences.isEmpty() ? u"No setting differs from now."_s
                                 : u"Differs from now: "_s + differences.join(u", "_s);
}

ChoosableRow rowOf(const KeptBaseline& kept, const std::optional<CurrentSettings>& now, const Machine& machine) {
    const QString title = kept.baseline ? labelOr(kept.baseline->label, nameOf(kept.kind)) : onOneLine(kept.fileName);
    return {
        kept.id, {title, detailOf(kept, machine), symbolOf(kept)}, noteOf(kept, now), {}, kept.baseline.has_value()};
}

/// What the ways back would use if nothing were chosen.
QString latestDetail(const LookedAtBaselines& looked, const Machine& machine) {
    if (!looked.captures) {
        return {};
    }
    KeptCaptures unchosen = *looked.captures;
    unchosen.chosen.reset();
    const std::optional<RestoreBaseline> latest = restoreBaselineOf(unchosen, identityOf(machine));
    return latest ? labelOr(latest->snapshot.label, u"Saved"_s) + u", "_s +
                        machine.dateAndTimeText(latest->snapshot.dateCreated)
                  : u"Nothing was saved on this Mac yet."_s;
}

bool isChosenInForce(const LookedAtBaselines& looked, const Machine& machine) {
    const std::optional<RestoreBaseline> used =
        looked.captures ? restoreBaselineOf(*looked.captures, identityOf(machine)) : std::nullopt;
    return used && used->source == RestoreSource::Chosen;
}

void markUsed(ChoosableRow& row) {
    row.mark = kUsed;
    row.canBeChosen = false;
}

} // namespace

RowText usedBaselineRow(const std::optional<RestoreBaseline>& used, const Machine& machine) {
    if (!used) {
        return {u"Nothing was saved on this Mac yet"_s,
                u"Quorvane saves your settings by itself before it changes any."_s, u"exclamationmark.triangle.fill"_s};
    }
    const QString label = labelOr(used->snapshot.label, u"Saved settings"_s);
    const QString mac = used->otherMac.isEmpty() ? QString() : u", saved on "_s + nameOnOneLine(used->otherMac);
    return {used->source == RestoreSource::Chosen ? u"Chosen: "_s + label : u"Latest: "_s + label,
            machine.dateAndTimeText(used->snapshot.dateCreated) + mac, u"checkmark.shield.fill"_s};
}

RowText chooseBaselineRow() {
    return {u"Choose a Restore Baseline…"_s, {}, u"archivebox.fill"_s};
}

ChoiceTexts baselineChoiceTexts() {
    return {kBaselinesTitle,
            u"Choose what Revert and Reinstate go back to. It is used until you save a new snapshot or choose again."_s,
            u"Looking for restore baselines…"_s,
            u"Choosing the restore baseline…"_s,
            {},
            u"Use"_s};
}

QList<ChoosableRow> baselineRows(const LookedAtBaselines& looked, const Machine& machine) {
    ChoosableRow latest{kLatestBaselineId,
                        {u"The Latest"_s, latestDetail(looked, machine), u"arrow.counterclockwise.circle.fill"_s},
                        {},
                        {},
                        looked.captures.has_value()};
    const bool isChosen = isChosenInForce(looked, machine);
    if (looked.captures && !isChosen) {
        markUsed(latest);
    }
    QList<ChoosableRow> rows{latest};
    bool isMarked = !isChosen;
    for (const KeptBaseline& kept : looked.kept) {
        ChoosableRow row = rowOf(kept, looked.now, machine);
        if (!isMarked && kept.baseline == looked.captures->chosen->baseline) {
            markUsed(row);
            isMarked = true;
        }
        rows.append(row);
    }
    return rows;
}

Alert anotherMacsBaselineQuestion(const QString& deviceName) {
    return {u"Use Another Mac’s Settings?"_s,
            u"This baseline was saved on “"_s + nameOnOneLine(deviceName) +
                u"”. Revert and Reinstate would put that Mac’s settings onto this one."_s,
            {u"Use"_s, u"Cancel"_s},
            1,
            0,
            AlertStyle::Warning};
}

} // namespace quorvane
