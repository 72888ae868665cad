#include "core/AudioMakers.h"

#include <QSet>

namespace quorvane {

using namespace Qt::StringLiterals;

// A further maker is one more line. The comments say where a prefix can be looked up: "cask" is the entry of that name in
// Homebrew's public list of applications, whose "uninstall" and "zap" tell what an installer leaves.
const QList<AudioMaker>& audioMakers() {
    static const QList<AudioMaker> makers{
        // Interfaces, mixers, and what carries sound between applications
        {u"audio.existential"_s, u"Existential Audio"_s},  // cask blackhole-2ch
        {u"com.antelopeaudio"_s, u"Antelope Audio"_s},     // the maker's launcher and its unified driver
        {u"com.apogee"_s, u"Apogee Electronics"_s},        // cask apogee-symphony
        {u"com.apogeedigital"_s, u"Apogee Electronics"_s}, // cask apogee-duet
        {u"com.audient"_s, u"Audient"_s},                  // cask audient-evo
        {u"com.audinate"_s, u"Audinate"_s},                // cask dante-controller
        {u"com.behringer"_s, u"Behringer"_s},              // the maker's USB audio driver
        {u"com.focusrite"_s, u"Focusrite"_s},              // cask focusrite-control
        {u"com.motu"_s, u"MOTU"_s},                        // cask motu-m-series
        {u"com.m-audio"_s, u"M-Audio"_s},                  // the maker's FireWire and USB drivers
        {u"com.presonus"_s, u"PreSonus"_s},                // Studio One's own identifier
        {u"com.rogueamoeba"_s, u"Rogue Amoeba"_s},         // cask loopback
        {u"com.uaudio"_s, u"Universal Audio"_s},           // the maker's Apollo installer
        {u"com.yamaha"_s, u"Yamaha"_s},                    // casks of its console editors
        {u"de.rme-audio"_s, u"RME"_s},                     // cask totalmix-fx

        // Controllers, instruments and machines
        {u"com.air-music-technology"_s, u"AIR Music Technology"_s}, // cask akai-mpc, cask engine-prime
        {u"com.akaipro"_s, u"Akai Professional"_s},                 // cask akai-mpc
        {u"com.arturia"_s, u"Arturia"_s},                           // cask arturia-software-center
        {u"com.inmusicbrands"_s, u"inMusic"_s},                     // Engine DJ's own identifier
        {u"com.korg"_s, u"Korg"_s},                                 // the maker's activation preferences
        {u"com.native-instruments"_s, u"Native Instruments"_s},     // cask native-access
        {u"com.novationmusic"_s, u"Novation"_s},                    // cask novation-components
        {u"com.spectrasonics"_s, u"Spectrasonics"_s},               // the installers of Keyscape and Trilian
        {u"com.spitfireaudio"_s, u"Spitfire Audio"_s},              // cask spitfire-audio
        {u"com.toontrack"_s, u"Toontrack"_s},                       // the maker's product manager
        {u"com.u-he"_s, u"u-he"_s},                                 // the installers of Zebra and Triple Cheese
        {u"com.xferrecords"_s, u"Xfer Records"_s},                  // Serum's own identifier
        {u"com.xlnaudio"_s, u"XLN Audio"_s},                        // cask xln-online-installer
        {u"jp.co.korg"_s, u"Korg"_s},                               // the maker's applications
        {u"jp.co.roland"_s, u"Roland"_s},                           // cask zenbeats, and the maker's drivers
        {u"se.elektron"_s, u"Elektron"_s},                          // cask elektron-overbridge

        // Effects
        {u"com.antarestech"_s, u"Antares"_s},             // Auto-Tune's own identifier
        {u"com.celemony"_s, u"Celemony"_s},               // cask melodyne
        {u"com.eventide"_s, u"Eventide"_s},               // cask eventide-2016-stereo-room
        {u"com.fabfilter"_s, u"FabFilter"_s},             // casks fabfilter-one, fabfilter-micro and others
        {u"com.ikmultimedia"_s, u"IK Multimedia"_s},      // cask ik-product-manager
        {u"com.izotope"_s, u"iZotope"_s},                 // cask izotope-product-portal
        {u"com.kilohearts"_s, u"Kilohearts"_s},           // the maker's installer
        {u"com.plugin-alliance"_s, u"Plugin Alliance"_s}, // the maker's installation helper
        {u"com.slatedigital"_s, u"Slate Digital"_s},      // the maker's access hub
        {u"com.softube"_s, u"Softube"_s},                 // cask softube-central
        {u"com.sonarworks"_s, u"Sonarworks"_s},           // the launchd label of SoundID Reference
        {u"com.soundtoys"_s, u"Soundtoys"_s},             // cask soundtoys
        {u"com.valhalladsp"_s, u"Valhalla DSP"_s},        // casks of its reverbs and delays
        {u"com.wavesaudio"_s, u"Waves Audio"_s},          // cask waves-central
        {u"org.softube"_s, u"Softube"_s},                 // cask softube-central

        // Workstations, decks and show playback
        {u"com.ableton"_s, u"Ableton"_s},                      // cask ableton-live-suite
        {u"com.algoriddim"_s, u"Algoriddim"_s},                // djay's own identifier
        {u"com.atomixproductions"_s, u"Atomix Productions"_s}, // cask virtualdj
        {u"com.avid"_s, u"Avid"_s},                            // Pro Tools' own identifier
        {u"com.bitwig"_s, u"Bitwig"_s},                        // Bitwig Studio's own identifier
        {u"com.cockos"_s, u"Cockos"_s},                        // cask reaper
        {u"com.cycling74"_s, u"Cycling '74"_s},                // cask ableton-live-suite, for Max
        {u"com.digidesign"_s, u"Digidesign"_s},                // the type of Sound Designer files
        {u"com.figure53"_s, u"Figure 53"_s},                   // QLab's own identifier
        {u"com.image-line"_s, u"Image-Line"_s},                // cask fl-studio
        {u"com.propellerheads"_s, u"Propellerhead"_s},         // Reason's identifier up to its tenth version
        {u"com.reasonstudios"_s, u"Reason Studios"_s},         // the maker's companion
        {u"com.steinberg"_s, u"Steinberg"_s},                  // cask steinberg-activation-manager

        // Licence services
        {u"com.paceap"_s, u"PACE Anti-Piracy"_s}, // cask ilok-license-manager
    };
    return makers;
}

namespace {

bool isOfIdentifier(QChar c) {
    return c.isLetterOrNumber() || c == u'-' || c == u'_';
}

/// Views into the table, which lasts.
const QSet<QStringView>& makersPrefixes() {
    static const QSet<QStringView> prefixes = [] {
        QSet<QStringView> views;
        for (const AudioMaker& maker : audioMakers()) {
            views.insert(maker.prefix);
        }
        return views;
    }();
    return prefixes;
}

qsizetype endOfComponent(QStringView text, qsizetype start) {
    while (start < text.size() && isOfIdentifier(text.at(start))) {
        ++start;
    }
    return start;
}

/// True when two or three components that begin there are a maker's prefix.
bool beginsWithPrefix(QStringView text, qsizetype start) {
    qsizetype end = endOfComponent(text, start);
    for (int components = 2; components <= 3; ++components) {
        if (end >= text.size() || text.at(end) != u'.') {
            return false;
        }
        end = endOfComponent(text, end + 1);
        if (makersPrefixes().contains(text.mid(start, end - start))) {
            return true;
        }
    }
    return false;
}

} // namespace

bool isOfAudioMaker(const QString& text) {
    const QString folded = text.toLower();
    for (qsizetype start = 0; start < folded.size(); start = endOfComponent(folded, start) + 1) {
        if (beginsWithPrefix(folded, start)) {
            return true;
        }
    }
    return false;
}

} // namespace quorvane
