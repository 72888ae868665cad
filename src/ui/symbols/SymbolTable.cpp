#include "ui/symbols/SymbolTable.h"

#include <QLatin1StringView>

#include <algorithm>

namespace quorvane {

namespace {

// CMakeLists.txt reads from here which drawings to embed: what svg is called with.

constexpr SymbolLayer svg(std::string_view drawing) {
    return {SymbolLayer::Kind::Drawing, drawing};
}

constexpr SymbolLayer letter(std::string_view letter) {
    return {SymbolLayer::Kind::Letter, letter};
}

constexpr SymbolLayer slash() {
    return {SymbolLayer::Kind::Slash};
}

constexpr SymbolLayer at(SymbolPlace place, SymbolLayer layer) {
    layer.place = place;
    return layer;
}

constexpr SymbolLayer turned(int degrees, SymbolLayer layer) {
    layer.turn = degrees;
    return layer;
}

constexpr SymbolLayer cutOut(SymbolLayer layer) {
    layer.joining = LayerJoining::CutOut;
    return layer;
}

constexpr SymbolLayers alone(SymbolLayer layer) {
    return {layer};
}

constexpr SymbolLayers slashed(SymbolLayer layer) {
    return {layer, slash()};
}

/// Cut out of a disc, as large as a letter.
constexpr SymbolLayers circled(SymbolLayer layer) {
    return {svg("circle-fill"), cutOut(at({3.75, 3.75, 8.5}, layer))};
}

/// The same larger: fine lines would be lost.
constexpr SymbolLayers largeInCircle(SymbolLayer layer) {
    return {svg("circle-fill"), cutOut(at({2.5, 2.5, 11}, layer))};
}

/// With a small one in the corner below at the right.
constexpr SymbolLayers badged(SymbolLayer layer, SymbolLayer badge) {
    return {layer, at({8, 8, 8}, badge)};
}

constexpr std::array kSymbols{
    Symbol{"antenna.radiowaves.left.and.right.slash", slashed(svg("broadcast"))},
    Symbol{"app.fill", alone(at({1, 1, 14}, svg("square-fill")))},
    Symbol{"archivebox.fill", alone(svg("archive-fill"))},
    Symbol{"arrow.counterclockwise.circle.fill", largeInCircle(svg("arrow-counterclockwise"))},
    Symbol{"arrow.counterclockwise.icloud", {svg("cloud"), at({4, 4.25, 8}, svg("arrow-counterclockwise"))}},
    Symbol{"arrow.down.app.fill", alone(at({1, 1, 14}, svg("arrow-down-square-fill")))},
    Symbol{"arrow.triangle.2.circlepath", alone(svg("arrow-repeat"))},
    Symbol{"arrow.trianglehead.2.clockwise.rotate.90", alone(turned(90, svg("arrow-repeat")))},
    Symbol{"arrow.up.doc.fill", alone(svg("file-earmark-arrow-up-fill"))},
    Symbol{"battery.100.bolt", alone(svg("battery-charging"))},
    Symbol{"bell.slash.fill", slashed(svg("bell-fill"))},
    Symbol{"bolt.shield.fill", {svg("shield-fill"), cutOut(at({3.75, 3.25, 8.5}, svg("lightning-fill")))}},
    Symbol{"book.fill", alone(svg("book-fill"))},
    Symbol{"brain.fill", alone(svg("puzzle-fill"))},
    Symbol{"building.2.fill", alone(svg("buildings-fill"))},
    Symbol{"camera.fill", alone(svg("camera-fill"))},
    Symbol{"checkmark.circle.fill", alone(svg("check-circle-fill"))},
    Symbol{"checkmark.seal.fill", alone(svg("patch-check-fill"))},
    Symbol{"checkmark.shield", alone(svg("shield-check"))},
    Symbol{"checkmark.shield.fill", alone(svg("shield-fill-check"))},
    Symbol{"chevron.left", alone(svg("chevron-left"))},
    Symbol{"chevron.right", alone(svg("chevron-right"))},
    Symbol{"clock.arrow.circlepath", alone(svg("clock-history"))},
    Symbol{"cloud.circle.fill", circled(svg("cloud-fill"))},
    Symbol{"cloud.fill", alone(svg("cloud-fill"))},
    Symbol{"cloud.sun.fill", alone(svg("cloud-sun-fill"))},
    Symbol{"cloud.sun.rain.fill", {at({5.5, 0, 10.5}, svg("sun-fill")), at({0, 3, 13}, svg("cloud-rain-fill"))}},
    Symbol{"cpu.fill", alone(svg("cpu-fill"))},
    Symbol{"cube.fill", alone(svg("box-fill"))},
    Symbol{"cube.transparent.fill", alone(svg("box"))},
    Symbol{"display", alone(svg("display"))},
    Symbol{"display.and.arrow.down", {svg("display"), at({1.5, 0.5, 13}, svg("arrow-down-short"))}},
    Symbol{"doc.fill", alone(svg("file-earmark-fill"))},
    Symbol{"doc.text.fill", alone(svg("file-earmark-text-fill"))},
    Symbol{"doc.text.magnifyingglass",
           {svg("file-earmark-text"), cutOut(at({8, 8, 6.5}, svg("circle-fill"))), at({8, 8, 8}, svg("search"))}},
    Symbol{"exclamationmark.circle.fill", alone(svg("exclamation-circle-fill"))},
    Symbol{"exclamationmark.triangle.fill", alone(svg("exclamation-triangle-fill"))},
    Symbol{"externaldrive.badge.icloud", badged(svg("hdd"), svg("cloud-fill"))},
    Symbol{"externaldrive.badge.xmark", badged(svg("hdd"), svg("x-circle-fill"))},
    Symbol{"externaldrive.fill", alone(svg("hdd-fill"))},
    Symbol{"eye.fill", alone(svg("eye-fill"))},
    Symbol{"eye.slash.fill", slashed(svg("eye-fill"))},
    Symbol{"flag.fill", alone(svg("flag-fill"))},
    Symbol{"flame.fill", alone(svg("fire"))},
    Symbol{"folder.fill", alone(svg("folder-fill"))},
    Symbol{"folder.fill.badge.gearshape", badged(svg("folder-fill"), svg("gear-fill"))},
    Symbol{"folder.fill.badge.minus", badged(svg("folder-fill"), svg("dash-circle-fill"))},
    Symbol{"gauge.medium.badge.plus", badged(svg("speedometer2"), svg("plus-circle-fill"))},
    Symbol{"gearshape.2.fill", {at({6.5, 0, 9.5}, svg("gear-fill")), at({0, 5, 11}, svg("gear-fill"))}},
    Symbol{"gearshape.circle.fill", circled(svg("gear-fill"))},
    Symbol{"gearshape.fill", alone(svg("gear-fill"))},
    Symbol{"guitars.fill", alone(svg("music-note-beamed"))},
    Symbol{"headphones", alone(svg("headphones"))},
    Symbol{"heart.fill", alone(svg("heart-fill"))},
    Symbol{"icloud.and.arrow.up.fill", alone(svg("cloud-arrow-up-fill"))},
    Symbol{"icloud.fill", alone(svg("cloud-fill"))},
    Symbol{"info.circle.fill", alone(svg("info-circle-fill"))},
    Symbol{"ipad", alone(svg("tablet-landscape"))},
    Symbol{"iphone", alone(svg("phone"))},
    Symbol{"laptopcomputer", alone(svg("laptop"))},
    Symbol{"leaf.fill", alone(svg("tree-fill"))},
    Symbol{"lifepreserver.fill", alone(svg("life-preserver"))},
    Symbol{"lightbulb.fill", alone(svg("lightbulb-fill"))},
    Symbol{"link.circle.fill", largeInCircle(svg("link-45deg"))},
    Symbol{"lock.fill", alone(svg("lock-fill"))},
    Symbol{"lock.icloud.fill", {svg("cloud-fill"), cutOut(at({4.75, 4.75, 6.5}, svg("lock-fill")))}},
    Symbol{"lock.shield.fill", alone(svg("shield-lock-fill"))},
    Symbol{"m.circle.fill", circled(letter("M"))},
    Symbol{"magnifyingglass", alone(svg("search"))},
    Symbol{"memorychip.fill", alone(svg("memory"))},
    Symbol{"mic.circle.fill", circled(svg("mic-fill"))},
    Symbol{"mic.slash.fill", slashed(svg("mic-fill"))},
    Symbol{"minus.circle.fill", alone(svg("dash-circle-fill"))},
    Symbol{"mountain.2.fill", alone(svg("image-alt"))},
    Symbol{"music.note.fill", alone(svg("music-note"))},
    Symbol{"music.note.house.fill", {svg("house-fill"), cutOut(at({4.25, 6, 7.5}, svg("music-note")))}},
    Symbol{"network", alone(svg("globe"))},
    Symbol{"network.slash", slashed(svg("globe"))},
    Symbol{"opticid", alone(svg("eye"))},
    Symbol{"p.circle.fill", alone(svg("p-circle-fill"))},
    Symbol{"pencil", alone(svg("pencil"))},
    Symbol{"person.2.fill", alone(svg("people-fill"))},
    Symbol{"plus.circle", alone(svg("plus-circle"))},
    Symbol{"plus.circle.fill", alone(svg("plus-circle-fill"))},
    Symbol{"power.circle.fill", largeInCircle(svg("power"))},
    Symbol{"printer.slash.fill", slashed(svg("printer-fill"))},
    Symbol{"questionmark.circle", alone(svg("question-circle"))},
    Symbol{"questionmark.circle.fill", alone(svg("question-circle-fill"))},
    Symbol{"rectangle.inset.filled.and.person.filled", alone(svg("person-workspace"))},
    Symbol{"server.rack", alone(svg("hdd-rack"))},
    Symbol{"shield.fill", alone(svg("shield-fill"))},
    Symbol{"shield.lefthalf.filled", alone(svg("shield-shaded"))},
    Symbol{"shippingbox.fill", alone(svg("box-seam-fill"))},
    Symbol{"slider.horizontal.3", alone(svg("sliders"))},
    Symbol{"speaker.fill", alone(at({-3, -3, 22}, svg("volume-off-fill")))},
    Symbol{"speaker.slash.fill", slashed(at({-3, -3, 22}, svg("volume-off-fill")))},
    Symbol{"square.and.arrow.down", alone(svg("box-arrow-in-down"))},
    Symbol{"square.and.arrow.up", alone(svg("box-arrow-up"))},
    Symbol{"star.fill", alone(svg("star-fill"))},
    Symbol{"tag.fill", alone(svg("tag-fill"))},
    Symbol{"touchid", alone(svg("fingerprint"))},
    Symbol{"trash", alone(svg("trash"))},
    Symbol{"trash.circle.fill", circled(svg("trash-fill"))},
    Symbol{"trash.fill", alone(svg("trash-fill"))},
    Symbol{"video.fill", alone(svg("camera-video-fill"))},
    Symbol{"wand.and.stars", alone(svg("magic"))},
    Symbol{"water.waves", alone(svg("water"))},
    Symbol{"wifi.slash", slashed(svg("wifi"))},
    Symbol{"wrench.and.screwdriver.fill", alone(svg("tools"))},
    Symbol{"xmark.circle.fill", alone(svg("x-circle-fill"))},
    Symbol{"y.circle.fill", circled(letter("Y"))},
};

QLatin1StringView nameOf(const Symbol& symbol) {
    return {symbol.name.data(), static_cast<qsizetype>(symbol.name.size())};
}

static_assert(std::ranges::is_sorted(kSymbols, {}, &Symbol::name));

} // namespace

std::span<const Symbol> symbolTable() {
    return kSymbols;
}

const Symbol* findSymbol(QStringView name) {
    const auto isBefore = [](const Symbol& symbol, QStringView other) { return nameOf(symbol) < other; };
    const auto found = std::lower_bound(kSymbols.begin(), kSymbols.end(), name, isBefore);
    return found != kSymbols.end() && nameOf(*found) == name ? &*found : nullptr;
}

} // namespace quorvane
