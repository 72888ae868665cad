// The pieces that views are made of, as pictures at scale 1 and 2: where which of the theme's colours is.

#include "fakes/EventLoop.h"
#include "ui/QuorvaneStyle.h"
#include "ui/alerts/AlertDialog.h"
#include "ui/pieces/AppButtons.h"
#include "ui/pieces/AppCard.h"
#include "ui/pieces/AppSwitch.h"
#include "ui/pieces/IconButton.h"
#include "ui/pieces/ProgressRing.h"
#include "ui/pieces/RowButton.h"
#include "ui/pieces/Sheet.h"
#include "ui/pieces/SheetLayer.h"
#include "ui/pieces/SymbolView.h"
#include "ui/pieces/TextLabel.h"

#include <QApplication>
#include <QImage>
#include <QLineEdit>
#include <QMenuBar>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// A widget as it is painted, with places in device-independent pixels.
class PieceShot {
public:
    PieceShot(QWidget& widget, int scale)
        : m_image(widget.size() * scale, QImage::Format_RGB32)
        , m_scale(scale) {
        m_image.setDevicePixelRatio(scale);
        m_image.fill(themeOf(&widget).window);
        widget.render(&m_image, QPoint(), QRegion(), QWidget::DrawWindowBackground | QWidget::DrawChildren);
    }

    QRgb at(double x, double y) const {
        return m_image.pixel(static_cast<int>(std::floor(x * m_scale)), static_cast<int>(std::floor(y * m_scale)));
    }
    /// How many device-independent pixels of that colour there are.
    double count(const QColor& color, const QRect& part = {}) const {
        int found = 0;
        const QRect within =
            part.isNull() ? m_image.rect() : QRect(part.topLeft() * m_scale, part.size() * m_scale) & m_image.rect();
        for (int y = within.top(); y <= within.bottom(); ++y) {
            for (int x = within.left(); x <= within.right(); ++x) {
                found += m_image.pixel(x, y) == color.rgb() ? 1 : 0;
            }
        }
        return static_cast<double>(found) / (m_scale * m_scale);
    }

private:
    QImage m_image;
    int m_scale;
};

/// A window on which a piece stands, with the keys' rings shown. It looks as the theme says, and nothing moves.
class PiecesTest : public ::testing::TestWithParam<int> {
public:
    ~PiecesTest() override { style().setLook({}); }

protected:
    PiecesTest() {
        style().setLook({ColorScheme::Light, true, false});
        stage.resize(400, 300);
    }

    static QuorvaneStyle& style() { return *qobject_cast<QuorvaneStyle*>(QApplication::style()); }
    static const Theme& theme() { return style().theme(); }

    template <typename Widget>
    Widget& placed(Widget* widget, const QSize& size = {}) {
        widget->setParent(&stage);
        widget->resize(size.isValid() ? size : widget->sizeHint());
        widget->move(20, 20);
        stage.show();
        widget->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&stage));
        stage.setFocus();
        return *widget;
    }
    static void focusByKeys(QWidget& widget) {
        widget.window()->setAttribute(Qt::WA_KeyboardFocusChange);
        widget.setFocus(Qt::TabFocusReason);
    }
    PieceShot shot(QWidget& widget) const { return {widget, GetParam()}; }
    double ringIn(QWidget& widget) const { return shot(widget).count(theme().focusRing); }
    /// A pixel of a translucent colour, which is computed in whole numbers.
    static void expectOver(QRgb pixel, const QColor& color, const QColor& ground) {
        const QColor wanted = laidOver(color, ground);
        const QColor seen(pixel);
        const int farthest = std::max({std::abs(seen.red() - wanted.red()), std::abs(seen.green() - wanted.green()),
                                       std::abs(seen.blue() - wanted.blue())});
        EXPECT_LE(farthest, 2) << seen.name().toStdString() << " instead of " << wanted.name().toStdString();
        EXPECT_NE(seen.rgb(), ground.rgb());
    }

    QWidget stage;
};

const RowContent kRowContent{.symbol = u"moon.fill"_s,
                             .tint = BadgeColor::Purple,
                             .title = u"Live"_s,
                             .description = u"Eleven tweaks"_s,
                             .end = RowEnd::Chevron};

} // namespace

TEST_P(PiecesTest, aRowsTextFromRightToLeftStandsUnderTheOthers) {
    RowContent hebrew = kRowContent;
    hebrew.title = u"שלום"_s;
    hebrew.description = u"שלום"_s;
    hebrew.end = RowEnd::Nothing;
    RowButton& row = placed(new RowButton(hebrew));
    row.resize(360, row.heightForWidth(360));
    const QImage picture = row.grab().toImage();
    const qreal scale = picture.devicePixelRatio();
    const QRgb ground = picture.pixel(picture.width() - 2, picture.height() / 2);
    for (int x = static_cast<int>(180 * scale); x < picture.width(); ++x) {
        for (int y = 0; y < picture.height(); ++y) {
            ASSERT_EQ(picture.pixel(x, y), ground) << x << ", " << y;
        }
    }
}

TEST_P(PiecesTest, whatAMenuBarShowsAtItsEndFollowsTheLook) {
    auto& bar = placed(new QMenuBar);
    const auto* const end = bar.findChild<QToolButton*>(u"qt_menubar_ext_button"_s);
    ASSERT_NE(end, nullptr);
    const QImage light = end->icon().pixmap(16, 16).toImage();
    style().setLook({ColorScheme::Dark, true, false});
    EXPECT_NE(end->icon().pixmap(16, 16).toImage(), light);
}

TEST_P(PiecesTest, aSwitchHasItsKnobAtTheSideOfItsState) {
    auto& piece = placed(new AppSwitch);
    const double middle = piece.height() / 2.0;
    const double left = Theme::kRingRoom + 11;
    const double right = piece.width() - Theme::kRingRoom - 11;
    EXPECT_EQ(shot(piece).at(left, middle), theme().switchKnob.rgb());
    EXPECT_EQ(shot(piece).at(right, middle), theme().switchOff.rgb());
    piece.click();
    EXPECT_EQ(shot(piece).at(left, middle), theme().switchOn.rgb());
    EXPECT_EQ(shot(piece).at(right, middle), theme().switchKnob.rgb());
}

TEST_P(PiecesTest, aSwitchThatCannotBeUsedIsPale) {
    auto& piece = placed(new AppSwitch);
    const double usual = shot(piece).count(theme().switchOff);
    piece.setEnabled(false);
    EXPECT_GT(usual, 100);
    EXPECT_EQ(shot(piece).count(theme().switchOff), 0);
}

TEST_P(PiecesTest, aSwitchMovesWhenItsStateChangesAndStops) {
    style().setLook({});
    auto& piece = placed(new AppSwitch);
    const double middle = piece.height() / 2.0;
    const double right = piece.width() - Theme::kRingRoom - 11;
    piece.setChecked(true);
    EXPECT_NE(shot(piece).at(right, middle), theme().switchKnob.rgb()) << "at once";
    processEventsUntil([&] { return shot(piece).at(right, middle) == theme().switchKnob.rgb(); });
}

TEST_P(PiecesTest, whatHasTheFocusHasARing) {
    RowButton row(kRowContent);
    const QList<QWidget*> pieces{new AppSwitch, new IconButton, new AppPrimaryButton(u"Apply"_s),
                                 new AppSecondaryButton(u"Close"_s), new QLineEdit};
    for (QWidget* const made : pieces) {
        QWidget& piece = placed(made);
        EXPECT_EQ(ringIn(piece), 0) << made->metaObject()->className();
        focusByKeys(piece);
        EXPECT_GT(ringIn(piece), 20) << made->metaObject()->className();
    }
    placed(&row, {300, row.heightForWidth(300)});
    EXPECT_EQ(ringIn(row), 0);
    focusByKeys(row);
    EXPECT_GT(ringIn(row), 300);
}

TEST_P(PiecesTest, aRingIsApartFromWhatItGoesRound) {
    auto& button = placed(new AppPrimaryButton(u"Apply"_s));
    focusByKeys(button);
    const PieceShot picture = shot(button);
    const double middle = button.height() / 2.0;
    EXPECT_EQ(picture.at(Theme::kRingRoom + 4, middle), theme().selection.rgb());
    EXPECT_NE(picture.at(Theme::kRingRoom - 0.5, middle), theme().selection.rgb());
    EXPECT_NE(picture.at(Theme::kRingRoom - 0.5, middle), theme().focusRing.rgb());
}

TEST_P(PiecesTest, aRowShowsItsStateOnItsGround) {
    RowButton row(kRowContent);
    placed(&row, {300, row.heightForWidth(300)});
    const double middle = row.height() / 2.0;
    EXPECT_EQ(shot(row).at(200, 4), theme().window.rgb());
    EXPECT_GT(shot(row).count(theme().badge(BadgeColor::Purple)), 300);
    EXPECT_EQ(shot(row).at(Theme::kGap12 + 2, middle), theme().badge(BadgeColor::Purple).rgb());
    EXPECT_GT(shot(row).count(theme().text), 3);
    row.setDown(true);
    expectOver(shot(row).at(200, 4), theme().pressed, theme().window);
    row.setDown(false);
    QTest::mouseMove(&row, QPoint(200, 10));
    expectOver(shot(row).at(200, 4), theme().hover, theme().window);
    QTest::mouseMove(&stage, QPoint(390, 290));
    row.setEnabled(false);
    EXPECT_EQ(shot(row).count(theme().badge(BadgeColor::Purple)), 0) << "pale";
    row.setEnabled(true);
    RowContent match = kRowContent;
    match.isMatch = true;
    match.end = RowEnd::CheckMark;
    row.setContent(match);
    expectOver(shot(row).at(200, 4), theme().matchTint, theme().window);
    EXPECT_GT(shot(row).count(theme().success, QRect(row.width() - 30, 0, 30, row.height())), 20);
}

TEST_P(PiecesTest, aPageThatWaitsKeepsItsLooks) {
    RowButton row(kRowContent);
    placed(&row, {300, row.heightForWidth(300)});
    stage.setEnabled(false);
    EXPECT_GT(shot(row).count(theme().badge(BadgeColor::Purple)), 300);
    stage.setEnabled(true);
}

TEST_P(PiecesTest, aBadgeIsAWhiteSymbolOnItsColor) {
    auto& badge = placed(new PerformanceSymbolBadge(u"star.fill"_s, BadgeColor::Teal), {Theme::kBadge, Theme::kBadge});
    const PieceShot picture = shot(badge);
    EXPECT_EQ(picture.at(14, 2), theme().badge(BadgeColor::Teal).rgb());
    EXPECT_EQ(picture.at(0, 0), theme().window.rgb()) << "round";
    EXPECT_GT(picture.count(theme().onAccent), 20);
}

TEST_P(PiecesTest, theDefaultButtonIsFilledAndTheDestructiveOneRed) {
    auto& primary = placed(new AppPrimaryButton(u"Apply"_s));
    EXPECT_EQ(shot(primary).at(Theme::kRingRoom + 6, primary.height() / 2.0), theme().selection.rgb());
    EXPECT_GT(shot(primary).count(theme().onAccent), 3);
    auto& secondary = placed(new AppSecondaryButton(u"Close"_s));
    EXPECT_EQ(shot(secondary).at(Theme::kRingRoom + 6, secondary.height() / 2.0), theme().field.rgb());
    EXPECT_EQ(shot(secondary).count(theme().danger), 0);
    setDestructive(&secondary, true);
    EXPECT_GT(shot(secondary).count(theme().danger), 3);
    primary.setEnabled(false);
    EXPECT_EQ(shot(primary).count(theme().selection), 0);
}

TEST_P(PiecesTest, aButtonsSymbolStandsBeforeItsTextInTheSameInk) {
    auto& plain = placed(new AppSecondaryButton(u"Use Touch ID"_s));
    const double ofText = shot(plain).count(theme().text);
    auto& button = placed(new AppSecondaryButton(u"Use Touch ID"_s));
    button.setIcon(symbolOn(&button, u"lock.fill"_s)); // mostly whole pixels of ink
    button.resize(button.sizeHint());
    EXPECT_EQ(button.width(), plain.width() + button.iconSize().width() + Theme::kGap4);
    const QRect symbol(Theme::kRingRoom + Theme::kGap16, 0, button.iconSize().width(), button.height());
    for (const ColorScheme scheme : {ColorScheme::Light, ColorScheme::Dark}) {
        style().setLook({scheme, true, false});
        EXPECT_GT(shot(button).count(theme().text, symbol), 40);
    }
    style().setLook({ColorScheme::Light, true, false});
    EXPECT_NEAR(shot(button).count(theme().text) - shot(button).count(theme().text, symbol), ofText, 3)
        << "the text is whole";
    button.setEnabled(false);
    EXPECT_EQ(shot(button).count(theme().text), 0);
}

TEST_P(PiecesTest, aCardHasALineBetweenTwoRowsThatAreSeen) {
    auto* const card = new AppCard;
    for (int row = 0; row < 3; ++row) {
        auto* const space = new QWidget;
        space->setFixedHeight(40);
        card->addRow(space);
    }
    placed(card, {300, 124});
    expectOver(shot(*card).at(150, 41.5), theme().border, theme().card);
    EXPECT_EQ(shot(*card).at(20, 41.5), theme().card.rgb()) << "not under the badges";
    EXPECT_EQ(shot(*card).at(150, 20), theme().card.rgb());
    EXPECT_EQ(shot(*card).at(0, 0), theme().window.rgb()) << "round";
    EXPECT_EQ(shot(*card).at(150, 122), theme().card.rgb()) << "none after the last";
}

TEST_P(PiecesTest, aRingThatTurnsStandsStillWhereMotionIsReduced) {
    auto& ring = placed(new ProgressRing(36), {36, 36});
    EXPECT_GT(shot(ring).count(theme().accentText), 20);
    const double right = shot(ring).count(theme().accentText, QRect(18, 0, 18, 18));
    EXPECT_GT(right, 10) << "a quarter, from the top to the right";
    style().setLook({});
    processEventsUntil([&] { return shot(ring).count(theme().accentText, QRect(0, 18, 18, 18)) > 10; });
    style().setLook({ColorScheme::Light, true, false});
    EXPECT_EQ(shot(ring).count(theme().accentText, QRect(18, 0, 18, 18)), right);
}

TEST_P(PiecesTest, aSheetDimsWhatLiesBeneath) {
    auto* const page = new QWidget(&stage);
    page->resize(stage.size());
    auto* const layer = new SheetLayer(page, &stage);
    layer->resize(stage.size());
    stage.show();
    auto* const sheet = new Sheet;
    layer->show(sheet);
    const PieceShot picture = shot(stage);
    expectOver(picture.at(3, 290), theme().shade, theme().window);
    EXPECT_EQ(picture.at(sheet->x() + sheet->width() / 2.0, sheet->y() + 6), theme().window.rgb());
    layer->clear();
    EXPECT_EQ(shot(stage).at(3, 290), theme().window.rgb());
    delete layer;
}

TEST_P(PiecesTest, aSheetGrowsWithWhatComesLater) {
    stage.resize(stage.width(), 600);
    auto* const layer = new SheetLayer(new QWidget(&stage), &stage);
    layer->resize(stage.size());
    stage.show();
    auto* const contents = new QWidget;
    auto* const rows = new QVBoxLayout(contents);
    struct SheetOfRows : Sheet {
        using Sheet::addButton;
        using Sheet::setContents;
        using Sheet::setTitle;
    };
    auto* const sheet = new SheetOfRows;
    sheet->setTitle(u"Restore baselines"_s, {});
    sheet->setContents(contents);
    sheet->addButton(new AppSecondaryButton(u"Close"_s));
    style().setLook({ColorScheme::Light, true, false}); // it doesn't slide, so that nothing places it again and again
    layer->show(sheet);
    const int empty = sheet->height();
    auto* const row = new QWidget;
    row->setFixedHeight(200);
    rows->addWidget(row);
    processEventsUntil([&] { return row->visibleRegion().boundingRect().height() == 200; });
    EXPECT_GE(sheet->height(), empty + 200);
    row->setFixedHeight(100);
    processEventsUntil([&] { return row->height() == 100 && sheet->height() < empty + 200; });
    EXPECT_EQ(row->visibleRegion().boundingRect().height(), 100);
    delete layer;
}

TEST_P(PiecesTest, anAlertShowsTheProgramsIconAndASignOfWarning) {
    const Alert warning{u"Really?"_s, u"It is gone then."_s, {u"Delete"_s, u"Cancel"_s}, 1, 0, AlertStyle::Warning};
    AlertDialog dialog(warning);
    dialog.show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
    const QRect icon(Theme::kGap24, Theme::kGap24, 56, 56);
    EXPECT_GT(shot(dialog).count(theme().warning, icon), 60);
    EXPECT_GT(shot(dialog).count(theme().danger), 3) << "the destructive button's text";
    Alert telling = warning;
    telling.style = AlertStyle::Informational;
    AlertDialog other(telling);
    other.show();
    EXPECT_EQ(shot(other).count(theme().warning, icon), 0);
    Alert good = warning;
    good.style = AlertStyle::Success;
    AlertDialog third(good);
    third.show();
    EXPECT_EQ(shot(third).count(theme().warning, icon), 0);
    EXPECT_GT(shot(third).count(theme().success, icon), 60);
}

INSTANTIATE_TEST_SUITE_P(Scales, PiecesTest, ::testing::Values(1, 2));

} // namespace quorvane
