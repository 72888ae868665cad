#include "ui/symbols/SymbolNames.h"

#include <algorithm>
#include <array>

namespace quorvane {

namespace {

// First systems as SFSafeSymbols lists them, which reads them out of the system's own table. The first SF symbols that AppKit
// has came with macOS 11.
constexpr std::array kSymbolNames{
    SymbolName{"antenna.radiowaves.left.and.right.slash", 12},
    SymbolName{"app.fill", 11},
    SymbolName{"archivebox.fill", 11},
    SymbolName{"arrow.counterclockwise.circle.fill", 11},
    SymbolName{"arrow.counterclockwise.icloud", 11},
    SymbolName{"arrow.down.app.fill", 11},
    SymbolName{"arrow.triangle.2.circlepath", 11},
    SymbolName{"arrow.trianglehead.2.clockwise.rotate.90", 15, "arrow.triangle.2.circlepath"},
    SymbolName{"arrow.up.doc.fill", 11},
    SymbolName{"battery.100.bolt", 11},
    SymbolName{"bell.slash.fill", 11},
    SymbolName{"bolt.shield.fill", 12},
    SymbolName{"book.fill", 11},
    SymbolName{"brain.fill", 14},
    SymbolName{"building.2.fill", 11},
    SymbolName{"camera.fill", 11},
    SymbolName{"checkmark.circle.fill", 11},
    SymbolName{"checkmark.seal.fill", 11},
    SymbolName{"checkmark.shield", 11},
    SymbolName{"checkmark.shield.fill", 11},
    SymbolName{"chevron.left", 11},
    SymbolName{"chevron.right", 11},
    SymbolName{"clock.arrow.circlepath", 11},
    SymbolName{"cloud.circle.fill", 13},
    SymbolName{"cloud.fill", 11},
    SymbolName{"cloud.sun.fill", 11},
    SymbolName{"cloud.sun.rain.fill", 11},
    SymbolName{"cpu.fill", 12},
    SymbolName{"cube.fill", 11},
    SymbolName{"cube.transparent.fill", 11},
    SymbolName{"display", 11},
    SymbolName{"display.and.arrow.down", 12},
    SymbolName{"doc.fill", 11},
    SymbolName{"doc.text.fill", 11},
    SymbolName{"doc.text.magnifyingglass", 11},
    SymbolName{"exclamationmark.circle.fill", 11},
    SymbolName{"exclamationmark.triangle.fill", 11},
    SymbolName{"externaldrive.badge.icloud", 11},
    SymbolName{"externaldrive.badge.xmark", 11},
    SymbolName{"externaldrive.fill", 11},
    SymbolName{"eye.fill", 11},
    SymbolName{"eye.slash.fill", 11},
    SymbolName{"flag.fill", 11},
    SymbolName{"flame.fill", 11},
    SymbolName{"folder.fill", 11},
    SymbolName{"folder.fill.badge.gearshape", 12},
    SymbolName{"folder.fill.badge.minus", 11},
    SymbolName{"gauge.medium.badge.plus", 13},
    SymbolName{"gearshape.2.fill", 11},
    SymbolName{"gearshape.circle.fill", 12},
    SymbolName{"gearshape.fill", 11},
    SymbolName{"guitars.fill", 11},
    SymbolName{"headphones", 11},
    SymbolName{"heart.fill", 11},
    SymbolName{"icloud.and.arrow.up.fill", 11},
    SymbolName{"icloud.fill", 11},
    SymbolName{"info.circle.fill", 11},
    SymbolName{"ipad", 11},
    SymbolName{"iphone", 11},
    SymbolName{"laptopcomputer", 11},
    SymbolName{"leaf.fill", 11},
    SymbolName{"lifepreserver.fill", 11},
    SymbolName{"lightbulb.fill", 11},
    SymbolName{"link.circle.fill", 11},
    SymbolName{"lock.fill", 11},
    SymbolName{"lock.icloud.fill", 11},
    SymbolName{"lock.shield.fill", 11},
    SymbolName{"m.circle.fill", 11},
    SymbolName{"magnifyingglass", 11},
    SymbolName{"memorychip.fill", 12},
    SymbolName{"mic.circle.fill", 11},
    SymbolName{"mic.slash.fill", 11},
    SymbolName{"minus.circle.fill", 11},
    SymbolName{"mountain.2.fill", 13},
    SymbolName{"music.note.fill", kInNoSystem, "music.note"},
    SymbolName{"music.note.house.fill", 11},
    SymbolName{"network", 11},
    SymbolName{"network.slash", 14},
    SymbolName{"opticid", 14},
    SymbolName{"p.circle.fill", 11},
    SymbolName{"pencil", 11},
    SymbolName{"person.2.fill", 11},
    SymbolName{"plus.circle", 11},
    SymbolName{"plus.circle.fill", 11},
    SymbolName{"power.circle.fill", 12},
    SymbolName{"printer.slash.fill", kInNoSystem, "printer.fill", SymbolName::Slash::Added},
    SymbolName{"questionmark.circle", 11},
    SymbolName{"questionmark.circle.fill", 11},
    SymbolName{"rectangle.inset.filled.and.person.filled", 12},
    SymbolName{"server.rack", 11},
    SymbolName{"shield.fill", 11},
    SymbolName{"shield.lefthalf.filled", 12},
    SymbolName{"shippingbox.fill", 11},
    SymbolName{"slider.horizontal.3", 11},
    SymbolName{"speaker.fill", 11},
    SymbolName{"speaker.slash.fill", 11},
    SymbolName{"square.and.arrow.down", 11},
    SymbolName{"square.and.arrow.up", 11},
    SymbolName{"star.fill", 11},
    SymbolName{"tag.fill", 11},
    SymbolName{"touchid", 11},
    SymbolName{"trash", 11},
    SymbolName{"trash.circle.fill", 11},
    SymbolName{"trash.fill", 11},
    SymbolName{"video.fill", 11},
    SymbolName{"wand.and.stars", 11},
    SymbolName{"water.waves", 13},
    SymbolName{"wifi.slash", 11},
    SymbolName{"wrench.and.screwdriver.fill", 11},
    SymbolName{"xmark.circle.fill", 11},
    SymbolName{"y.circle.fill", 11},
};

static_assert(std::ranges::is_sorted(kSymbolNames, {}, &SymbolName::name));

QString textOf(std::string_view text) {
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

std::span<const SymbolName> symbolNameTable() {
    return kSymbolNames;
}

SystemSymbol systemSymbol(const QString& name) {
    const auto found = std::find_if(kSymbolNames.begin(), kSymbolNames.end(),
                                    [&name](const SymbolName& each) { return textOf(each.name) == name; });
    if (found == kSymbolNames.end() || found->standIn.empty()) {
        return {name, false};
    }
    return {textOf(found->standIn), found->slash == SymbolName::Slash::Added};
}

} // namespace quorvane
