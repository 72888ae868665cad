#include "app/DisplayCheck.h"

#include "app/ChildProgram.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int kNoDisplay = 2;

/// Without anything that names a display.
QProcessEnvironment bareEnvironment() {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString& name : {u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"QT_QPA_PLATFORM"_s, u"XDG_SESSION_TYPE"_s}) {
        environment.remove(name);
    }
    return environment;
}

QProcessEnvironment with(const QString& name, const QString& value) {
    QProcessEnvironment environment = bareEnvironment();
    environment.insert(name, value);
    return environment;
}

} // namespace

TEST(DisplayCheck, withoutADisplayOneClearTextIsAllThatIsSaid) {
    ChildProgram child({u"display"_s, u"warn"_s}, bareEnvironment());
    EXPECT_EQ(child.status(), kNoDisplay);
    EXPECT_EQ(QString::fromUtf8(child.errors()),
              u"quorvane: the window needs a display, and neither DISPLAY nor WAYLAND_DISPLAY names one.\n"
              "Without a screen Xvfb gives one (on Debian: apt-get install xvfb xauth):\n"
              "    xvfb-run ./run window\n"
              "    Xvfb :99 & DISPLAY=:99 ./run window\n"_s);
}

TEST(DisplayCheck, aDisplayAtWhichNobodyAnswersIsNamed) {
    ChildProgram child({u"display"_s}, with(u"DISPLAY"_s, u":7431"_s));
    EXPECT_EQ(child.status(), kNoDisplay);
    const QString said = QString::fromUtf8(child.errors());
    EXPECT_EQ(said, noDisplayText(u":7431"_s));
    EXPECT_TRUE(said.startsWith(u"quorvane: the window needs a display, and “:7431” can’t be opened.\n"_s));
}

TEST(DisplayCheck, whereThereIsADisplayNothingThatQtSaysIsLost) {
    ChildProgram child({u"display"_s, u"warn"_s}, with(u"QT_QPA_PLATFORM"_s, u"offscreen"_s));
    EXPECT_EQ(child.status(), 0);
    EXPECT_TRUE(child.errors().contains("a warning meanwhile\n"));
}

TEST(DisplayCheck, anotherEndStaysWhatItIs) {
    ChildProgram child({u"display"_s, u"fail"_s}, bareEnvironment());
    EXPECT_EQ(child.status(), -1);
    const QByteArray said = child.errors();
    EXPECT_TRUE(said.contains("a warning before the end\nanother end\n")) << said.toStdString();
}

} // namespace quorvane
