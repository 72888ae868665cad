// Colours that can be read, in every look.

#include "fakes/Pictures.h"
#include "ui/QuorvaneStyle.h"

#include <QApplication>
#include <QMenu>
#include <QToolTip>

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QList<Look> everyLook() {
    QList<Look> looks;
    for (const ColorScheme scheme : {ColorScheme::Light, ColorScheme::Dark}) {
        for (const bool increasesContrast : {false, true}) {
            looks.append({scheme, false, increasesContrast});
        }
    }
    return looks;
}

QString nameOfLook(const Look& look) {
    return (look.scheme == ColorScheme::Dark ? u"dark"_s : u"light"_s) +
           (look.increasesContrast ? u", more contrast"_s : QString());
}

void expectContrast(const QList<TextOnGround>& pairs, double least, const Look& look) {
    ASSERT_FALSE(pairs.isEmpty());
    for (const TextOnGround& pair : pairs) {
        EXPECT_EQ(pair.text.alpha(), 255) << pair.name.toStdString();
        EXPECT_EQ(pair.ground.alpha(), 255) << pair.name.toStdString();
        EXPECT_GE(contrastRatio(pair.text, pair.ground), least)
            << pair.name.toStdString() << ", " << nameOfLook(look).toStdString();
    }
}

/// The colour that most of a picture has.
QColor groundOf(const QImage& picture) {
    QHash<QRgb, int> counts;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            ++counts[picture.pixel(x, y)];
        }
    }
    return QColor(std::max_element(counts.begin(), counts.end()).key());
}

/// Puts the usual look back.
class ThemeTest : public ::testing::Test {
public:
    ~ThemeTest() override { style().setLook({}); }

protected:
    static QuorvaneStyle& style() { return *qobject_cast<QuorvaneStyle*>(QApplication::style()); }
};

} // namespace

TEST_F(ThemeTest, theContrastOfBlackAndWhiteIsTheGreatest) {
    EXPECT_NEAR(contrastRatio(Qt::black, Qt::white), 21, 0.001);
    EXPECT_NEAR(contrastRatio(0x777777, Qt::white), 4.48, 0.01) << "as others compute it";
    EXPECT_EQ(contrastRatio(Qt::red, Qt::red), 1);
}

TEST_F(ThemeTest, aColorIsLaidOverAnotherByItsShare) {
    EXPECT_EQ(laidOver(QColor(0, 0, 0, 51), Qt::white).rgb(), QColor(204, 204, 204).rgb());
    EXPECT_EQ(laidOver(Qt::red, Qt::white).rgb(), QColor(Qt::red).rgb());
}

TEST_F(ThemeTest, everyTextCanBeReadOnItsGround) {
    for (const Look& look : everyLook()) {
        expectContrast(textsOnGrounds(Theme(look)), 4.5, look);
    }
}

TEST_F(ThemeTest, everyShapeCanBeToldFromItsGround) {
    for (const Look& look : everyLook()) {
        expectContrast(shapesOnGrounds(Theme(look)), 3, look);
    }
}

TEST_F(ThemeTest, moreContrastIsMoreContrast) {
    for (const ColorScheme scheme : {ColorScheme::Light, ColorScheme::Dark}) {
        const Theme usual({scheme, false, false});
        const Theme increased({scheme, false, true});
        const auto lineOf = [](const Theme& theme, const QColor& line) {
            return contrastRatio(laidOver(line, theme.window), theme.window);
        };
        EXPECT_GT(lineOf(increased, increased.border), lineOf(usual, usual.border));
        EXPECT_GT(lineOf(increased, increased.fieldBorder), lineOf(usual, usual.fieldBorder));
    }
}

TEST_F(ThemeTest, menusAndToolTipsCanBeRead) {
    for (const Look& look : everyLook()) {
        style().setLook(look);
        QMenu menu;
        for (int entry = 0; entry < 6; ++entry) {
            menu.addAction(u"Live"_s);
        }
        menu.resize(200, 300);
        const QColor ground = groundOf(menu.grab().toImage());
        EXPECT_GE(contrastRatio(menu.palette().color(QPalette::WindowText), ground), 4.5)
            << nameOfLook(look).toStdString();
        EXPECT_GE(contrastRatio(menu.palette().color(QPalette::Text), ground), 4.5) << nameOfLook(look).toStdString();
        EXPECT_EQ(QToolTip::palette().color(QPalette::ToolTipBase), style().theme().card);
        EXPECT_EQ(QToolTip::palette().color(QPalette::ToolTipText), style().theme().text);
    }
}

TEST_F(ThemeTest, nothingMovesWhereMotionIsReduced) {
    EXPECT_EQ(Theme({ColorScheme::Light, true, false}).moving(Theme::kFade).count(), 0);
    EXPECT_EQ(Theme({}).moving(Theme::kFade), Theme::kFade);
}

} // namespace quorvane
