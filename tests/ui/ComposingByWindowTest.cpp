// Profiles made, edited, picked and saved by mouse and keys: the wizard, the selector and its sheet.

#include "core/UserDefaultKeys.h"
#include "fakes/FilePanelUser.h"
#include "fakes/ProfileStore.h"
#include "fakes/QuickWindowOnMac.h"
#include "platform/FileManager.h"
#include "platform/Machine.h"
#include "platform/UserDefaults.h"
#include "profiles/ProfileJson.h"

#include <QApplication>
#include <QFileOpenEvent>
#include <QLineEdit>
#include <QMenu>
#include <QTest>

namespace quorvane {

class ComposingByWindow : public QuickWindowOnMac {
protected:
    void SetUp() override { begin(); }
    void begin() {
        keepBaseline();
        saveProfile(withSiriOff(numberedProfile(1, u"Live"_s)));
        saveProfile(numberedProfile(2, u"Club"_s));
        launchAndScan();
    }
    static UnifiedProfile withSiriOff(UnifiedProfile profile) {
        profile.settings.siri = true;
        return profile;
    }
    void waitUntilRest() {
        processEventsUntil([this] { return session().turnstile.isIdle() && session().scans.isUpToDate(); });
        letEventsPass();
    }
    std::optional<UnifiedProfile> stored(const QString& name) { return session().profileStore.loadProfile(name); }

    // ---- The wizard

    static void openWizard() {
        click(u"Create Custom Profile"_s);
        processEventsUntil([] { return isSeen(u"Configure System Tweaks"_s); });
    }
    void goToLastStep() {
        press(Qt::Key_Return);
        processEventsUntil([] { return isSeen(u"Startup Items"_s); });
        processEventsUntil([this] { return !session().startupEditing.isRefreshing(); });
        press(Qt::Key_Return);
        processEventsUntil([] { return isSeen(u"Name Your Profile"_s); });
    }
    static void typeName(const QString& name) {
        auto* const field = qobject_cast<QLineEdit*>(control(u"Profile name"_s));
        field->setFocus();
        field->selectAll();
        type(name);
    }

    // ---- The selector

    static void openTweaks() {
        click(u"System Tweaks"_s);
        processEventsUntil([] { return isSeen(u"Execute Tweaks"_s); });
    }
    static QString selectorName() {
        for (const QWidget* const widget : QApplication::allWidgets()) {
            if (widget->isVisible() && widget->accessibleName().startsWith(u"Profile: "_s) &&
                widget->focusPolicy() != Qt::NoFocus) {
                return widget->accessibleName();
            }
        }
        return {};
    }
    static QMenu* openSelector() {
        click(selectorName());
        return qobject_cast<QMenu*>(QApplication::activePopupWidget());
    }
    static QStringList entries(const QMenu& menu) {
        QStringList texts;
        for (const QAction* const action : menu.actions()) {
            if (!action->isSeparator()) {
                texts.append(action->text() + (action->isEnabled() ? QString() : u" (disabled)"_s));
            }
        }
        return texts;
    }
    static QString textOf(const QString& name) { return qobject_cast<QLineEdit*>(control(name))->text(); }
    /// With a name typed into it.
    void openSaveSheet(const QString& name) {
        choose(u"Save Profile"_s);
        processEventsUntil([] { return isSeen(u"Include in profile:"_s); });
        typeName(name);
    }
    static void choose(const QString& text) {
        QMenu* const menu = openSelector();
        ASSERT_NE(menu, nullptr);
        for (QAction* const action : menu->actions()) {
            if (action->text() == text) {
                QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
                letEventsPass();
                if (!alertTitle().isEmpty()) {
                    return;
                }
                mainWindow()->activateWindow(); // without a window manager nobody else gives it back
                processEventsUntil([] { return mainWindow()->isActiveWindow(); });
                return;
            }
        }
        menu->close();
        FAIL() << "no " << text.toStdString() << " in " << entries(*menu).join(u", "_s).toStdString();
    }
};

class ComposingWithLock : public ComposingByWindow {
protected:
    void SetUp() override {
        enableLock();
        begin();
        unlock();
    }
};

class ComposingOnFullDisk : public ComposingByWindow {
protected:
    void SetUp() override {
        keepBaseline();
        saveProfile(withSiriOff(numberedProfile(1, u"Live"_s)));
        saveProfile(numberedProfile(2, u"Club"_s));
        startHost(R"([{"adapter": "files", "change": 1, "error": "No space left on device"}])");
        launchAndScan();
    }
};

// ---- The wizard

TEST_F(ComposingByWindow, aProfileIsComposedByKeysAlone) {
    openWizard();
    EXPECT_TRUE(isSeen(u"Create Profile"_s));
    EXPECT_TRUE(isSeen(u"1 of 3"_s));
    EXPECT_FALSE(isUsable(u"Step: Startup Optimization"_s)) << "not visited";
    click(u"Bypass macOS App Nap Throttling"_s);
    goToLastStep();
    EXPECT_TRUE(isSeen(u"3 of 3"_s));
    EXPECT_TRUE(isSeen(u"1 selected"_s));
    EXPECT_FALSE(isUsable(u"Save Profile"_s) && control(u"Profile name"_s) == nullptr);
    EXPECT_EQ(focused(), u"Profile name"_s);
    type(u"My Gig"_s);
    press(Qt::Key_Return);
    waitUntilAlert(u"Profile Saved"_s);
    EXPECT_EQ(alert().text, u"\"My Gig\" is now available from the menu bar and profile dropdown."_s);
    answerAlert(u"Profile Saved"_s);
    waitUntilRest();
    EXPECT_TRUE(profileRows().contains(u"My Gig"_s));
    EXPECT_TRUE(menuTitles().contains(u"My Gig"_s));
    EXPECT_TRUE(stored(u"My Gig"_s)->settings.appNap);
    EXPECT_TRUE(log().contains(u"\n[WIZARD] Profile saved: My Gig"_s));
    EXPECT_TRUE(isSeen(u"Create Custom Profile"_s)) << "back on the page";
}

TEST_F(ComposingByWindow, eachOpeningBeginsAnew) {
    openWizard();
    goToLastStep();
    typeName(u"Half"_s);
    click(u"Apply profile after saving"_s);
    click(u"Step: System Tweaks"_s);
    processEventsUntil([] { return isSeen(u"Configure System Tweaks"_s); });
    press(Qt::Key_Escape);
    processEventsUntil([] { return isSeen(u"Create Custom Profile"_s); });
    EXPECT_FALSE(stored(u"Half"_s).has_value());
    openWizard();
    EXPECT_TRUE(isSeen(u"1 of 3"_s));
    EXPECT_FALSE(isUsable(u"Step: Startup Optimization"_s));
    goToLastStep();
    EXPECT_EQ(qobject_cast<QLineEdit*>(control(u"Profile name"_s))->text(), QString());
    EXPECT_FALSE(qobject_cast<QAbstractButton*>(control(u"Apply profile after saving"_s))->isChecked());
}

TEST_F(ComposingByWindow, editingRenamesAndTakesTheNamesAlong) {
    host->host().defaults.setString(kQuorvaneLastAppliedProfileName, u"Live"_s);
    profileList()->setFocus();
    profileList()->setCurrentIndex(
        profileList()->model()->index(static_cast<int>(profileRows().indexOf(u"Live"_s)), 0));
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), u"Edit profile"_s);
    press(Qt::Key_Space);
    processEventsUntil([] { return isSeen(u"Edit Profile"_s); });
    EXPECT_TRUE(log().contains(u"\n[PROFILE] Loaded for editing: Live"_s));
    goToLastStep();
    EXPECT_EQ(qobject_cast<QLineEdit*>(control(u"Profile name"_s))->text(), u"Live"_s);
    typeName(u"Main Stage"_s);
    EXPECT_TRUE(isSeen(u"“Live” will be renamed."_s));
    const QUuid id = stored(u"Live"_s)->id;
    press(Qt::Key_Return);
    answerAlert(u"Profile Saved"_s);
    waitUntilRest();
    EXPECT_EQ(stored(u"Main Stage"_s)->id, id);
    EXPECT_FALSE(profileRows().contains(u"Live"_s));
    EXPECT_EQ(host->host().defaults.string(kQuorvaneLastAppliedProfileName), u"Main Stage"_s);
    EXPECT_TRUE(menuTitles().contains(u"Main Stage"_s));
}

TEST_F(ComposingByWindow, savedAndAppliedInOneGo) {
    openWizard();
    goToLastStep();
    typeName(u"Tonight"_s);
    click(u"Apply profile after saving"_s);
    click(u"Save Profile"_s);
    processEventsUntil([] { return isUsable(u"Apply Profile"_s); });
    EXPECT_TRUE(isSeen(u"Review Profile: Tonight"_s));
    press(Qt::Key_Escape);
    waitUntilRest();
    EXPECT_TRUE(profileRows().contains(u"Tonight"_s)) << "it stays saved";
}

TEST_F(ComposingWithLock, theLockInTheMiddleOfTheWizardLosesNothing) {
    openWizard();
    goToLastStep();
    typeName(u"Kept"_s);
    resignActive();
    processEventsUntil([] { return isSeen(u"Quorvane is Locked"_s); });
    EXPECT_FALSE(isSeen(u"Name Your Profile"_s));
    becomeActive();
    unlock();
    processEventsUntil([] { return isSeen(u"Name Your Profile"_s); });
    EXPECT_EQ(qobject_cast<QLineEdit*>(control(u"Profile name"_s))->text(), u"Kept"_s);
}

// ---- The selector

TEST_F(ComposingByWindow, theSelectorsMenuSaysWhatThereIs) {
    openTweaks();
    EXPECT_EQ(selectorName(), u"Profile: Default"_s);
    QMenu* const menu = openSelector();
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(entries(*menu), (QStringList{u"Club"_s, u"Live — 1 performance tweak(s)"_s, u"Apply Default to System"_s,
                                           u"None (Clear)"_s, u"Edit Current (disabled)"_s, u"Save Profile"_s}));
    menu->close();
}

TEST_F(ComposingByWindow, whatIsEditedIsMarkedSavedAndDeletedThere) {
    openTweaks();
    click(u"Deactivate Siri Core Services"_s);
    EXPECT_TRUE(isSeen(u"Edited"_s));
    choose(u"Save Profile"_s);
    processEventsUntil([] { return isSeen(u"Include in profile:"_s); });
    EXPECT_TRUE(isSeen(u"1 tweaks selected"_s));
    type(u"live"_s);
    EXPECT_TRUE(isSeen(u"Update"_s));
    type(u" 2"_s);
    EXPECT_TRUE(isSeen(u"Save"_s));
    press(Qt::Key_Return);
    answerAlert(u"Success"_s);
    waitUntilRest();
    EXPECT_TRUE(stored(u"live 2"_s)->settings.siri);
    EXPECT_EQ(selectorName(), u"Profile: live 2"_s);
    EXPECT_FALSE(isSeen(u"Edited"_s));

    choose(u"Delete Profile"_s);
    waitUntilAlert(u"Delete Profile?"_s);
    EXPECT_EQ(alert().text, u"“live 2” will be removed from saved profiles and the menu bar."_s);
    answerAlert(u"Delete Profile?"_s, u"Delete"_s);
    answerAlert(u"Profile Deleted"_s);
    waitUntilRest();
    EXPECT_EQ(selectorName(), u"Profile: Default"_s);
    EXPECT_FALSE(stored(u"live 2"_s).has_value());
}

TEST_F(ComposingByWindow, pickedThereItIsReviewedAndClearedThereItIsGone) {
    openTweaks();
    choose(u"Live — 1 performance tweak(s)"_s);
    processEventsUntil([] { return isUsable(u"Apply Profile"_s); });
    press(Qt::Key_Escape);
    waitUntilRest();
    EXPECT_EQ(selectorName(), u"Profile: Live"_s);
    choose(u"Edit Current"_s);
    processEventsUntil([] { return isSeen(u"Edit Profile"_s); });
    press(Qt::Key_Escape);
    openTweaks();
    choose(u"None (Clear)"_s);
    waitUntilRest();
    EXPECT_EQ(selectorName(), u"Profile: Default"_s);
    EXPECT_EQ(session().workingCopy.settings(), PerformanceSettings{});
}

TEST_F(ComposingByWindow, theWindowGoesWithTheSelectorsMenuOpen) {
    openTweaks();
    EXPECT_NE(openSelector(), nullptr);
    quit();
    EXPECT_TRUE(hasTerminated);
}

// ---- The save sheet

TEST_F(ComposingByWindow, aTakenNameInWhateverSpellingAsksAndReplacesThatProfile) {
    openTweaks();
    click(u"Deactivate Siri Core Services"_s);
    openSaveSheet(u"  CLUB "_s);
    EXPECT_TRUE(isSeen(u"Update"_s));
    press(Qt::Key_Return);
    const ShownAlert question{u"Overwrite Profile?"_s,
                              u"This will replace the existing profile \"Club\" with your current settings."_s,
                              {u"Overwrite"_s, u"Cancel"_s},
                              u"Cancel"_s};
    answerByKey(question, Qt::Key_Return);
    EXPECT_FALSE(stored(u"Club"_s)->settings.siri);
    EXPECT_EQ(textOf(u"Profile name"_s), u"  CLUB "_s) << "the sheet stays as it was";
    press(Qt::Key_Return);
    answerAlert(u"Overwrite Profile?"_s, u"Overwrite"_s);
    waitUntilAlert(u"Success"_s);
    EXPECT_EQ(alert().text, u"Profile \"CLUB\" saved."_s);
    answerAlert(u"Success"_s);
    waitUntilRest();
    const QList<UnifiedProfile> saved = session().profileStore.listProfiles();
    ASSERT_EQ(saved.size(), 2);
    EXPECT_EQ(namesOf(saved), QStringList({u"CLUB"_s, u"Live"_s}));
    EXPECT_EQ(saved.first().id, numberedProfile(2, u"Club"_s).id);
    EXPECT_TRUE(saved.first().settings.siri);
}

TEST_F(ComposingByWindow, aProfileWithNeitherHalfIsEmptyAndListedSo) {
    openTweaks();
    click(u"Deactivate Siri Core Services"_s);
    openSaveSheet(u"Nothing"_s);
    click(u"System Tweaks"_s);
    click(u"Startup Optimization"_s);
    press(Qt::Key_Return);
    answerAlert(u"Success"_s);
    waitUntilRest();
    EXPECT_EQ(stored(u"Nothing"_s)->settings, PerformanceSettings{});
    QMenu* const menu = openSelector();
    ASSERT_NE(menu, nullptr);
    EXPECT_TRUE(entries(*menu).filter(u"Empty profile"_s).contains(u"Nothing — Empty profile"_s))
        << entries(*menu).join(u", "_s).toStdString();
    menu->close();
}

TEST_F(ComposingByWindow, aNameThatCannotBeUsedIsRefusedWithTheSheetOpen) {
    openTweaks();
    openSaveSheet(u" "_s);
    EXPECT_FALSE(isUsable(u"Save"_s));
    typeName(QString(300, u'x'));
    press(Qt::Key_Return);
    waitUntilAlert(u"Error"_s);
    EXPECT_EQ(alert().text, u"Could not save profile: Profile name is invalid."_s);
    answerAlert(u"Error"_s);
    EXPECT_TRUE(isSeen(u"Include in profile:"_s));
    EXPECT_EQ(session().profileStore.listProfiles().size(), 2);
}

TEST_F(ComposingByWindow, aFileThatCannotBeReadIsNamedBeforeItIsReplaced) {
    const QString path = session().profileStore.profilesDirectory() + u"/Tour.json"_s;
    host->host().files.writeAtomically(path, "{");
    openTweaks();
    openSaveSheet(u"tour"_s);
    press(Qt::Key_Return);
    waitUntilAlert(u"Overwrite Profile?"_s);
    EXPECT_EQ(alert().text, u"This will replace the file \"Tour\", which can’t be read."_s);
    answerAlert(u"Overwrite Profile?"_s, u"Cancel"_s);
    EXPECT_EQ(host->host().files.read(path), "{");
}

TEST_F(ComposingByWindow, aBaselineThatCannotBeWrittenIsToldAndTheProfileIsSaved) {
    const QString folderOfBaselines = host->host().machine.homeFolder() + u"/.quorvane"_s;
    shell(u"rm -rf "_s + folderOfBaselines);
    host->host().files.writeAtomically(folderOfBaselines, "no folder");
    openTweaks();
    openSaveSheet(u"Tour"_s);
    click(u"Save master restore baseline from current setup"_s);
    press(Qt::Key_Return);
    answerAlert(u"Replace Restore Baseline?"_s, u"Replace"_s);
    letTimePassUntil([] { return alertTitle() == u"Success"_s; });
    EXPECT_EQ(alert().text,
              u"Profile \"Tour\" saved, but the restore baseline could not be saved. Check the Logs tab."_s);
    answerAlert(u"Success"_s);
    EXPECT_TRUE(stored(u"Tour"_s).has_value());
}

TEST_F(ComposingOnFullDisk, theWizardStaysWithEverythingInIt) {
    openWizard();
    click(u"Deactivate Siri Core Services"_s);
    goToLastStep();
    typeName(u"Tour"_s);
    const QString baseline = u"Save master restore baseline from current setup"_s;
    click(baseline);
    press(Qt::Key_Return);
    answerAlert(u"Replace Restore Baseline?"_s, u"Replace"_s);
    letTimePassUntil([] { return alertTitle() == u"Error"_s; });
    EXPECT_TRUE(alert().text.startsWith(u"Could not save profile: "_s) && alert().text.contains(u"No space left"_s))
        << alert().text.toStdString();
    answerAlert(u"Error"_s);
    EXPECT_EQ(session().profileStore.listProfiles().size(), 2);
    EXPECT_EQ(textOf(u"Profile name"_s), u"Tour"_s);
    EXPECT_TRUE(session().workingCopy.settings().siri);
    EXPECT_TRUE(isUsable(u"Save Profile"_s));
    EXPECT_FALSE(qobject_cast<QAbstractButton*>(control(baseline))->isChecked()) << "it may have been written";
}

TEST_F(ComposingByWindow, theWizardAsksBeforeATakenNameAndACancelledOneGivesTheLoadedOneBack) {
    openTweaks();
    choose(u"Live — 1 performance tweak(s)"_s);
    processEventsUntil([] { return isUsable(u"Apply Profile"_s); });
    press(Qt::Key_Escape);
    waitUntilRest();
    click(u"Performance"_s);
    processEventsUntil([] { return isSeen(u"Create Custom Profile"_s); });
    openWizard();
    click(u"Deactivate Siri Core Services"_s);
    goToLastStep();
    typeName(u"club"_s);
    press(Qt::Key_Return);
    answerAlert(u"Overwrite Profile?"_s, u"Cancel"_s);
    EXPECT_TRUE(isSeen(u"Name Your Profile"_s));
    click(u"Step: System Tweaks"_s);
    processEventsUntil([] { return isSeen(u"Configure System Tweaks"_s); });
    press(Qt::Key_Escape);
    processEventsUntil([] { return isSeen(u"Create Custom Profile"_s); });
    EXPECT_EQ(session().workingCopy.currentProfile()->name, u"Live"_s);
    EXPECT_EQ(session().profileStore.listProfiles().size(), 2);
}

// ---- To a file and back

TEST_F(ComposingByWindow, aProfileLeavesAsAFileAndComesBack) {
    openTweaks();
    EXPECT_FALSE(isUsable(u"Export Profile…"_s)) << "none is loaded";
    choose(u"Live — 1 performance tweak(s)"_s);
    processEventsUntil([] { return isUsable(u"Apply Profile"_s); });
    press(Qt::Key_Escape);
    waitUntilRest();
    click(u"Export Profile…"_s);
    const QString path = folder.path() + u"/Live on a stick.json"_s;
    enterFileName(path);
    waitUntilAlert(u"Export Successful"_s);
    EXPECT_EQ(alert().text, u"Profile successfully exported."_s);
    answerAlert(u"Export Successful"_s);

    choose(u"Delete Profile"_s);
    answerAlert(u"Delete Profile?"_s, u"Delete"_s);
    answerAlert(u"Profile Deleted"_s);
    waitUntilRest();
    click(u"Import Profile…"_s);
    enterFileName(path);
    waitUntilAlert(u"Profile Imported"_s);
    EXPECT_EQ(alert().text, u"“Live” is now available from the menu bar and profile dropdown."_s);
    answerAlert(u"Profile Imported"_s);
    waitUntilRest();
    EXPECT_TRUE(stored(u"Live"_s)->hasSameContent(withSiriOff(numberedProfile(1, u"Live"_s))));
    EXPECT_TRUE(menuTitles().contains(u"Live"_s));
}

TEST_F(ComposingByWindow, aFileThatTheSystemOpensWithTheProgramIsImportedAfterTheQuestion) {
    const QString path = folder.path() + u"/Live.json"_s;
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(encodeProfile(numberedProfile(1, u"Live"_s)));
    file.close();
    QFileOpenEvent event(path);
    QApplication::sendEvent(qApp, &event);
    waitUntilAlert(u"Replace Saved Profiles?"_s);
    EXPECT_EQ(alert().text, u"Live will be replaced by their versions from Live.json."_s);
    answerAlert(u"Replace Saved Profiles?"_s, u"Replace"_s);
    answerAlert(u"Profile Imported"_s);
    waitUntilRest();
    EXPECT_FALSE(stored(u"Live"_s)->settings.siri);
}

TEST_F(ComposingWithLock, aFileThatIsOpenedWaitsForTheOwner) {
    const QString path = folder.path() + u"/None.json"_s;
    resignActive();
    processEventsUntil([] { return isSeen(u"Quorvane is Locked"_s); });
    becomeActive();
    QFileOpenEvent event(path);
    QApplication::sendEvent(qApp, &event);
    letEventsPass();
    EXPECT_EQ(alertTitle(), QString());
    unlock();
    waitUntilAlert(u"Import Error"_s);
    EXPECT_TRUE(alert().text.startsWith(u"Could not import the profile: "_s + path));
    answerAlert(u"Import Error"_s);
}

} // namespace quorvane
