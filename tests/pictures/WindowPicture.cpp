#include "pictures/WindowPicture.h"

#include "simulator/PreferenceStore.h"
#include "ui/QuorvaneStyle.h"

#include <QCursor>
#include <QImage>
#include <QScreen>
#include <QStyleHints>
#include <QTest>

#include <ostream>

namespace quorvane {

namespace {

constexpr int kStill = 60; // milliseconds in which what is to be painted has been

/// All of the program's windows, with what the window manager puts around them.
QRect placeOfWindows() {
    QRect place;
    for (const QWidget* const window : QApplication::topLevelWidgets()) {
        if (window->isVisible()) {
            place |= window->frameGeometry();
        }
    }
    return place;
}

QImage picture(const QRect& place) {
    return QGuiApplication::primaryScreen()
        ->grabWindow(0, place.x(), place.y(), place.width(), place.height())
        .toImage();
}

/// Once nothing of it changes any more.
QImage stillPicture() {
    QImage before;
    QImage now;
    do {
        before = now;
        QTest::qWait(kStill);
        now = picture(placeOfWindows());
    } while (now != before);
    return now;
}

QString fileName(const QString& state, ColorScheme scheme) {
    const QScreen& screen = *QGuiApplication::primaryScreen();
    const bool hasLargeText = screen.logicalDotsPerInch() > 100;
    return state + (hasLargeText ? u"-large-text"_s : QString()) +
           (scheme == ColorScheme::Dark ? u"-dark"_s : u"-light"_s) +
           (screen.devicePixelRatio() > 1 ? u"@2x.png"_s : u".png"_s);
}

} // namespace

void PrintTo(const PicturedState& state, std::ostream* out) {
    *out << state.name.toStdString();
}

WindowPicture::WindowPicture()
    : WindowOnMac(GetParam().mac) {
    isTall = false;
    setPreference(u"com.apple.universalaccess"_s, u"reduceMotion"_s, true);
    QGuiApplication::styleHints()->setCursorFlashTime(0);
    QCursor::setPos(QGuiApplication::primaryScreen()->geometry().bottomRight()); // nothing is hovered
}

void WindowPicture::setPreference(const QString& domain, const QString& key, const macsim::PropertyList& value) {
    const macsim::Mac& mac = host->mac();
    const macsim::PreferenceStore preferences(mac, mac.volume(macsim::Actor::User));
    ASSERT_EQ(preferences.write({domain}, key, value), macsim::PreferenceStore::Outcome::Done);
}

void WindowPicture::setScheme(ColorScheme scheme) {
    setPreference(macsim::kGlobalDomain.toString(), u"AppleInterfaceStyle"_s,
                  scheme == ColorScheme::Dark ? u"Dark"_s : u"Light"_s);
    processEventsUntil([scheme] {
        const auto* const style = qobject_cast<const QuorvaneStyle*>(QApplication::style());
        return style != nullptr && style->theme().look().scheme == scheme;
    });
    if (auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
        const QPoint place = menu->pos(); // it takes another look the next time that it opens
        menu->hide();
        menu->popup(place);
    }
}

void WindowPicture::save(ColorScheme scheme) {
    setScheme(scheme);
    const QString file = qEnvironmentVariable("QUORVANE_PICTURES") + u'/' + fileName(GetParam().name, scheme);
    EXPECT_TRUE(stillPicture().save(file)) << file.toStdString();
}

TEST_P(WindowPicture, isSaved) {
    GetParam().bring(*this);
    if (!HasFailure()) {
        save(ColorScheme::Light);
        save(ColorScheme::Dark);
    }
}

INSTANTIATE_TEST_SUITE_P(Of, WindowPicture, ::testing::ValuesIn(WindowPicture::states()),
                         [](const ::testing::TestParamInfo<PicturedState>& state) {
                             return QString(state.param.name).replace(u'-', u'_').toStdString();
                         });

} // namespace quorvane
