#include "rehearsal/Report.h"

#include "core/Json.h"

namespace quorvane {

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

} // namespace

QByteArray jsonReport(const QString& command, const QStringList& log, const RehearsalOutcome& outcome) {
    Json report;
    report["command"] = encodeJson(command);
    report["log"] = encodeJson(QList<QString>(log));
    report["succeeded"] = outcome.succeeded;
    if (outcome.verification) {
        report["verification"] = {{"verified", itemsJson(outcome.verification->verified)},
                                  {"failed", itemsJson(outcome.verification->failed)}};
    }
    return jsonText(report) + '\n';
}

} // namespace quorvane
