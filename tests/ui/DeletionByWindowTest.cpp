// Deleting saved profiles by mouse and keys, and profiles that others have changed meanwhile.

#include "core/UserDefaultKeys.h"
#include "fakes/ProfileStore.h"
#include "fakes/QuickWindowOnMac.h"
#include "platform/UserDefaults.h"

#include <QApplication>
#include <QLabel>

namespace quorvane {

class DeletionByWindow : public QuickWindowOnMac {
protected:
    void SetUp() override {
        keepBaseline();
        const QStringList names{u"Ambient"_s, u"Club"_s, u"Dub"_s, u"Encore"_s};
        for (int number = 0; number < names.size(); ++number) {
            UnifiedProfile profile = numberedProfile(number + 1, names.at(number));
            profile.settings.airdrop = true;
            profile.settings.usbPower = true; // needs root
            profile.settings.siri = number == 1;
            saveProfile(profile);
        }
        launchAndScan();
    }
    void confirm(const QString& name) {
        answerAlert(u"Delete Profile?"_s, u"Delete"_s);
        waitUntilAlert(u"Profile Deleted"_s);
        EXPECT_EQ(alert().text, u"“%1” has been removed."_s.arg(name));
        answerAlert(u"Profile Deleted"_s);
        waitUntilScanned();
        EXPECT_FALSE(profileRows().contains(name));
        EXPECT_FALSE(menuTitles().contains(name));
        EXPECT_TRUE(log().contains(u"\n[PROFILE] Deleted: "_s + name));
    }
    void waitUntilScanned() {
        processEventsUntil([this] { return session().turnstile.isIdle() && session().scans.isUpToDate(); });
        letEventsPass();
    }
    void apply(const QString& name) {
        clickProfile(name);
        processEventsUntil([] { return isUsable(u"Apply Profile"_s); });
        press(Qt::Key_Return);
        authorize();
        answerAlert(u"Restart Required"_s);
        press(Qt::Key_Return);
        waitUntilScanned();
    }
    static QList<QLabel*> alertLabels() {
        for (QWidget* const window : QApplication::topLevelWidgets()) {
            if (window->isVisible() && window->accessibleName() == alertTitle()) {
                return window->findChildren<QLabel*>();
            }
        }
        return {};
    }
    QString fileOf(const QString& name) { return profilesDirectory(host->host().machine) + u'/' + name + u".json"_s; }
};

TEST_F(DeletionByWindow, byMouseByTheDeleteKeyAndByTheButton) {
    clickDeleteOf(u"Ambient"_s);
    confirm(u"Ambient"_s);
    EXPECT_EQ(currentProfileRow(), u"Club"_s);
    EXPECT_EQ(focused(), u"Saved Profiles"_s);

    press(Qt::Key_Delete);
    confirm(u"Club"_s);
    EXPECT_EQ(currentProfileRow(), u"Dub"_s);
    EXPECT_EQ(focused(), u"Saved Profiles"_s);

    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), u"Edit profile"_s);
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), u"Delete profile"_s);
    press(Qt::Key_Space);
    confirm(u"Dub"_s);
    EXPECT_EQ(currentProfileRow(), u"Encore"_s);
    EXPECT_EQ(focused(), u"Saved Profiles"_s) << "on the next row";

    press(Qt::Key_Tab);
    press(Qt::Key_Tab);
    press(Qt::Key_Space);
    confirm(u"Encore"_s);
    EXPECT_EQ(currentProfileRow(), u"Default"_s);
    EXPECT_EQ(focused(), u"Saved Profiles"_s) << "Default has no such button";
    EXPECT_EQ(profileRows(), QStringList(u"Default"_s));
    EXPECT_TRUE(isSeen(u"No saved profiles yet"_s));
    EXPECT_TRUE(isSeen(u"Profiles you create appear here and in the menu bar."_s));
    press(Qt::Key_Delete);
    letEventsPass();
    EXPECT_EQ(alertTitle(), QString()) << "Default stays";
}

TEST_F(DeletionByWindow, ofTheCurrentOneMakesDefaultCurrent) {
    apply(u"Club"_s);
    EXPECT_TRUE(isSeen(u"Profile: Club"_s));
    EXPECT_TRUE(menuTitles().contains(u"On system: Club"_s));

    clickDeleteOf(u"Club"_s);
    confirm(u"Club"_s);
    EXPECT_EQ(mainWindow()->windowTitle(), u"Quorvane"_s);
    EXPECT_EQ(host->host().defaults.string(kQuorvaneLastAppliedProfileName).value_or(QString()), u"Default"_s);
    EXPECT_FALSE(isSeen(u"Profile: Club"_s));
    EXPECT_TRUE(menuTitles().contains(u"On system: No match"_s)) << menuTitles().join(u", "_s).toStdString();
    EXPECT_EQ(session().workingCopy.settings(), PerformanceSettings{});
}

TEST_F(DeletionByWindow, ofWhatIsGoneOrHasBecomeAnotherIsTold) {
    QFile::remove(macFolder() + fileOf(u"Ambient"_s));
    clickProfile(u"Ambient"_s);
    waitUntilAlert(u"Error"_s);
    EXPECT_EQ(alert().text, u"Could not load profile \"Ambient\"."_s);
    answerAlert(u"Error"_s);
    waitUntilScanned();
    EXPECT_FALSE(profileRows().contains(u"Ambient"_s)) << "the list is read anew";

    UnifiedProfile another = numberedProfile(9, u"Dub"_s);
    saveProfile(another);
    clickProfile(u"Dub"_s);
    waitUntilAlert(u"Error"_s);
    EXPECT_EQ(alert().text, u"Could not load profile \"Dub\"."_s);
    answerAlert(u"Error"_s);
    waitUntilScanned();
    clickProfile(u"Dub"_s);
    processEventsUntil([] { return isUsable(u"Apply Profile"_s); });
    press(Qt::Key_Escape);
    waitUntilScanned();

    saveProfile(numberedProfile(10, u"Encore"_s));
    clickDeleteOf(u"Encore"_s);
    answerAlert(u"Delete Profile?"_s, u"Delete"_s);
    waitUntilAlert(u"Error"_s);
    EXPECT_EQ(alert().text, u"Could not delete profile \"Encore\"."_s);
    answerAlert(u"Error"_s);
    waitUntilScanned();
    EXPECT_TRUE(QFile::exists(macFolder() + fileOf(u"Encore"_s)));

    // The menu says nothing of it; it shows what is there.
    QFile::remove(macFolder() + fileOf(u"Club"_s));
    chooseInMenu(u"Club"_s);
    waitUntilScanned();
    EXPECT_EQ(alertTitle(), QString());
    EXPECT_FALSE(menuTitles().contains(u"Club"_s));
}

TEST_F(DeletionByWindow, damagedFilesAreNamedAndLeftAlone) {
    QFile file(macFolder() + fileOf(u"Broken"_s));
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    file.write("{ not a profile");
    file.close();
    mainWindow()->close();
    chooseInMenu(u"Open Quorvane"_s);
    processEventsUntil([] { return mainWindow() != nullptr && isUsable(u"Saved Profiles"_s); });
    processEventsUntil([] { return profileRows().contains(u"“Broken.json” can’t be read"_s); });
    clickProfile(u"“Broken.json” can’t be read"_s);
    press(Qt::Key_Return);
    press(Qt::Key_Delete);
    letEventsPass();
    EXPECT_EQ(alertTitle(), QString());
    EXPECT_TRUE(session().turnstile.isIdle());
    EXPECT_TRUE(file.exists());
}

TEST_F(DeletionByWindow, aNameLikeMarkupStandsPlainAndOnOneLineInEachAlert) {
    const QString hostile = u"<h1>Live<b>\n&gig"_s;
    const QString plain = u"<h1>Live<b> &gig"_s;
    UnifiedProfile gig = numberedProfile(9, hostile);
    gig.settings.usbPower = true; // needs root
    saveProfile(gig);
    session().savedProfiles.tellChanged();
    processEventsUntil([&plain] { return profileRows().contains(plain); });
    const auto expectPlain = [&plain] {
        EXPECT_TRUE((alert().title + alert().text).contains(plain)) << alert().text.toStdString();
        for (const QLabel* const label : alertLabels()) {
            EXPECT_EQ(label->textFormat(), Qt::PlainText) << label->text().toStdString();
        }
    };
    apply(plain);
    EXPECT_TRUE(isSeen(u"Profile: "_s + plain));
    EXPECT_EQ(mainWindow()->windowTitle(), u"Quorvane — "_s + plain);
    EXPECT_TRUE(menuTitles().contains(u"On system: "_s + QString(plain).replace(u"&"_s, u"&&"_s)));

    clickDeleteOf(plain);
    waitUntilAlert(u"Delete Profile?"_s);
    expectPlain();
    answerAlert(u"Delete Profile?"_s, u"Delete"_s);
    waitUntilAlert(u"Profile Deleted"_s);
    expectPlain();
    answerAlert(u"Profile Deleted"_s);
    waitUntilScanned();

    saveProfile(numberedProfile(9, hostile));
    session().savedProfiles.tellChanged();
    processEventsUntil([&plain] { return profileRows().contains(plain); });
    saveProfile(numberedProfile(10, hostile)); // another one by that name
    clickProfile(plain);
    waitUntilAlert(u"Error"_s);
    expectPlain();
    answerAlert(u"Error"_s);
    waitUntilScanned();
    saveProfile(numberedProfile(11, hostile));
    clickDeleteOf(plain);
    answerAlert(u"Delete Profile?"_s, u"Delete"_s);
    waitUntilAlert(u"Error"_s);
    expectPlain();
    answerAlert(u"Error"_s);
}

} // namespace quorvane
