#include "platform/macos/CleanEnvironment.h"

#include <QMap>

#include <gtest/gtest.h>

#include <cstdlib>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QProcessEnvironment environmentOf(const QMap<QString, QString>& variables) {
    QProcessEnvironment environment;
    for (auto variable = variables.cbegin(); variable != variables.cend(); ++variable) {
        environment.insert(variable.key(), variable.value());
    }
    return environment;
}

const QString kOwnPath = u"/usr/bin:/bin:/usr/sbin:/sbin"_s;

} // namespace

TEST(CleanEnvironment, keepsWhatTellsOfTheUserAndHasAPathOfItsOwn) {
    const QMap<QString, QString> ofUser{{u"HOME"_s, u"/Users/alex"_s},
                                        {u"USER"_s, u"alex"_s},
                                        {u"LOGNAME"_s, u"alex"_s},
                                        {u"SHELL"_s, u"/bin/zsh"_s},
                                        {u"TMPDIR"_s, u"/var/folders/xy/T/"_s},
                                        {u"LANG"_s, u"de_DE.UTF-8"_s},
                                        {u"__CF_USER_TEXT_ENCODING"_s, u"0x1F5:0x0:0x3"_s}};
    QMap<QString, QString> given = ofUser;
    given.insert({{u"PATH"_s, u"/tmp/planted:/usr/bin"_s},
                  {u"DYLD_INSERT_LIBRARIES"_s, u"/tmp/planted.dylib"_s},
                  {u"QT_PLUGIN_PATH"_s, u"/tmp/planted"_s},
                  {u"BASH_ENV"_s, u"/tmp/planted.sh"_s},
                  {u"LANGUAGE"_s, u"de"_s},
                  {u"home"_s, u"/tmp"_s}});
    QMap<QString, QString> expected = ofUser;
    expected.insert(u"PATH"_s, kOwnPath);
    EXPECT_EQ(cleanEnvironment(environmentOf(given), false), environmentOf(expected));
}

TEST(CleanEnvironment, hasThePathWhereNothingWasGiven) {
    EXPECT_EQ(cleanEnvironment({}, false), environmentOf({{u"PATH"_s, kOwnPath}}));
}

TEST(CleanEnvironment, keepsQtsVariablesForDevelopersOnly) {
    const QProcessEnvironment given = environmentOf({{u"QT_LOGGING_RULES"_s, u"qt.*=true"_s}, {u"QTDIR"_s, u"/tmp"_s}});
    EXPECT_EQ(cleanEnvironment(given, true),
              environmentOf({{u"PATH"_s, kOwnPath}, {u"QT_LOGGING_RULES"_s, u"qt.*=true"_s}}));
    EXPECT_EQ(cleanEnvironment(given, false), environmentOf({{u"PATH"_s, kOwnPath}}));
}

TEST(CleanEnvironment, becomesTheProcesssOwn) {
    const QProcessEnvironment former = QProcessEnvironment::systemEnvironment();
    const char* const unreadable = "QUORVANE_\xff";
    ASSERT_EQ(::setenv(unreadable, "x", 1), 0);
    const QProcessEnvironment wanted =
        environmentOf({{u"PATH"_s, kOwnPath}, {u"HOME"_s, u"/Users/Zoë"_s}, {u"LANG"_s, {}}});
    takeEnvironment(wanted);
    const QProcessEnvironment taken = QProcessEnvironment::systemEnvironment();
    const bool isUnreadableGone = ::getenv(unreadable) == nullptr;
    takeEnvironment(former);
    EXPECT_EQ(taken, wanted);
    EXPECT_TRUE(isUnreadableGone);
    EXPECT_EQ(QProcessEnvironment::systemEnvironment(), former);
}

} // namespace quorvane
