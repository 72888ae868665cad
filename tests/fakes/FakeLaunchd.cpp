#include "fakes/FakeLaunchd.h"

#include <QRegularExpression>
#include <QStringList>

namespace quorvane {

using namespace Qt::StringLiterals;

std::optional<CommandOutcome> FakeLaunchd::answer(const QStringList& arguments) {
    if (arguments.value(0) != u"/bin/launchctl") {
        return std::nullopt;
    }
    const QString verb = arguments.value(1);
    CommandOutcome outcome;
    outcome.ending = CommandOutcome::Ending::Exited;
    if (verb == u"print-disabled") {
        outcome.code = isMute ? 112 : 0;
        outcome.standardOutput = isMute ? QByteArray() : listing(arguments.value(2));
        return outcome;
    }
    if ((verb == u"list" && arguments.size() == 2) || verb == u"print") {
        return jobAnswer(arguments);
    }
    if (verb == u"disable" || verb == u"enable") {
        set(arguments.value(2), verb == u"disable");
    }
    return std::nullopt; // what it answers else is the test's business
}

void FakeLaunchd::carryOut(const QString& line) {
    static const QRegularExpression change(u"/bin/launchctl (disable|enable) ([^ ;&']+|'[^']*')"_s);
    for (const QRegularExpressionMatch& match : change.globalMatch(line)) {
        set(match.captured(2).remove(u'\''), match.captured(1) == u"disable");
    }
}

void FakeLaunchd::set(const QString& target, bool isDisabled) {
    if (!stubborn.contains(target)) {
        overrides.insert(target, isDisabled);
    }
}

QByteArray FakeLaunchd::listing(const QString& domain) const {
    QString text = u"\tdisabled services = {\n"_s;
    for (auto override = overrides.begin(); override != overrides.end(); ++override) {
        if (override.key().startsWith(domain + u'/')) {
            text += u"\t\t\""_s + override.key().mid(domain.size() + 1) + u"\" => "_s +
                    (*override ? u"disabled\n"_s : u"enabled\n"_s);
        }
    }
    return (text + u"\t}\n\tlogin item associations = {\n\t}\n"_s).toUtf8();
}

CommandOutcome FakeLaunchd::jobAnswer(const QStringList& arguments) const {
    CommandOutcome outcome;
    outcome.ending = CommandOutcome::Ending::Exited;
    if (isMuteOfJobs) {
        outcome.code = 112;
    } else if (arguments.at(1) == u"print") {
        outcome.code = stoppedJobs.contains(arguments.value(2).section(u'/', -1)) ? 113 : 0;
    } else {
        outcome.standardOutput = "PID\tStatus\tLabel\n";
        for (const QString& label : sessionJobs) {
            outcome.standardOutput += stoppedJobs.contains(label) ? QByteArray() : "-\t0\t" + label.toUtf8() + '\n';
        }
    }
    return outcome;
}

QString withLooksAtLaunchd(QString trace) {
    return trace.replace(u"$> /bin/launchctl print-disabled gui/501\n$> /bin/launchctl print-disabled system\n"_s,
                         kLookAtLaunchd);
}

} // namespace quorvane
