#include "core/ExcludedNames.h"

#include "core/AudioMakers.h"

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

const QStringList& excludedKeywords() {
    static const QStringList keywords{u"ableton"_s,
                                      u"com.ableton.live"_s,
                                      u"Ableton"_s,
                                      u"logic"_s,
                                      u"logicpro"_s,
                                      u"com.apple.logic10"_s,
                                      u"com.apple.audiounits.cache"_s,
                                      u"com.apple.audiounits.sandboxed.cache"_s,
                                      u"audiounits"_s,
                                      u"audiounit"_s,
                                      u"AudioUnit"_s,
                                      u"vst"_s,
                                      u"vst2"_s,
                                      u"vst3"_s,
                                      u"clap"_s,
                                      u"aax"_s,
                                      u"plugin"_s,
                                      u"plug-in"_s,
                                      u"traktor"_s,
                                      u"serato"_s,
                                      u"rekordbox"_s,
                                      u"pioneer"_s,
                                      u"native instruments"_s};
    return keywords;
}

bool isExcludedName(const QString& name) {
    // As makers spell their names in identifiers: "com.native-instruments.NTKDaemon".
    QString spaced = name;
    spaced.replace(u'-', u' ').replace(u'_', u' ').replace(u'.', u' ');
    const auto isHeld = [&](const QString& keyword) {
        return name.contains(keyword, Qt::CaseInsensitive) || spaced.contains(keyword, Qt::CaseInsensitive);
    };
    return std::any_of(excludedKeywords().begin(), excludedKeywords().end(), isHeld) || isOfAudioMaker(name);
}

} // namespace quorvane
