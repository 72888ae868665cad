#include "rehearsal/Report.h"

#include "core/Json.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

Json itemsJson(const QList<ApplyVerificationResult::Item>& items) {
    Json array = Json::array();
    for (const ApplyVerificationResult::Item& item : items) {
        Json object;
        object["name"] = encodeJson(item.name);
        if (item.detail) {
            object["detail"] = encodeJson(*item.detail);
        }
        array.push_back(std::move(object));
    }
    return array;
}

Json sectionsJson(const QList<ReviewSection>& sections) {
    Json array = Json::array();
    for (const ReviewSection& section : sections) {
        Json rows = Json::array();
        for (const ReviewSection::Row& row : section.rows) {
            rows.push_back(encodeJson(row.detail.isEmpty() ? row.text : row.text + u" — "_s + row.detail));
        }
        array.push_back({{"title", encodeJson(section.title)}, {"rows", std::move(rows)}});
    }
    return array;
}

Json startupItemsJson(const QList<StartupItem>& items) {
    Json array = Json::array();
    for (const StartupItem& item : items) {
        array.push_back(encodeJson(item));
    }
    return array;
}

Json verificationJson(const ApplyVerificationResult& verification) {
    return {{"verified", itemsJson(verification.verified)}, {"failed", itemsJson(verification.failed)}};
}

const char* nameOf(RestoreSource source) {
    switch (source) {
    case RestoreSource::StandardDefaults:
        return "standardDefaults";
    case RestoreSource::Snapshot:
        return "snapshot";
    case RestoreSource::Baseline:
        return "baseline";
    case RestoreSource::First:
        return "beforeQuorvane";
    case RestoreSource::Chosen:
        return "chosen";
    }
    return "";
}

Json restoreJson(const RestoreOutcome& restore) {
    return {{"source", nameOf(restore.source)}};
}

Json matchJson(const SystemConfigurationMatch& match) {
    const bool isProfile = match.kind == MatchedConfigurationKind::savedProfile;
    Json object{{"name", encodeJson(match.name)},
                {"kind", isProfile ? "savedProfile" : "builtinMode"},
                {"verification", verificationJson(match.verification)}};
    if (match.isKept) {
        object["isKept"] = true;
    }
    return object;
}

Json captureJson(const SnapshotCapture& capture) {
    return {{"isSaved", capture.isSaved}, {"isArchived", capture.isArchived}};
}

Json displaysJson(const QList<ShownPicture>& displays) {
    Json array = Json::array();
    for (const ShownPicture& shown : displays) {
        array.push_back({{"display", encodeJson(shown.display)}, {"picture", encodeJson(shown.path)}});
    }
    return array;
}

Json labelsJson(const QList<DisplayLabel>& labels) {
    Json array = Json::array();
    for (const DisplayLabel& label : labels) {
        array.push_back(
            {{"display", encodeJson(label.display)}, {"isShown", label.isShown}, {"detail", encodeJson(label.detail)}});
    }
    return array;
}

Json backupsJson(const QList<ListedBackup>& backups) {
    Json array = Json::array();
    for (const ListedBackup& row : backups) {
        array.push_back(
            {{"id", encodeJson(row.id)}, {"title", encodeJson(row.title)}, {"detail", encodeJson(row.detail)}});
    }
    return array;
}

Json runsJson(const QList<KeptRun>& runs) {
    Json array = Json::array();
    for (qsizetype i = 0; i < runs.size(); ++i) {
        array.push_back(
            {{"number", i + 1}, {"title", encodeJson(runs.at(i).title)}, {"file", encodeJson(runs.at(i).file)}});
    }
    return array;
}

Json baselinesJson(const QList<ChoosableRow>& rows) {
    Json array = Json::array();
    for (const ChoosableRow& row : rows) {
        array.push_back({{"number", encodeJson(static_cast<int>(array.size()))},
                         {"title", encodeJson(row.text.title)},
                         {"detail", encodeJson(row.text.subtitle)},
                         {"note", encodeJson(row.note)},
                         {"isUsed", !row.mark.isEmpty()}});
    }
    return array;
}

} // namespace

QStringList previewLines(const ProfileApplyPreview& preview) {
    QStringList lines{u"Review Profile: "_s + preview.profileName};
    for (const ReviewSection& section : reviewSections(preview)) {
        lines.append(u"  "_s + section.title);
        for (const ReviewSection::Row& row : section.rows) {
            lines.append(u"    "_s + (row.detail.isEmpty() ? row.text : row.text + u" — "_s + row.detail));
        }
    }
    return lines;
}

QStringList startupItemLines(const QList<StartupItem>& items) {
    QStringList lines;
    for (const StartupItem& item : items) {
        QStringList parts{item.name, label(item.kind), item.runsAtStartup ? u"on"_s : u"off"_s};
        if (item.isProtected) {
            parts.append(u"protected"_s);
        }
        lines.append(parts.join(u" — "_s));
        lines.append(u"    "_s + item.path);
    }
    return lines;
}

QStringList backupLines(const QList<ListedBackup>& backups) {
    if (backups.isEmpty()) {
        return {u"No iCloud backups were found for Quorvane."_s};
    }
    QStringList lines;
    for (const ListedBackup& row : backups) {
        lines.append(QStringList{row.id, row.title, row.detail}.join(u" — "_s));
    }
    return lines;
}

QStringList runLines(const QList<KeptRun>& runs) {
    if (runs.isEmpty()) {
        return {u"No logs are kept."_s};
    }
    QStringList lines;
    for (qsizetype i = 0; i < runs.size(); ++i) {
        lines.append(QStringList{QString::number(i + 1), runs.at(i).title, runs.at(i).file}.join(u" — "_s));
    }
    return lines;
}

QStringList baselineLines(const QList<ChoosableRow>& rows) {
    QStringList lines;
    for (const ChoosableRow& row : rows) {
        QStringList parts{QString::number(lines.size()), row.text.title, row.text.subtitle, row.note, row.mark};
        parts.removeAll(QString());
        lines.append(parts.join(u" — "_s));
    }
    return lines;
}

QStringList alertLines(const ClosingAlert& alert) {
    QStringList lines{u'\n' + alert.title};
    for (const QString& line : alert.text.split(u'\n', Qt::SkipEmptyParts)) {
        lines.append(u"  "_s + line);
    }
    return lines;
}

QStringList displayLines(const QList<ShownPicture>& displays) {
    QStringList lines;
    for (const ShownPicture& shown : displays) {
        lines.append(shown.display + u": "_s + (shown.path.isEmpty() ? u"unknown"_s : shown.path));
    }
    return lines;
}

QStringList labelLines(const QList<DisplayLabel>& labels) {
    QStringList lines;
    for (const DisplayLabel& label : labels) {
        const QString detail = label.detail.isEmpty() ? QString() : u". "_s + label.detail;
        const QString outcome = label.isShown ? u": the label is shown"_s : u": no label"_s;
        lines.append(label.display + outcome + detail);
    }
    return lines;
}

QByteArray jsonReport(const QString& command, const QStringList& log, const RehearsalOutcome& outcome) {
    Json report;
    report["command"] = encodeJson(command);
    report["log"] = encodeJson(QList<QString>(log));
    report["succeeded"] = outcome.succeeded;
    if (outcome.verification) {
        report["verification"] = verificationJson(*outcome.verification);
    }
    if (outcome.preview) {
        report["preview"] = {{"profileName", encodeJson(outcome.preview->profileName)},
                             {"sections", sectionsJson(reviewSections(*outcome.preview))}};
    }
    if (outcome.startupItems) {
        report["startupItems"] = startupItemsJson(*outcome.startupItems);
    }
    if (outcome.alert) {
        report["alert"] = {{"title", encodeJson(outcome.alert->title)}, {"text", encodeJson(outcome.alert->text)}};
    }
    if (outcome.restore) {
        report["restore"] = restoreJson(*outcome.restore);
    }
    if (outcome.capture) {
        report["capture"] = captureJson(*outcome.capture);
    }
    if (outcome.match) {
        report["match"] = matchJson(*outcome.match);
    }
    if (outcome.displays) {
        report["displays"] = displaysJson(*outcome.displays);
    }
    if (outcome.backups) {
        report["backups"] = backupsJson(*outcome.backups);
    }
    if (outcome.baselines) {
        report["baselines"] = baselinesJson(*outcome.baselines);
    }
    if (outcome.labels) {
        report["labels"] = labelsJson(*outcome.labels);
    }
    if (outcome.runs) {
        report["runs"] = runsJson(*outcome.runs);
    }
    if (outcome.keptLog) {
        report["keptLog"] = encodeJson(QList<QString>(*outcome.keptLog));
    }
    return jsonText(report) + '\n';
}

} // namespace quorvane
