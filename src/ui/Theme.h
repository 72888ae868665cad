#pragma once

#include "platform/Appearance.h"

#include <QColor>
#include <QFont>
#include <QHash>
#include <QList>
#include <QMargins>
#include <QPalette>

#include <chrono>

class QWidget;

namespace quorvane {

/// What a text is for; each has one size and weight.
enum class TextStyle {
    PageTitle,
    SectionTitle,
    RowTitle,
    Body,
    Secondary,
    Fixed, ///< of log lines: every character as wide as the next
};

/// The tints of symbol badges.
enum class BadgeColor { Blue, Green, Orange, Red, Purple, Teal, Grey };

/// How the system wants things to look.
struct Look {
    ColorScheme scheme = ColorScheme::Light;
    bool reducesMotion = false;
    bool increasesContrast = false;

    bool operator==(const Look&) const = default;
};

/// Every colour, font, length and duration of the window. Lengths are in device-independent pixels.
class Theme {
public:
    explicit Theme(const Look& look);

    const Look& look() const { return m_look; }

    // ---- Grounds
    QColor window;
    QColor sidebar;
    QColor card;
    QColor field;      ///< of text fields and plain buttons
    QColor hover;      ///< over a row, on top of its ground
    QColor pressed;    ///< likewise
    QColor selection;  ///< of the sidebar and of filled buttons, under `onAccent`
    QColor matchTint;  ///< behind the row that matches this Mac, on top of the card
    QColor shade;      ///< dims what lies under a sheet
    QColor shadow;     ///< around what floats over a page
    QColor switchOff;  ///< the track of a switch that is off
    QColor switchOn;   ///< and of one that is on
    QColor switchKnob; ///< of every switch

    // ---- Texts and symbols
    QColor text;
    QColor secondaryText;
    QColor disabledText;
    QColor accentText;
    QColor onAccent; ///< on `selection` and on badges
    QColor success;
    QColor warning;
    QColor danger;

    // ---- Lines
    QColor border;      ///< of cards, and between rows
    QColor fieldBorder; ///< of text fields and plain buttons
    QColor focusRing;

    QColor badge(BadgeColor color) const;

    QFont font(TextStyle style) const;
    QPalette palette() const;

    /// How long something moves; nothing moves where motion is reduced.
    std::chrono::milliseconds moving(std::chrono::milliseconds duration) const;

    static constexpr int kGap4 = 4;
    static constexpr int kGap8 = 8;
    static constexpr int kGap12 = 12;
    static constexpr int kGap16 = 16;
    static constexpr int kGap24 = 24;
    static constexpr int kGap32 = 32;
    static constexpr int kCardRadius = 10;
    static constexpr int kFieldRadius = 6;
    static constexpr int kBadge = 28;
    static constexpr int kBadgeSymbol = 16;
    static constexpr int kRow = 52;       ///< the least height of a row with a description
    static constexpr int kSingleRow = 44; ///< of a row with one line
    static constexpr int kButtonHeight = 28;
    static constexpr int kButtonWidth = 80;
    static constexpr int kColumn = 720; ///< the greatest width of a page's content
    static constexpr int kSheet = 560;  ///< of a sheet
    static constexpr int kFocusRing = 2;
    static constexpr int kRingRoom = 3; ///< what a control keeps free for the ring on each side

    static constexpr std::chrono::milliseconds kSwitchMove{120};
    static constexpr std::chrono::milliseconds kFade{150};

private:
    void setLightColors();
    void setDarkColors();

    Look m_look;
    mutable QHash<TextStyle, QFont> m_fonts;
};

/// The theme that a widget is drawn in; see QuorvaneStyle. It changes while the program runs: a widget is told by a change of
/// its style.
const Theme& themeOf(const QWidget* widget);

/// A text and a ground on which it stands somewhere.
struct TextOnGround {
    QString name;
    QColor text;
    QColor ground;
};
/// Each text on each ground on which it stands; disabled ones aside.
QList<TextOnGround> textsOnGrounds(const Theme& theme);
/// Likewise what is no text and has to be told from its ground: rings, switches, and symbols that say something by themselves.
QList<TextOnGround> shapesOnGrounds(const Theme& theme);

/// The contrast of two opaque colours, 1 to 21. Source: WCAG 2.1, "contrast ratio".
double contrastRatio(const QColor& one, const QColor& other);
/// What is seen of a colour that is laid over an opaque one.
QColor laidOver(const QColor& color, const QColor& ground);

} // namespace quorvane
