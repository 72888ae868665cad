#include "actions/ProfileTexts.h"

#include "core/OneLine.h"
#include "profiles/ProfileNames.h"
#include "profiles/UnifiedProfile.h"
#include "tweaks/PerformanceSettings.h"

namespace quorvane {

using namespace Qt::StringLiterals;

QString tweaksSelectedText(const PerformanceSettings& settings) {
    return u"%1 tweaks selected"_s.arg(selectedTweakCount(settings));
}

QString profileNameNote(const QString& name) {
    return isDefaultProfileName(name)
               ? u"“Default” is standard macOS operation: applying it brings back your saved settings, or macOS’s own "
                 "where none are saved."_s
               : QString();
}

QString stepCountText(int step, int count) {
    return u"%1 of %2"_s.arg(step).arg(count);
}

QString tweaksSummary(const PerformanceSettings& settings) {
    return u"%1 selected"_s.arg(selectedTweakCount(settings));
}

QString renameNote(const QString& oldName, const QString& newName) {
    const QString saved = sanitizedProfileName(newName);
    return saved.isEmpty() || saved == oldName ? QString() : u"“"_s + nameOnOneLine(oldName) + u"” will be renamed."_s;
}

} // namespace quorvane
