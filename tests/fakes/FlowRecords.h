#pragma once

#include "flows/FlowRecord.h"

#include <QUuid>

namespace quorvane {

/// An apply of "Live Set" that was to take three steps.
inline FlowRecord recordOfApply() {
    using namespace Qt::StringLiterals;
    FlowRecord record;
    record.flow = RecordedFlow::Profile;
    record.name = u"Live Set"_s;
    record.process = u"a run that died"_s;
    record.began = QDateTime(QDate(2026, 11, 22), QTime(20, 0), Qt::UTC);
    record.profile.id = QUuid(u"6F1E2B44-9C3D-4E5A-8B7F-0A1B2C3D4E5F"_s);
    record.profile.name = record.name;
    record.profile.dateCreated = QDateTime(QDate(2026, 11, 1), QTime(12, 0), Qt::UTC);
    record.profile.settings.appNap = true;
    record.steps = {u"App Nap"_s, u"what runs at login"_s, u"what needs an administrator"_s};
    SystemSnapshot settings;
    settings.id = QUuid(u"11111111-2222-4333-8444-555555555555"_s);
    settings.dateCreated = record.began;
    settings.appNapDisabled = u"0"_s;
    record.before.settings = settings;
    record.before.keptOff = {{{LaunchdDomain::System, u"com.example.daemon"_s}},
                             {u"/Library/LaunchDaemons/com.example.daemon.plist"_s},
                             {u"/Users/alex/.quorvane_backup/bundled-login-items/com.x/X.app"_s},
                             {u"com.x"_s},
                             {u"Wi-Fi"_s}};
    record.before.waiting = {{{LaunchdDomain::System, u"com.example.late"_s}, {}}};
    record.before.notes = {u"Club"_s, {u"siri"_s}, {u"/Applications/Live.app"_s}, true};
    return record;
}

/// What stands in the file of a run that has come so far.
inline QByteArray journalOf(const FlowRecord& record, qsizetype done) {
    QByteArray bytes = beginningOf(record);
    for (const QString& step : record.steps.first(done)) {
        bytes += doneLine(step);
    }
    return bytes;
}

} // namespace quorvane
