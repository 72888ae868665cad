#include "ui/Theme.h"

#include "ui/QuorvaneStyle.h"

#include <QFontDatabase>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

struct Type {
    double size; // device-independent pixels at the usual text size
    QFont::Weight weight;
};

Type typeOf(TextStyle style) {
    switch (style) {
    case TextStyle::PageTitle:
        return {22, QFont::Bold};
    case TextStyle::SectionTitle:
        return {15, QFont::DemiBold};
    case TextStyle::RowTitle:
        return {13, QFont::Medium};
    case TextStyle::Secondary:
        return {11, QFont::Normal};
    case TextStyle::Fixed:
        return {12, QFont::Normal};
    case TextStyle::Body:
        break;
    }
    return {13, QFont::Normal};
}

// In points, so that fonts grow with the size of text that the user has chosen. A point is a pixel on a Mac.
#ifdef Q_OS_MACOS
constexpr double kPointsPerPixel = 1;
#else
constexpr double kPointsPerPixel = 72.0 / 96.0;
#endif

/// A Mac has its own.
QFont systemFont() {
#ifdef Q_OS_MACOS
    return QFontDatabase::systemFont(QFontDatabase::GeneralFont);
#else
    return QFont(u"Inter"_s);
#endif
}

QColor translucent(const QColor& color, double alpha) {
    QColor result = color;
    result.setAlphaF(static_cast<float>(alpha));
    return result;
}

double linearPart(double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
    return 0.2126 * linearPart(color.redF()) + 0.7152 * linearPart(color.greenF()) + 0.0722 * linearPart(color.blueF());
}

} // namespace

Theme::Theme(const Look& look)
    : m_look(look) {
    if (look.scheme == ColorScheme::Dark) {
        setDarkColors();
    } else {
        setLightColors();
    }
    focusRing = accentText;
    onAccent = Qt::white;
    switchKnob = Qt::white;
    disabledText = translucent(text, 0.35);
    if (look.increasesContrast) {
        secondaryText = text;
        border = translucent(text, 0.5);
        fieldBorder = translucent(text, 0.8);
        switchOff = look.scheme == ColorScheme::Dark ? 0x8A8A8F : 0x5F5F64;
    }
}

void Theme::setLightColors() {
    window = 0xF5F5F7;
    sidebar = 0xE9E9EE;
    card = Qt::white;
    field = Qt::white;
    hover = translucent(Qt::black, 0.04);
    pressed = translucent(Qt::black, 0.07);
    selection = 0x0066D6;
    shade = translucent(Qt::black, 0.25);
    shadow = translucent(Qt::black, 0.05);
    switchOff = 0x8A8A8F;
    switchOn = selection;
    text = 0x1D1D1F;
    secondaryText = 0x5F5F64;
    accentText = 0x005FC8;
    success = 0x1B7230;
    warning = 0xB25000;
    danger = 0xD70015;
    matchTint = translucent(success, 0.10);
    border = translucent(Qt::black, 0.08);
    fieldBorder = translucent(Qt::black, 0.22);
}

void Theme::setDarkColors() {
    window = 0x1E1E1E;
    sidebar = 0x262628;
    card = 0x2C2C2E;
    field = 0x3A3A3D;
    hover = translucent(Qt::white, 0.05);
    pressed = translucent(Qt::black, 0.25); // lighter, the texts on it couldn't be read
    selection = 0x0A66CC;
    shade = translucent(Qt::black, 0.5);
    shadow = translucent(Qt::black, 0.12);
    switchOff = 0x7C7C80;
    switchOn = 0x0A84FF;
    text = 0xF5F5F7;
    secondaryText = 0xBEBEC3;
    accentText = 0x409CFF;
    success = 0x30DB5B;
    warning = 0xFFB340;
    danger = 0xFF8078;
    matchTint = translucent(success, 0.16);
    border = translucent(Qt::white, 0.09);
    fieldBorder = translucent(Qt::white, 0.22);
}

QColor Theme::badge(BadgeColor color) const {
    switch (color) {
    case BadgeColor::Blue:
        return 0x0A84FF;
    case BadgeColor::Green:
        return 0x34C759;
    case BadgeColor::Orange:
        return 0xFF9500;
    case BadgeColor::Red:
        return 0xFF3B30;
    case BadgeColor::Purple:
        return 0xAF52DE;
    case BadgeColor::Teal:
        return 0x30B0C7;
    case BadgeColor::Grey:
        break;
    }
    return 0x8E8E93;
}

/// Kept, because with a font Qt keeps the glyphs' source that it has found for it.
QFont Theme::font(TextStyle style) const {
    const auto known = m_fonts.constFind(style);
    if (known != m_fonts.cend()) {
        return *known;
    }
    const Type type = typeOf(style);
    QFont font = style == TextStyle::Fixed ? QFontDatabase::systemFont(QFontDatabase::FixedFont) : systemFont();
    font.setPointSizeF(type.size * kPointsPerPixel);
    font.setWeight(type.weight);
    return *m_fonts.insert(style, font);
}

QPalette Theme::palette() const {
    QPalette palette(window);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, field);
    palette.setColor(QPalette::AlternateBase, card);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::PlaceholderText, secondaryText);
    palette.setColor(QPalette::Button, field);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::ToolTipBase, card);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::Highlight, selection);
    palette.setColor(QPalette::HighlightedText, onAccent);
    palette.setColor(QPalette::Link, accentText);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, disabledText);
    }
    return palette;
}

std::chrono::milliseconds Theme::moving(std::chrono::milliseconds duration) const {
    return m_look.reducesMotion ? std::chrono::milliseconds(0) : duration;
}

const Theme& themeOf(const QWidget* widget) {
    const auto* const style = qobject_cast<const QuorvaneStyle*>(widget->style());
    static const Theme plain(Look{}); // of a widget that a test shows by itself
    return style != nullptr ? style->theme() : plain;
}

QList<TextOnGround> textsOnGrounds(const Theme& theme) {
    const QColor match = laidOver(theme.matchTint, theme.card);
    const QColor hoveredCard = laidOver(theme.hover, theme.card);
    const QColor pressedCard = laidOver(theme.pressed, theme.card);
    const QColor hoveredMatch = laidOver(theme.hover, match);
    QList<TextOnGround> pairs;
    for (const auto& [groundName, ground] :
         {std::pair(u"window"_s, theme.window), std::pair(u"card"_s, theme.card),
          std::pair(u"hovered card"_s, hoveredCard), std::pair(u"pressed card"_s, pressedCard),
          std::pair(u"match"_s, match), std::pair(u"hovered match"_s, hoveredMatch), std::pair(u"field"_s, theme.field),
          std::pair(u"sidebar"_s, theme.sidebar)}) {
        pairs.append({u"text on "_s + groundName, theme.text, ground});
        pairs.append({u"secondary text on "_s + groundName, theme.secondaryText, ground});
    }
    for (const auto& [groundName, ground] : {std::pair(u"window"_s, theme.window), std::pair(u"card"_s, theme.card)}) {
        pairs.append({u"accent on "_s + groundName, theme.accentText, ground});
        pairs.append({u"success on "_s + groundName, theme.success, ground});
        pairs.append({u"warning on "_s + groundName, theme.warning, ground});
        pairs.append({u"danger on "_s + groundName, theme.danger, ground});
    }
    const QColor pressedField = laidOver(theme.pressed, theme.field);
    pairs.append({u"text on a pressed button"_s, theme.text, pressedField});
    pairs.append({u"danger on field"_s, theme.danger, theme.field});
    pairs.append({u"danger on a pressed button"_s, theme.danger, pressedField});
    pairs.append({u"selected text"_s, theme.onAccent, theme.selection});
    pairs.append({u"text of the pressed default button"_s, theme.onAccent, laidOver(theme.pressed, theme.selection)});
    pairs.append({u"link under the pointer"_s, theme.accentText, laidOver(theme.hover, theme.window)});
    pairs.append({u"pressed link"_s, theme.accentText, laidOver(theme.pressed, theme.window)});
    return pairs;
}

QList<TextOnGround> shapesOnGrounds(const Theme& theme) {
    const QColor match = laidOver(theme.matchTint, theme.card);
    const QColor hoveredMatch = laidOver(theme.hover, match);
    QList<TextOnGround> pairs;
    for (const auto& [groundName, ground] : {std::pair(u"window"_s, theme.window), std::pair(u"card"_s, theme.card),
                                             std::pair(u"match"_s, match), std::pair(u"sidebar"_s, theme.sidebar)}) {
        pairs.append({u"ring on "_s + groundName, theme.focusRing, ground});
    }
    pairs.append({u"switch that is off"_s, theme.switchOff, theme.card});
    pairs.append({u"switch that is on"_s, theme.switchOn, theme.card});
    pairs.append({u"knob of a switch that is off"_s, theme.switchKnob, theme.switchOff});
    pairs.append({u"knob of a switch that is on"_s, theme.switchKnob, theme.switchOn});
    pairs.append({u"tab's symbol"_s, theme.accentText, theme.sidebar});
    pairs.append({u"selected tab's symbol"_s, theme.onAccent, theme.selection});
    pairs.append({u"check mark of a match"_s, theme.success, match});
    pairs.append({u"check mark of a match under the pointer"_s, theme.success, hoveredMatch});
    pairs.append({u"trash"_s, theme.secondaryText, hoveredMatch});
    pairs.append({u"trash under the pointer"_s, theme.danger, hoveredMatch});
    pairs.append({u"current icon's mark"_s, theme.accentText, theme.card});
    pairs.append({u"icon under the pointer"_s, theme.text, laidOver(theme.hover, theme.card)});
    pairs.append({u"progress"_s, theme.accentText, theme.card});
    if (theme.look().increasesContrast) {
        pairs.append({u"field's frame"_s, laidOver(theme.fieldBorder, theme.window), theme.window});
        pairs.append({u"card's frame"_s, laidOver(theme.border, theme.window), theme.window});
    }
    return pairs;
}

double contrastRatio(const QColor& one, const QColor& other) {
    const double lighter = std::max(luminance(one), luminance(other));
    const double darker = std::min(luminance(one), luminance(other));
    return (lighter + 0.05) / (darker + 0.05);
}

QColor laidOver(const QColor& color, const QColor& ground) {
    const auto part = [&](float above, float below) { return above * color.alphaF() + below * (1 - color.alphaF()); };
    return QColor::fromRgbF(part(color.redF(), ground.redF()), part(color.greenF(), ground.greenF()),
                            part(color.blueF(), ground.blueF()));
}

} // namespace quorvane
