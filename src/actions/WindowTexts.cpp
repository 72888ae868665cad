#include "actions/WindowTexts.h"

#include "actions/ActiveProfile.h"
#include "core/OneLine.h"

namespace quorvane {

using namespace Qt::StringLiterals;

// ---- The frame

QString titleName(const ActiveConfiguration& active) {
    return active.isSavedProfile ? active.name : active.current.name;
}

QString windowTitle(const ActiveConfiguration& active) {
    const QString name = titleName(active);
    if (name.isEmpty() || isDefaultProfileName(name)) {
        return u"Quorvane"_s;
    }
    return u"Quorvane — "_s + nameOnOneLine(name);
}

const QList<TabText>& tabTexts() {
    static const QList<TabText> texts{
        {Tab::performance, u"Performance"_s, u"gauge.medium.badge.plus"_s, u"Optimization"_s},
        {Tab::maintenance, u"Maintenance"_s, u"wrench.and.screwdriver.fill"_s, u"Optimization"_s},
        {Tab::network, u"Network"_s, u"network"_s, u"Optimization"_s},
        {Tab::logs, u"Logs"_s, u"doc.text.fill"_s, u"Diagnostics"_s},
        {Tab::settings, u"Settings"_s, u"gearshape.fill"_s, u"Preferences"_s},
    };
    return texts;
}

// ---- The log

QString unreadableLogText(const QString& problem) {
    return u"The log of this run can’t be read: "_s + onOneLine(problem);
}

QString unlistedRunsText(const QString& problem) {
    return u"Earlier runs can’t be listed: "_s + onOneLine(problem);
}

QString latestText(int linesBelow) {
    return u"Latest (%1)"_s.arg(linesBelow);
}

// ---- While the program is busy

QString waitingText(bool isBusy, const QString& busyMessage, bool isVerifying) {
    if (isBusy && !busyMessage.isEmpty()) {
        return busyMessage;
    }
    return isVerifying ? u"Verifying system settings…"_s : u"Please wait…"_s;
}

// ---- The baseline prompt

const QStringList& baselinePromptPoints() {
    static const QStringList points{
        u"Stored permanently in iCloud when available"_s,
        u"Falls back to ~/.quorvane when iCloud is unavailable"_s,
        u"Never removed automatically"_s,
        u"Updated only when you manually save a new restore baseline"_s,
    };
    return points;
}

} // namespace quorvane
