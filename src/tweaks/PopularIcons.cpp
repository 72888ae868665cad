#include "tweaks/PopularIcons.h"

namespace quorvane {

using namespace Qt::StringLiterals;

const QStringList& popularIcons() {
    static const QStringList icons{
        u"bolt.shield.fill"_s,
        u"cpu.fill"_s,
        u"battery.100.bolt"_s,
        u"exclamationmark.triangle.fill"_s,
        u"clock.arrow.circlepath"_s,
        u"arrow.down.app.fill"_s,
        u"bell.slash.fill"_s,
        u"doc.text.magnifyingglass"_s,
        u"antenna.radiowaves.left.and.right.slash"_s,
        u"mic.slash.fill"_s,
        u"speaker.slash.fill"_s,
        u"gearshape.fill"_s,
        u"power.circle.fill"_s,
        u"memorychip.fill"_s,
        u"wifi.slash"_s,
        u"brain.fill"_s,
        u"lightbulb.fill"_s,
        u"shield.fill"_s,
        u"lock.fill"_s,
        u"eye.slash.fill"_s,
        u"printer.slash.fill"_s,
        u"camera.fill"_s,
        u"video.fill"_s,
        u"music.note.fill"_s,
        u"headphones"_s,
        u"guitars.fill"_s,
        u"mic.circle.fill"_s,
        u"speaker.fill"_s,
        u"display"_s,
        u"laptopcomputer"_s,
        u"ipad"_s,
        u"iphone"_s,
        u"network.slash"_s,
        u"person.2.fill"_s,
        u"gearshape.circle.fill"_s,
        u"star.fill"_s,
        u"heart.fill"_s,
        u"flag.fill"_s,
        u"tag.fill"_s,
        u"folder.fill"_s,
        u"doc.fill"_s,
        u"trash.fill"_s,
        u"arrow.up.doc.fill"_s,
        u"checkmark.circle.fill"_s,
        u"xmark.circle.fill"_s,
        u"exclamationmark.circle.fill"_s,
        u"info.circle.fill"_s,
        u"questionmark.circle.fill"_s,
        u"plus.circle.fill"_s,
        u"minus.circle.fill"_s,
    };
    return icons;
}

QStringList matchingIcons(const QString& searchText) {
    return popularIcons().filter(searchText, Qt::CaseInsensitive);
}

} // namespace quorvane
