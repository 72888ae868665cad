// The pages of maintenance and of the network: what is ticked, asked, carried out and told.

#include "fakes/QuickWindowOnMac.h"
#include "lock/LockManager.h"

#include <QCheckBox>
#include <QSignalSpy>
#include <QTest>

namespace quorvane {

namespace {

const QString kCaches = u"Clear System Caches"_s;
const QString kTrash = u"Clean User Trash"_s;
const QString kDownloads = u"Purge Downloads Folder"_s;
const QString kFlush = u"Flush DNS & DHCP Caches"_s;
const QString kReset = u"Reset Network Configuration"_s;
const QString kDisable = u"Disable All Network Interfaces"_s;
const QString kEnable = u"Restore Network Connectivity"_s;
const QString kRunMaintenance = u"Execute Maintenance"_s;
const QString kRunNetwork = u"Execute Network"_s;

ShownAlert purge(const QString& what) {
    return {u"Delete Permanently?"_s,
            u"Everything in "_s + what + u" will be deleted. This cannot be undone."_s,
            {u"Delete"_s, u"Cancel"_s},
            u"Cancel"_s};
}

ShownAlert toldBy(const QString& title, const QString& text) {
    return {title, text, {u"OK"_s}, u"OK"_s};
}

} // namespace

class ServicesByWindow : public QuickWindowOnMac {
protected:
    void SetUp() override {
        keepBaseline();
        enableLock();
        launch();
        unlock();
        processEventsUntil([this] { return isUnlocked(); });
        waitUntilScanned();
    }
    void waitUntilScanned() {
        processEventsUntil([this] { return session().turnstile.isIdle() && session().scans.isUpToDate(); });
    }
    bool isUnlocked() { return session().gate->isUnlocked(); }
    static void show(const QString& tab, const QString& button) {
        chooseTab(tab);
        waitUntilSeen(button);
    }
    static bool isTicked(const QString& name) {
        const auto* const box = qobject_cast<QCheckBox*>(control(name));
        return box != nullptr && box->isChecked();
    }
    static QStringList ticked(const QStringList& names) {
        QStringList found;
        for (const QString& name : names) {
            if (isTicked(name)) {
                found.append(name);
            }
        }
        return found;
    }
    static QStringList tickedOnMaintenance() { return ticked({kCaches, kTrash, kDownloads}); }
    static QStringList tickedOnNetwork() { return ticked({kFlush, kReset, kDisable, kEnable}); }
    void putIntoTrashAndDownloads() {
        shell(u"mkdir -p ~/.Trash ~/Downloads; touch ~/.Trash/old.wav ~/Downloads/demo.aif"_s);
    }
    QString filesLeft() { return shell(u"ls ~/.Trash ~/Downloads"_s); }
};

TEST_F(ServicesByWindow, maintenanceIsOffWithNothingTicked) {
    show(u"Maintenance"_s, kRunMaintenance);
    EXPECT_TRUE(isSeen(u"File Cleanup"_s));
    EXPECT_FALSE(isUsable(kRunMaintenance));
    click(kCaches);
    EXPECT_TRUE(isUsable(kRunMaintenance));
    control(kCaches)->setFocus();
    press(Qt::Key_Space);
    EXPECT_FALSE(isTicked(kCaches));
    EXPECT_FALSE(isUsable(kRunMaintenance));
}

TEST_F(ServicesByWindow, whatIsDeletedForGoodIsAskedForAndCancelIsOnReturn) {
    putIntoTrashAndDownloads();
    show(u"Maintenance"_s, kRunMaintenance);
    const QString before = filesLeft();
    const struct {
        QStringList boxes;
        QString what;
    } cases[] = {{{kTrash}, u"the Trash"_s},
                 {{kDownloads}, u"the Downloads folder"_s},
                 {{kTrash, kDownloads}, u"the Trash and the Downloads folder"_s}};
    for (const auto& [boxes, what] : cases) {
        for (const QString& box : boxes) {
            click(box);
        }
        click(kRunMaintenance);
        answerByKey(purge(what), Qt::Key_Return);
        waitUntilIdle();
        EXPECT_EQ(tickedOnMaintenance(), boxes) << "a cancelled question clears nothing";
        EXPECT_EQ(filesLeft(), before);
        for (const QString& box : boxes) {
            click(box);
        }
    }
    EXPECT_FALSE(log().contains(u"Cleanup Complete!"_s));
}

TEST_F(ServicesByWindow, aRunClearsTheBoxesBeforeItIsTold) {
    putIntoTrashAndDownloads();
    show(u"Maintenance"_s, kRunMaintenance);
    click(kTrash);
    click(kDownloads);
    click(kRunMaintenance);
    answerAlert(u"Delete Permanently?"_s, u"Delete"_s);
    waitUntilAlert(u"Success"_s);
    const auto boxes = mainWindow()->findChildren<QCheckBox*>();
    EXPECT_TRUE(std::none_of(boxes.begin(), boxes.end(),
                             [](const QCheckBox* box) { return box->isVisible() && box->isChecked(); }));
    answerByKey(toldBy(u"Success"_s, u"Trash emptied.\n\nDownloads folder purged."_s), Qt::Key_Return);
    waitUntilIdle();
    EXPECT_EQ(tickedOnMaintenance(), QStringList());
    EXPECT_FALSE(isUsable(kRunMaintenance));
    EXPECT_FALSE(filesLeft().contains(u"old.wav"_s));
    EXPECT_FALSE(filesLeft().contains(u"demo.aif"_s));
    press(Qt::Key_Tab);
    EXPECT_NE(focused(), QString()) << "the keys lead on";
}

TEST_F(ServicesByWindow, aRefusedPromptIsAnIssueAndTheOtherStepsRun) {
    putIntoTrashAndDownloads();
    host->mac().volume(macsim::Actor::Root).createFolders(u"/Library/Caches/com.example.browser"_s);
    show(u"Maintenance"_s, kRunMaintenance);
    click(kCaches);
    click(kTrash);
    click(kRunMaintenance);
    answerAlert(u"Delete Permanently?"_s, u"Delete"_s);
    cancelAuthorization();
    answerByKey(
        toldBy(u"Completed with Issues"_s, u"System cache cleanup failed or was cancelled.\n\nTrash emptied."_s),
        Qt::Key_Escape);
    waitUntilIdle();
    EXPECT_EQ(tickedOnMaintenance(), QStringList());
    EXPECT_FALSE(filesLeft().contains(u"old.wav"_s));
}

TEST_F(ServicesByWindow, aLockedProgramDoesNothingAndClearsNothing) {
    putIntoTrashAndDownloads();
    show(u"Maintenance"_s, kRunMaintenance);
    click(kTrash);
    click(kRunMaintenance);
    waitUntilAlert(u"Delete Permanently?"_s);
    resignActive();
    EXPECT_EQ(alertTitle(), QString()) << "the question is cancelled";
    waitUntilIdle();
    unlock();
    processEventsUntil([] { return isUsable(kRunMaintenance); });
    EXPECT_EQ(tickedOnMaintenance(), QStringList(kTrash));
    EXPECT_TRUE(filesLeft().contains(u"old.wav"_s));
}

TEST_F(ServicesByWindow, theLockInTheMiddleOfARunHidesItAndTheOutcomeWaits) {
    show(u"Network"_s, kRunNetwork);
    click(kFlush);
    click(kRunNetwork);
    waitForAuthorization();
    resignActive();
    EXPECT_TRUE(isSeen(u"Quorvane is Locked"_s));
    authorize();
    processEventsUntil([this] { return !session().system.isBusy(); });
    letEventsPass();
    EXPECT_EQ(alertTitle(), QString());
    unlock();
    answerByKey(toldBy(u"Success"_s, u"DNS and DHCP caches flushed successfully."_s), Qt::Key_Return);
    waitUntilScanned();
    EXPECT_EQ(tickedOnNetwork(), QStringList());
}

TEST_F(ServicesByWindow, theNetworkGoesOffAndOnAndTheMatchIsReadAnew) {
    show(u"Network"_s, kRunNetwork);
    EXPECT_TRUE(isSeen(u"Network Diagnostics"_s));
    EXPECT_TRUE(isSeen(u"Network Control"_s));
    const QSignalSpy scans(&session().system, &SystemManager::isVerifyingSystemChanged);
    click(kDisable);
    click(kRunNetwork);
    authorize();
    waitUntilAlert(u"Success"_s);
    EXPECT_TRUE(shell(u"networksetup -listallnetworkservices"_s).contains(u"*Wi-Fi"_s));
    answerByKey(toldBy(u"Success"_s, u"All network connections have been disabled."_s), Qt::Key_Return);
    waitUntilScanned();
    EXPECT_EQ(scans.size(), 2) << "one has begun and ended";
    click(kEnable);
    click(kReset);
    click(kFlush);
    click(kRunNetwork);
    authorize();
    answerByKey(toldBy(u"Success"_s, u"Network configuration has been reset to defaults.\n\n"
                                     "DNS and DHCP caches flushed successfully.\n\n"
                                     "All network connections have been re-enabled."_s),
                Qt::Key_Return);
    waitUntilScanned();
    EXPECT_FALSE(shell(u"networksetup -listallnetworkservices"_s).contains(u"*Wi-Fi"_s));
    EXPECT_EQ(tickedOnNetwork(), QStringList());
}

TEST_F(ServicesByWindow, aRefusedPromptOfTheNetworkChangesNothing) {
    show(u"Network"_s, kRunNetwork);
    click(kDisable);
    click(kRunNetwork);
    cancelAuthorization();
    answerByKey(toldBy(u"Partial Completion"_s, u"Failed to disable network. Check logs."_s), Qt::Key_Return);
    waitUntilScanned();
    EXPECT_FALSE(shell(u"networksetup -listallnetworkservices"_s).contains(u"*Wi-Fi"_s));
}

TEST_F(ServicesByWindow, withNothingTickedTheNetworkSaysSo) {
    show(u"Network"_s, kRunNetwork);
    click(kRunNetwork);
    answerByKey(toldBy(u"Success"_s, u"No network operations were performed."_s), Qt::Key_Return);
    waitUntilScanned();
}

class NoServicesByWindow : public ServicesByWindow {
protected:
    void SetUp() override {
        makeFail(R"([{"tool": "networksetup", "arguments": "-listallnetworkservices", "status": 0}])");
        ServicesByWindow::SetUp();
    }
};

TEST_F(NoServicesByWindow, nobodyIsAskedForAPasswordAndTheFailureIsTold) {
    show(u"Network"_s, kRunNetwork);
    click(kDisable);
    click(kRunNetwork);
    answerByKey(toldBy(u"Partial Completion"_s, u"Failed to disable network. Check logs."_s), Qt::Key_Return);
    waitUntilScanned();
}

TEST_F(ServicesByWindow, whatIsTickedStaysWhileAnotherTabIsShown) {
    show(u"Network"_s, kRunNetwork);
    click(kReset);
    chooseTab(u"Logs"_s);
    show(u"Network"_s, kRunNetwork);
    EXPECT_EQ(tickedOnNetwork(), QStringList(kReset));
}

} // namespace quorvane
