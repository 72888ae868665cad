#include "fakes/BackgroundList.h"

#include "core/CommandResult.h"
#include "system/SystemManager.h"

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

QString backgroundListLine(const QString& dumpPath) {
    return u"( /usr/bin/perl -e 'alarm shift; exec @ARGV' 30 /usr/bin/sfltool dumpbtm && echo 'Quorvane: end of the list' ) > '"_s +
           dumpPath + u"' 2>/dev/null || true"_s;
}

void learnBackgroundItems(SystemManager& system) {
    const QString line = backgroundListLine(system.backgroundDumpPath());
    if (QCoro::waitFor(system.executeAdminScript(line, kListPrompt)).status == 0) {
        QCoro::waitFor(system.loadPrivilegedBackgroundDump());
    }
}

} // namespace quorvane
