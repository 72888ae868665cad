#include "pictures/WindowPicture.h"

#include "actions/ActionTexts.h"
#include "actions/BaselineTexts.h"
#include "actions/PageTexts.h"
#include "actions/ServicePages.h"
#include "actions/Session.h"
#include "actions/SettingsTexts.h"
#include "actions/StartupTexts.h"
#include "actions/WindowTexts.h"
#include "core/OneLine.h"
#include "core/UserDefaultKeys.h"
#include "fakes/FlowRecords.h"
#include "fakes/HostileNames.h"
#include "flows/LastFlow.h"
#include "lock/LockTexts.h"
#include "platform/Clock.h"
#include "platform/FileManager.h"
#include "platform/FilePanels.h"
#include "platform/Machine.h"
#include "platform/UserDefaults.h"
#include "simulator/Updaters.h"
#include "snapshots/FirstBaseline.h"
#include "snapshots/HomeBaselines.h"

#include <QFileDialog>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <QTextBrowser>

#include <algorithm>

namespace quorvane {

namespace {

const QString kLiveSet = u"Live Set"_s;

UnifiedProfile profileNamed(const QString& name) {
    UnifiedProfile profile;
    profile.id = QUuid::createUuid();
    profile.name = name;
    profile.dateCreated = QDateTime(QDate(2026, 9, 12), QTime(18, 30), Qt::UTC);
    return profile;
}

/// What lines of the shell put in force.
UnifiedProfile smallLiveSet() {
    UnifiedProfile profile = profileNamed(kLiveSet);
    profile.settings.appNap = true;
    profile.settings.airdrop = true;
    profile.settings.siri = true;
    return profile;
}

const QString kAirDropOffByHand = u"defaults write com.apple.NetworkBrowser DisableAirDrop -bool true"_s;
const QString kSmallLiveSetByHand = u"defaults write -g NSAppSleepDisabled -bool true; "
                                    "defaults write com.apple.NetworkBrowser DisableAirDrop -bool true; "
                                    "defaults write com.apple.assistant.support 'Assistant Enabled' -bool false"_s;

const QByteArray kEveryListHangs =
    R"([{"tool": "launchctl", "hang": true}, {"tool": "osascript", "hang": true}, {"tool": "sfltool", "hang": true}])";
constexpr int kLongFileName = 240;
const QByteArray kEveryReadingHangs = R"([{"tool": "pmset", "hang": true}, {"tool": "defaults", "hang": true}])";

} // namespace

// ---- What several states begin with

void WindowPicture::launchWithProfiles() {
    keepBaseline();
    for (const QString& example : {u"live-set"_s, u"rehearsal"_s, u"studio-day"_s}) {
        saveProfile(example);
    }
    launchAndScan();
}

/// Each by itself would be compared with all those before it.
void WindowPicture::saveManyProfiles(int count) {
    const QString place = profilesDirectory(host->host().machine);
    const macsim::Volume volume = host->mac().volume(macsim::Actor::User);
    volume.createFolders(place);
    for (int number = 1; number <= count; ++number) {
        const QString name = u"Gig %1"_s.arg(number, 4, 10, QChar(u'0'));
        volume.write(place + u'/' + name + u".json"_s, encodeProfile(profileNamed(name)));
    }
}

void WindowPicture::launchInForce(const UnifiedProfile& liveSet) {
    keepBaseline();
    saveProfile(liveSet);
    saveProfile(u"rehearsal"_s);
    shell(kSmallLiveSetByHand);
    launchAndScan();
    processEventsUntil([] { return isSeen(u"Profile: Live Set"_s); });
}

void WindowPicture::launchLocked() {
    keepBaseline();
    saveProfile(u"live-set"_s);
    enableLock();
    launch();
    waitUntilSeen(kLockedTitle);
}

/// The program does so by itself when it becomes active, which it is already where another picture was taken before.
void WindowPicture::askForFinger() {
    if (isUsable(unlockWithBiometryText(BiometryType::TouchId))) {
        click(unlockWithBiometryText(BiometryType::TouchId));
    }
    waitUntilSeen(u"Another Finger"_s);
}

void WindowPicture::openReview(const QString& profile) {
    clickProfile(profile);
    waitUntilSeen(u"Review Profile: "_s + profile);
    processEventsUntil([] { return isUsable(u"Apply Profile"_s); });
}

void WindowPicture::applyReview() {
    press(Qt::Key_Return);
    authorize();
    answerAlert(u"Restart Required"_s);
}

void WindowPicture::startSnapshotThatHangs() {
    launchWithProfiles();
    makeFail(kEveryReadingHangs);
    click(createSnapshotRow().title);
    waitUntilSeen(u"Saving system snapshot…"_s);
}

void WindowPicture::showLogs() {
    showTab(u"Logs"_s);
}

void WindowPicture::openRuns() {
    const Host ports = host->host();
    const QString logs = ports.machine.homeFolder() + u"/Library/Logs/Quorvane/"_s;
    ports.files.createFolders(logs);
    const QByteArray text =
        "Ready.\n\n[PROFILE] Applying: Live Set\n  [APPLIED] App Nap bypassed for audio applications.\n"
        "  [ERROR] Time Machine may not be read.\n";
    for (const QString& name :
         {u"Quorvane 2026-03-12 18.00.59 (812).log"_s, u"Quorvane 2026-03-13 09.15.00 (4711).log"_s,
          u"Quorvane 2026-03-13 09.15.30 (4720).log"_s}) {
        ports.files.writeAtomically(logs + name, text);
    }
    showLogs();
    click(kShownRun + kThisRun);
    processEventsUntil([] { return QApplication::activePopupWidget() != nullptr; });
}

void WindowPicture::chooseOldestRun() {
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    const QString title = menu->actions().last()->text();
    menu->actions().last()->trigger();
    menu->close();
    processEventsUntil([this] { return session().tasks.count() == 0; });
    waitUntilSeen(kShownRun + title);
}

void WindowPicture::showLongLog() {
    keepBaseline();
    launchAndScan();
    SystemManager& system = session().system;
    for (int number = 1; number <= 60; ++number) {
        system.log(u"\n[PROFILE] Applying: Live Set %1"_s.arg(number));
        system.log(u"  [APPLIED] App Nap bypassed for audio applications."_s);
        system.log(u"  [ERROR] Time Machine may not be read."_s);
        system.log(u"  [INFO] Nothing else to do."_s);
    }
    showLogs();
}

/// @param place  from the top of the manual, 0, to its end, 1
void WindowPicture::showManual(double place) {
    keepBaseline();
    launchAndScan();
    click(kDocumentation);
    QTextBrowser* browser = nullptr;
    processEventsUntil([&browser] {
        const QWidget* const shown = QApplication::activeWindow();
        browser = shown != nullptr ? shown->findChild<QTextBrowser*>() : nullptr;
        return browser != nullptr && browser->toPlainText().contains(u"Copyright");
    });
    mainWindow()->showMinimized();
    const auto laidOut = [browser] { return browser->verticalScrollBar()->maximum(); };
    for (int before = -1; before != laidOut();) {
        before = laidOut();
        QTest::qWait(200);
    }
    browser->verticalScrollBar()->setValue(static_cast<int>(place * laidOut()));
}

void WindowPicture::showTab(const QString& name) {
    auto* const tabs = qobject_cast<QAbstractItemView*>(control(u"Sidebar"_s));
    const QModelIndex tab = tabs->model()->match(tabs->model()->index(0, 0), Qt::DisplayRole, name).value(0);
    QTest::mouseClick(tabs->viewport(), Qt::LeftButton, {}, tabs->visualRect(tab).center());
}

void WindowPicture::scrollDown() {
    for (const QScrollArea* const area : mainWindow()->findChildren<QScrollArea*>()) {
        if (area->isVisible()) {
            QScrollBar* const bar = area->verticalScrollBar();
            processEventsUntil([bar] { return bar->maximum() > 0; }); // it is laid out
            bar->triggerAction(QScrollBar::SliderToMaximum);
        }
    }
}

/// It may be further down, and is waited for while something else is under way.
void WindowPicture::pressRow(const QString& name) {
    QAbstractButton* pressed = nullptr;
    processEventsUntil([&] {
        const QList<QAbstractButton*> rows = mainWindow()->findChildren<QAbstractButton*>();
        const auto found = std::find_if(rows.begin(), rows.end(), [&name](const QAbstractButton* row) {
            return row->accessibleName() == name && row->isVisible() && row->isEnabled();
        });
        pressed = found != rows.end() ? *found : nullptr;
        return pressed != nullptr;
    });
    ASSERT_NE(pressed, nullptr) << name.toStdString();
    pressed->click();
}

void WindowPicture::signIn() {
    setState("cloud", {{"account", true}, {"container", true}});
}

void WindowPicture::registerAnew(const QString& label) {
    if (!macsim::applicationRegisters(host->mac(), label)) {
        throw std::runtime_error("nothing of that label is known");
    }
}

void WindowPicture::listNoLoginItem(const char* name) {
    host->mac().state().update("loginItems", [name](macsim::Json& items) {
        items.erase(std::remove_if(items.begin(), items.end(),
                                   [name](const macsim::Json& item) { return item["name"] == name; }),
                    items.end());
    });
}

void WindowPicture::setState(const char* subject, const macsim::Json& state) {
    host->mac().state().update(subject, [&state](macsim::Json& stored) { stored = state; });
}

void WindowPicture::launchSettings() {
    launchWithProfiles();
    showTab(u"Settings"_s);
    waitUntilSeen(kAppearanceTitle);
    waitUntilIdle();
}

/// What was captured unasked, archives of this Mac and of another one, and one that can't be read.
void WindowPicture::saveBaselines(int count) {
    const Host ports = host->host();
    const QString place = baselineFolderAtHome(ports.machine) + u'/';
    ports.files.createFolders(place);
    SystemSnapshot snapshot;
    snapshot.id = QUuid::createUuid();
    for (int number = 0; number <= count; ++number) {
        snapshot.dateCreated = QDateTime(QDate(2026, 3, 1 + number), QTime(20, 30), Qt::UTC);
        snapshot.label = number == 0 ? kBeforeQuorvane : u"Before gig %1"_s.arg(number);
        const MacIdentity mac = number == count ? MacIdentity{u"Booth"_s, u"9E4D02C7"_s} : identityOf(ports.machine);
        const MasterSystemBaseline baseline = masterBaselineOf(snapshot, mac, {});
        const QString name = number == 0 ? u"before-quorvane.json"_s : masterBaselineArchiveName(baseline);
        ports.files.writeAtomically(place + name, encodeMasterBaseline(baseline));
    }
    ports.files.writeAtomically(place + u"master-baseline-2026-02-28T20:30:00Z.json"_s, "{ cut o");
}

void WindowPicture::cutOff(RecordedFlow flow, const QString& name) {
    FlowRecord record = recordOfApply();
    record.flow = flow;
    record.name = name;
    const Host ports = host->host();
    const QString place = baselineFolderAtHome(ports.machine);
    ports.files.createFolders(place);
    ports.files.writeAtomically(place + u"/flow-under-way.jsonl"_s, journalOf(record, 1));
}

void WindowPicture::noteLastApply(const UnifiedProfile& profile, const QSet<QString>& held) {
    const Host ports = host->host();
    LastFlow last;
    last.name = profile.name;
    last.profile = profile;
    last.ended = ports.clock.now();
    last.since = last.ended.addDays(-2);
    last.held = held;
    LastFlowFile(ports.files, ports.machine).save(last);
}

void WindowPicture::openBaselines() {
    pressRow(chooseBaselineRow().title);
    waitUntilSeen(baselineChoiceTexts().title);
    processEventsUntil([] { return !isSeen(baselineChoiceTexts().loading); });
}

/// From the tweaks.
void WindowPicture::openSaveSheet() {
    click(u"Profile: Default"_s);
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(menu->actions().constLast()).center());
    waitUntilSeen(u"Include in profile:"_s);
    control(u"Profile name"_s)->setFocus();
}

void WindowPicture::goToWizardStep(int step) {
    click(u"Create Custom Profile"_s);
    waitUntilSeen(u"Configure System Tweaks"_s);
    if (step > 1) {
        click(u"Continue"_s);
        waitUntilSeen(u"Startup Items"_s);
    }
    if (step > 2) {
        click(u"Continue"_s);
        waitUntilSeen(u"Name Your Profile"_s);
        control(u"Profile name"_s)->setFocus();
    }
}

void WindowPicture::openTweaks() {
    pressRow(systemTweaksRow().title);
}

void WindowPicture::openStartup() {
    pressRow(startupOptimizationRow().title);
    processEventsUntil([this] { return !session().startupEditing.isRefreshing(); });
    QCoreApplication::processEvents();
}

void WindowPicture::searchStartup(const QString& text) {
    control(kSearchStartupItems)->setFocus();
    type(text);
    QCoreApplication::processEvents();
}

/// As if a profile were edited that was saved when more was on this Mac.
void WindowPicture::loadStartup(const QList<StartupItem>& items) {
    UnifiedProfile profile = profileNamed(kLiveSet);
    profile.startup.items = items;
    session().workingCopy.load(profile);
}

void WindowPicture::addLaunchAgents(int count) {
    const macsim::Volume volume = host->mac().volume(macsim::Actor::User);
    const QString place = host->host().machine.homeFolder() + u"/Library/LaunchAgents"_s;
    volume.createFolders(place);
    for (int number = 1; number <= count; ++number) {
        const QString label = u"com.example.helper%1"_s.arg(number, 4, 10, QChar(u'0'));
        volume.write(place + u'/' + label + u".plist"_s,
                     "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>Label</key><string>" + label.toUtf8() +
                         "</string></dict></plist>");
    }
}

void WindowPicture::chooseCommand(const QString& title) {
    for (QAction* const action : mainWindow()->findChildren<QAction*>()) {
        if (action->text() == title) {
            action->trigger();
        }
    }
}

void WindowPicture::popUpMenu() {
    const QPoint corner = mainWindow()->mapToGlobal(QPoint(mainWindow()->width() - 300, 0));
    statusItem.menu->popup(corner);
    processEventsUntil([this] { return statusItem.menu->isVisible(); });
}

// ---- The states

QList<PicturedState> WindowPicture::states() {
    return performanceStates() + startupStates() + pageStates() + serviceStates() + settingsStates() +
           settingsSheetStates() + reviewStates() + baselineStates() + lockStates() + alertStates() + dialogStates();
}

QList<PicturedState> WindowPicture::performanceStates() {
    return {
        {u"performance-empty"_s,
         [](WindowPicture& picture) {
             picture.keepBaseline();
             picture.launchAndScan();
         }},
        {u"performance-default"_s, [](WindowPicture& picture) { picture.launchWithProfiles(); }},
        {u"performance-no-match"_s,
         [](WindowPicture& picture) {
             picture.shell(kAirDropOffByHand);
             picture.launchWithProfiles();
         }},
        {u"performance-1000-profiles"_s,
         [](WindowPicture& picture) {
             picture.keepBaseline();
             picture.saveManyProfiles(1000);
             picture.launchAndScan();
         }},
        {u"performance-scanning"_s,
         [](WindowPicture& picture) {
             picture.keepBaseline();
             picture.saveProfile(u"live-set"_s);
             picture.makeFail(kEveryReadingHangs);
             picture.launch();
             processEventsUntil([&picture] { return picture.session().system.isVerifyingSystem(); });
         }},
        {u"performance-match"_s, [](WindowPicture& picture) { picture.launchInForce(smallLiveSet()); }},
        {u"performance-match-with-warning"_s,
         [](WindowPicture& picture) {
             UnifiedProfile profile = smallLiveSet();
             profile.settings.uiSounds = true;
             picture.host->host().defaults.setString(kQuorvaneLastAppliedProfileName, profile.name);
             picture.launchInForce(profile);
         }},
        {u"performance-match-kept"_s,
         [](WindowPicture& picture) {
             picture.host->host().defaults.setString(kQuorvaneLastAppliedProfileName, kLiveSet);
             picture.shell(kAirDropOffByHand);
             picture.launchWithProfiles();
         }},
        {u"performance-snapshot"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             click(createSnapshotRow().title);
             answerAlert(u"Snapshot Saved"_s);
         }},
        {u"performance-unreadable"_s,
         [](WindowPicture& picture) {
             picture.saveProfile(u"festival"_s);
             const Host ports = picture.host->host();
             const QString file = profilesDirectory(ports.machine) + u"/Summer Tour 2024.json"_s;
             ports.files.writeAtomically(file, "{\"id\": 3");
             picture.launchWithProfiles();
         }},
        {u"performance-hostile-names"_s,
         [](WindowPicture& picture) {
             for (const QString& name : hostileNames()) {
                 picture.saveProfile(profileNamed(name.left(kLongFileName)));
             }
             picture.launchWithProfiles();
         }},
        {u"performance-keyboard-focus"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             for (int step = 0; step < 5; ++step) {
                 press(Qt::Key_Tab);
             }
         }},
        {u"window-large"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             mainWindow()->resize(1400, 1000);
         }},
    };
}

QList<PicturedState> WindowPicture::startupStates() {
    return {
        {u"startup-loading"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             picture.session().system.invalidateStartupCaches();
             picture.makeFail(kEveryListHangs);
             pressRow(startupOptimizationRow().title);
             QCoreApplication::processEvents();
         },
         u"dj-laptop"_s},
        {u"startup-full"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             picture.openStartup();
         },
         u"dj-laptop"_s},
        {u"startup-added-and-absent"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             picture.openStartup();
             StartupItem gone;
             gone.id = launchItemId(u"com.gone.helper.plist"_s);
             gone.name = u"Gone Helper"_s;
             gone.kind = StartupItemKind::launchAgent;
             gone.launchIdentifier = u"com.gone.helper.plist"_s;
             gone.runsAtStartup = false;
             picture.loadStartup({gone});
             picture.session().workingCopy.addLaunchItem(
                 {u"Gone Recorder"_s, u"/Applications/Gone Recorder.app"_s, true});
             searchStartup(u"gone"_s);
         },
         u"dj-laptop"_s},
        {u"startup-sections"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             picture.openStartup();
             picture.session().workingCopy.setCloudSyncDisabled(CloudSyncService::dropbox, true);
             picture.session().workingCopy.setCloudSyncDisabled(CloudSyncService::mega, true);
             control(kStartupItemsTitle)->setFocus();
             press(Qt::Key_End);
         },
         u"dj-laptop"_s},
        {u"startup-searched"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             picture.openStartup();
             searchStartup(u"helper"_s);
         },
         u"dj-laptop"_s},
        {u"startup-nothing-found"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             picture.openStartup();
             searchStartup(u"nobody has this"_s);
         },
         u"dj-laptop"_s},
        {u"startup-unread"_s,
         [](WindowPicture& picture) {
             picture.startHost(R"([{"tool": "osascript", "status": 1, "error": "not allowed"}])");
             picture.launchWithProfiles();
             picture.openStartup();
         },
         u"dj-laptop"_s},
        {u"startup-5000"_s,
         [](WindowPicture& picture) {
             picture.addLaunchAgents(5000);
             picture.launchWithProfiles();
             picture.openStartup();
         },
         u"dj-laptop"_s},
        {u"startup-protected"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             picture.openStartup();
             auto* const list = qobject_cast<QAbstractItemView*>(control(kStartupItemsTitle));
             const QModelIndex first = list->model()->index(0, 0);
             list->setFocus();
             list->setCurrentIndex(list->model()->match(first, Qt::DisplayRole, u"Traktor Helper"_s).value(0));
             press(Qt::Key_Space);
             waitUntilAlert(u"Protected Item"_s);
         },
         u"dj-laptop"_s},
    };
}

QList<PicturedState> WindowPicture::pageStates() {
    return {
        {u"tweaks-off"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             openTweaks();
         }},
        {u"tweaks-on"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             openTweaks();
             click(u"Bypass macOS App Nap Throttling"_s);
             click(u"Suspend Spotlight Drive Indexing"_s);
             click(u"Disable Time Machine Auto-Backups"_s);
         }},
        {u"tweaks-icon-picker"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             openTweaks();
             click(u"Icon of Bypass macOS App Nap Throttling"_s);
         }},
        {u"save-sheet"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             openTweaks();
             openSaveSheet();
             type(u"Festival"_s);
         }},
        {u"save-sheet-taken"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             openTweaks();
             openSaveSheet();
             type(u"default"_s);
         }},
        {u"selector-menu"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             openTweaks();
             click(u"Profile: Default"_s);
         }},
        {u"wizard-tweaks"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             goToWizardStep(1);
         }},
        {u"wizard-startup"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             goToWizardStep(2);
         }},
        {u"wizard-save"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             goToWizardStep(3);
             type(u"Main Stage"_s);
         }},
        {u"logs"_s,
         [](WindowPicture& picture) {
             picture.keepBaseline();
             picture.launch();
             showLogs();
         }},
        {u"logs-full"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             picture.openReview(kLiveSet);
             picture.applyReview();
             press(Qt::Key_Return);
             picture.waitUntilIdle();
             showLogs();
         }},
        {u"logs-search"_s,
         [](WindowPicture& picture) {
             picture.showLongLog();
             click(kSearchLogLabel);
             type(u"audio"_s);
         }},
        {u"logs-not-found"_s,
         [](WindowPicture& picture) {
             picture.showLongLog();
             click(kSearchLogLabel);
             type(u"cowbell"_s);
             waitUntilSeen(kNoMatch);
         }},
        {u"logs-scrolled-up"_s,
         [](WindowPicture& picture) {
             picture.showLongLog();
             click(u"Log"_s);
             press(Qt::Key_Home);
             waitUntilSeen(u"Verbose Debug Logging"_s);
         }},
        {u"logs-tags"_s,
         [](WindowPicture& picture) {
             picture.showLongLog();
             click(kShownMessages + kAllMessages);
             processEventsUntil([] { return QApplication::activePopupWidget() != nullptr; });
         }},
        {u"logs-runs"_s,
         [](WindowPicture& picture) {
             picture.showLongLog();
             picture.openRuns();
         }},
        {u"logs-earlier-run"_s,
         [](WindowPicture& picture) {
             picture.showLongLog();
             picture.openRuns();
             picture.chooseOldestRun();
         }},
        {u"logs-run-is-gone"_s,
         [](WindowPicture& picture) {
             picture.showLongLog();
             picture.openRuns();
             const Host ports = picture.host->host();
             ports.files.remove(ports.machine.homeFolder() +
                                u"/Library/Logs/Quorvane/Quorvane 2026-03-12 18.00.59 (812).log"_s);
             picture.chooseOldestRun();
         }},
        {u"export-panel"_s,
         [](WindowPicture& picture) {
             picture.showLongLog();
             click(kExportLog);
             processEventsUntil(
                 [] { return qobject_cast<QFileDialog*>(QApplication::activeModalWidget()) != nullptr; });
         }},
        {u"application-panel"_s,
         [](WindowPicture& picture) {
             picture.keepBaseline();
             picture.launchAndScan();
             picture.shell(u"mkdir -p /Applications/Live.app/Contents '/Applications/rekordbox.app/Contents'"_s);
             picture.host->host().filePanels.open(u"Add Application"_s, FileKind::Application);
             processEventsUntil([] { return QApplication::activeModalWidget() != nullptr; });
         }},
        {u"documentation"_s, [](WindowPicture& picture) { picture.showManual(0); }},
        {u"documentation-tables"_s, [](WindowPicture& picture) { picture.showManual(0.3); }},
        {u"documentation-end"_s, [](WindowPicture& picture) { picture.showManual(1); }},
        {u"waiting"_s, [](WindowPicture& picture) { picture.startSnapshotThatHangs(); }},
        {u"waiting-long"_s,
         [](WindowPicture& picture) {
             picture.startSnapshotThatHangs();
             const QString line = picture.session().system.logMessages().last().trimmed();
             waitUntilSeen(nameOnOneLine(line));
         }},
    };
}

QList<PicturedState> WindowPicture::serviceStates() {
    return {
        {u"maintenance"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             showTab(u"Maintenance"_s);
         }},
        {u"maintenance-ticked"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             showTab(u"Maintenance"_s);
             click(u"Clear System Caches"_s);
             click(u"Clean User Trash"_s);
         }},
        {u"maintenance-question"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             showTab(u"Maintenance"_s);
             click(u"Clean User Trash"_s);
             click(u"Purge Downloads Folder"_s);
             click(kExecuteMaintenance);
             waitUntilAlert(u"Delete Permanently?"_s);
         }},
        {u"maintenance-done"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             showTab(u"Maintenance"_s);
             click(u"Clean User Trash"_s);
             click(kExecuteMaintenance);
             answerAlert(u"Delete Permanently?"_s, u"Delete"_s);
             waitUntilAlert(u"Success"_s);
         }},
        {u"network"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             showTab(u"Network"_s);
             click(u"Flush DNS & DHCP Caches"_s);
         }},
    };
}

QList<PicturedState> WindowPicture::settingsStates() {
    return {
        {u"settings"_s, [](WindowPicture& picture) { picture.launchSettings(); }},
        {u"settings-end"_s,
         [](WindowPicture& picture) {
             picture.launchSettings();
             scrollDown();
         }},
        {u"settings-locked"_s,
         [](WindowPicture& picture) {
             picture.signIn();
             picture.enableLock();
             picture.saveProfile(u"live-set"_s);
             picture.keepBaseline();
             picture.launch();
             unlock();
             processEventsUntil([] { return isUsable(u"Sidebar"_s); });
             showTab(u"Settings"_s);
             waitUntilSeen(u"App lock is active"_s);
         }},
        {u"settings-end-notes"_s,
         [](WindowPicture& picture) {
             picture.signIn();
             picture.setState("loginService", {{"needsApproval", true}});
             picture.setState("permissions", {{"fullDiskAccess", false}});
             picture.launchSettings();
             pressRow(u"Launch at Login"_s);
             pressRow(backUpRow().title);
             answerAlert(u"Backup Complete"_s);
             picture.waitUntilIdle();
             scrollDown();
         }},
        {u"settings-animated-asked"_s,
         [](WindowPicture& picture) {
             picture.setState("displays", {{{"number", 1},
                                            {"localizedName", "Built-in Display"},
                                            {"frame", {0, 0, 1512, 982}},
                                            {"animation", "Sonoma Horizon"}}});
             picture.launchSettings();
             pressRow(wallpaperRow().title);
             waitUntilAlert(u"Show the Label?"_s);
         }},
        {u"settings-full-disk-access"_s,
         [](WindowPicture& picture) {
             picture.launchSettings();
             pressRow(openSystemSettingsRow().title);
             waitUntilAlert(u"Full Disk Access Required"_s);
         }},
    };
}

QList<PicturedState> WindowPicture::settingsSheetStates() {
    return {
        {u"password-set"_s,
         [](WindowPicture& picture) {
             picture.launchSettings();
             pressRow(setPasswordRow().title);
             waitUntilSeen(u"Confirm Password"_s);
             type(u"gig"_s);
             press(Qt::Key_Tab);
             type(u"gig"_s);
             press(Qt::Key_Return);
             waitUntilSeen(u"Password must be at least 4 characters."_s);
         }},
        {u"password-change"_s,
         [](WindowPicture& picture) {
             picture.keepBaseline();
             picture.enableLock();
             picture.launch();
             askForFinger();
             answerFinger(u"Enrolled Finger"_s);
             processEventsUntil([] { return isUsable(u"Sidebar"_s); });
             showTab(u"Settings"_s);
             pressRow(changePasswordRow().title);
             waitUntilSeen(u"Save Password"_s);
         },
         u"studio-desktop"_s},
        {u"password-remove"_s,
         [](WindowPicture& picture) {
             picture.launchLocked();
             unlock();
             processEventsUntil([] { return isUsable(u"Sidebar"_s); });
             showTab(u"Settings"_s);
             pressRow(removeLockRow().title);
             waitUntilSeen(u"Remove Lock"_s);
         }},
        {u"restore"_s,
         [](WindowPicture& picture) {
             picture.signIn();
             picture.launchSettings();
             pressRow(backUpRow().title);
             answerAlert(u"Backup Complete"_s);
             picture.waitUntilIdle();
             pressRow(restoreRow().title);
             waitUntilSeen(kRestoreTitle);
             processEventsUntil([] { return !isSeen(kLoadingBackups); });
         }},
        {u"baselines-empty"_s,
         [](WindowPicture& picture) {
             picture.launchSettings();
             openBaselines();
         }},
        {u"baselines"_s,
         [](WindowPicture& picture) {
             picture.saveBaselines(3);
             picture.launchSettings();
             openBaselines();
         }},
        {u"baselines-many"_s,
         [](WindowPicture& picture) {
             picture.saveBaselines(12);
             picture.launchSettings();
             openBaselines();
         }},
        {u"baselines-chosen"_s,
         [](WindowPicture& picture) {
             picture.saveBaselines(3);
             picture.launchSettings();
             openBaselines();
             click(u"Use: Before Quorvane"_s);
             processEventsUntil([] { return isUsable(u"Use: The Latest"_s); });
         }},
        {u"baselines-of-another-mac"_s,
         [](WindowPicture& picture) {
             picture.saveBaselines(3);
             picture.launchSettings();
             openBaselines();
             click(u"Use: Before gig 3"_s);
             waitUntilAlert(u"Use Another Mac’s Settings?"_s);
         }},
        {u"baselines-busy"_s,
         [](WindowPicture& picture) {
             picture.saveBaselines(3);
             picture.launchSettings();
             picture.makeFail(kEveryReadingHangs);
             pressRow(chooseBaselineRow().title);
             waitUntilSeen(baselineChoiceTexts().loading);
         }},
        {u"changed-since"_s,
         [](WindowPicture& picture) {
             picture.noteLastApply(exampleProfile(u"live-set"_s), {u"App Nap"_s, u"Siri"_s, u"Spotlight"_s});
             picture.launchWithProfiles();
         }},
        {u"changed-since-shown"_s,
         [](WindowPicture& picture) {
             picture.noteLastApply(exampleProfile(u"live-set"_s), {u"App Nap"_s, u"Siri"_s, u"Spotlight"_s});
             picture.launchWithProfiles();
             click(u"Show"_s);
             waitUntilAlert(u"3 settings have changed since “Live Set” was applied"_s);
         }},
        {u"changed-since-review"_s,
         [](WindowPicture& picture) {
             picture.noteLastApply(exampleProfile(u"live-set"_s), {u"App Nap"_s, u"Siri"_s, u"Spotlight"_s});
             picture.launchWithProfiles();
             picture.openReview(kLiveSet);
         }},
        {u"in-force-for-days"_s,
         [](WindowPicture& picture) {
             picture.noteLastApply(smallLiveSet(), {});
             picture.launchInForce(smallLiveSet());
         }},
        {u"apply-without-a-way-back"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             picture.openReview(kLiveSet);
             picture.makeFail(R"([{"tool": "defaults", "arguments": "read NSGlobalDomain", "signal": 9}])");
             press(Qt::Key_Return);
             waitUntilAlert(u"Apply Without a Way Back?"_s);
         }},
        {u"restore-unavailable"_s,
         [](WindowPicture& picture) {
             picture.launchSettings();
             pressRow(restoreRow().title);
             waitUntilSeen(kRestoreTitle);
         }},
        {u"restore-empty"_s,
         [](WindowPicture& picture) {
             picture.setState("cloud", {{"account", true}, {"container", true}, {"writesFail", "no room"}});
             picture.launchSettings();
             pressRow(restoreRow().title);
             waitUntilSeen(kNoBackups);
         }},
    };
}

QList<PicturedState> WindowPicture::reviewStates() {
    return {
        {u"review-loading"_s,
         [](WindowPicture& picture) {
             picture.keepBaseline();
             picture.saveProfile(u"festival"_s);
             picture.makeFail(kEveryListHangs);
             picture.launch();
             clickProfile(u"Festival"_s);
             waitUntilSeen(kPreparingReview);
         },
         u"dj-laptop"_s},
        {u"review-profile"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             picture.openReview(kLiveSet);
         }},
        {u"review-startup"_s,
         [](WindowPicture& picture) {
             picture.saveProfile(u"festival"_s);
             picture.launchWithProfiles();
             picture.openReview(exampleProfile(u"festival"_s).name);
         },
         u"dj-laptop"_s},
        {u"review-unread"_s,
         [](WindowPicture& picture) {
             picture.setState("permissions", {{"automationQuestion", "deny"}});
             picture.saveProfile(u"festival"_s);
             picture.launchWithProfiles();
             picture.openReview(exampleProfile(u"festival"_s).name);
         },
         u"dj-laptop"_s},
        {u"review-on-again"_s,
         [](WindowPicture& picture) {
             const QString festival = exampleProfile(u"festival"_s).name;
             picture.saveProfile(u"festival"_s);
             picture.listNoLoginItem("Dropbox"); // it opens by its own registration then
             picture.launchWithProfiles();
             picture.openReview(festival);
             press(Qt::Key_Return);
             authorize(u"downbeat"_s);
             answerAlert(u"Restart Required"_s);
             waitUntilSeen(u"Some changes could not be verified"_s);
             press(Qt::Key_Return);
             picture.waitUntilIdle();
             picture.registerAnew(u"com.splice.Splice.LoginHelper"_s);
             picture.openReview(festival);
             scrollDown();
         },
         u"dj-laptop"_s},
        {u"review-tweaks"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             openTweaks();
             click(u"Bypass macOS App Nap Throttling"_s);
             click(u"Suspend Spotlight Drive Indexing"_s);
             click(kExecuteTweaks);
             waitUntilSeen(u"Review Performance Tweaks"_s);
             processEventsUntil([] { return isUsable(u"Apply Changes"_s); });
         }},
        {u"review-nothing-to-do"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             openTweaks();
             click(kExecuteTweaks);
             waitUntilSeen(u"No performance tweaks are selected."_s);
         }},
        {u"review-applying"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             picture.openReview(kLiveSet);
             picture.makeFail(kEveryReadingHangs);
             press(Qt::Key_Return);
             waitUntilSeen(u"Applying profile…"_s);
         }},
        {u"review-verified"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             picture.openReview(kLiveSet);
             picture.applyReview();
             waitUntilSeen(u"All changes verified"_s);
         }},
        {u"review-failures"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             picture.openReview(kLiveSet);
             press(Qt::Key_Return);
             cancelAuthorization();
             waitUntilSeen(u"Some changes could not be verified"_s);
         }},
    };
}

QList<PicturedState> WindowPicture::baselineStates() {
    return {
        {u"baseline-offered"_s,
         [](WindowPicture& picture) {
             picture.launch();
             waitUntilSeen(kNotNow);
         }},
        {u"baseline-saving"_s,
         [](WindowPicture& picture) {
             picture.launch();
             waitUntilSeen(kNotNow);
             picture.makeFail(kEveryReadingHangs);
             click(kCreateMasterBaseline);
             waitUntilSeen(kBaselinePromptSaving);
         }},
        {u"baseline-failed"_s,
         [](WindowPicture& picture) {
             const Host ports = picture.host->host();
             ports.files.writeAtomically(ports.machine.homeFolder() + u"/.quorvane"_s, "no folder");
             picture.launch();
             waitUntilSeen(kNotNow);
             click(kCreateMasterBaseline);
             waitUntilSeen(kBaselinePromptFailed);
         }},
    };
}

QList<PicturedState> WindowPicture::lockStates() {
    return {
        {u"lock"_s, [](WindowPicture& picture) { picture.launchLocked(); }},
        {u"lock-error"_s,
         [](WindowPicture& picture) {
             picture.launchLocked();
             type(u"wrong"_s);
             press(Qt::Key_Return);
             waitUntilSeen(kIncorrectPassword);
         }},
        {u"lock-finger-asked"_s,
         [](WindowPicture& picture) {
             picture.launchLocked();
             askForFinger();
         },
         u"studio-desktop"_s},
        {u"lock-finger-refused"_s,
         [](WindowPicture& picture) {
             picture.launchLocked();
             askForFinger();
             click(u"Another Finger"_s);
             activateWhatIsInFront();
         },
         u"studio-desktop"_s},
    };
}

QList<PicturedState> WindowPicture::alertStates() {
    return {
        {u"alert-question"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             press(Qt::Key_Z, Qt::ControlModifier);
             waitUntilAlert(u"Undo Performance Tweaks?"_s);
         }},
        {u"alert-destructive-question"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             click(reinstateRow().title);
             waitUntilAlert(u"Reinstate System"_s);
         }},
        {u"alert-warning-question"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             clickProfile(u"Default"_s);
             waitUntilAlert(u"Apply Default Profile?"_s);
         }},
        {u"alert-delete"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             picture.profileList()->setFocus();
             press(Qt::Key_Delete);
             waitUntilAlert(u"Delete Profile?"_s);
         }},
        {u"alert-success"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             click(createSnapshotRow().title);
             waitUntilAlert(u"Snapshot Saved"_s);
         }},
        {u"alert-warning"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             clickProfile(u"Default"_s);
             answerAlert(u"Apply Default Profile?"_s, u"Apply"_s);
             cancelAuthorization();
             waitUntilAlert(u"Cancelled"_s);
         }},
        {u"alert-quit"_s,
         [](WindowPicture& picture) {
             picture.startSnapshotThatHangs();
             press(Qt::Key_Q, Qt::ControlModifier);
             waitUntilAlert(u"Quit Quorvane?"_s);
         }},
        {u"alert-interrupted"_s,
         [](WindowPicture& picture) {
             picture.cutOff(RecordedFlow::Profile, kLiveSet);
             picture.saveProfile(u"live-set"_s);
             picture.launch();
             waitUntilAlert(u"An Apply Was Interrupted"_s);
         }},
        {u"alert-interrupted-way-back"_s,
         [](WindowPicture& picture) {
             picture.cutOff(RecordedFlow::Reinstate, u"Reinstate System"_s);
             picture.launch();
             waitUntilAlert(u"A Way Back Was Interrupted"_s);
         }},
        {u"alert-exceptions"_s,
         [](WindowPicture& picture) {
             picture.shell(kAirDropOffByHand);
             picture.launchWithProfiles();
             picture.makeFail(R"([{"tool": "defaults", "arguments": "write com.apple.NetworkBrowser", "status": 1}])");
             click(reinstateRow().title);
             answerAlert(u"Reinstate System"_s, u"Reinstate"_s);
             authorize();
             waitUntilAlert(u"Restored, With Exceptions"_s);
         }},
        {u"alert-locked"_s,
         [](WindowPicture& picture) {
             picture.launchLocked();
             picture.chooseInMenu(kLiveSet);
             waitUntilAlert(kLockedTitle);
         }},
        {u"about"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             chooseCommand(u"About Quorvane"_s);
             waitUntilAlert(u"Quorvane"_s);
         }},
    };
}

QList<PicturedState> WindowPicture::dialogStates() {
    return {
        {u"authorization"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             picture.openReview(kLiveSet);
             press(Qt::Key_Return);
             waitUntilSeen(u"Password"_s);
         }},
        {u"authorization-refused"_s,
         [](WindowPicture& picture) {
             picture.launchWithProfiles();
             picture.openReview(kLiveSet);
             press(Qt::Key_Return);
             authorize(u"wrong"_s);
             waitUntilSeen(u"That isn’t the password. Try again."_s);
         }},
        {u"menu"_s,
         [](WindowPicture& picture) {
             picture.launchInForce(smallLiveSet());
             picture.popUpMenu();
         }},
        {u"menu-empty"_s,
         [](WindowPicture& picture) {
             picture.keepBaseline();
             picture.launchAndScan();
             picture.popUpMenu();
         }},
    };
}

} // namespace quorvane
