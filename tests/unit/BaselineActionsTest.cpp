// What there is to go back to, as Settings lists it, and the choice among it: read afresh, written, and read back.

#include "actions/BaselineActions.h"

#include "actions/BaselineTexts.h"
#include "fakes/ActionSystem.h"
#include "fakes/ReadingLines.h"
#include "snapshots/ChosenBaseline.h"
#include "snapshots/FirstBaseline.h"
#include "snapshots/HomeBaselines.h"

namespace quorvane {

namespace {

const QString kHome = u"/Users/alex/.quorvane/"_s;
const QString kChosen = kHome + u"chosen-baseline.json"_s;
const QString kContainerFolder = u"/Users/alex/Library/Mobile Documents/7KX2MR04TD~com~quorvane~app"_s;
const QString kCloudFolder = kContainerFolder + u"/Documents/Quorvane/SystemBaselines/"_s;
const QString kSnapshot = u"/Users/alex/Library/Application Support/Quorvane/system_snapshot.json"_s;
const QString kGoneText = u"This restore baseline is gone, or can’t be read any more."_s;
const QString kAnotherMac = u"9E4D02C7-16BB-5A8F-A3F0-2C7D5E814B66"_s;

SystemSnapshot captured(int day, const QString& title) {
    SystemSnapshot snapshot;
    snapshot.id = QUuid::createUuidV5(QUuid(), title);
    snapshot.dateCreated = QDateTime(QDate(2026, 1, day), QTime(12, 0), Qt::UTC);
    snapshot.label = title;
    return snapshot;
}

class BaselineActionsTest : public ActionSystem {
protected:
    QString add(const QString& folder, const SystemSnapshot& snapshot, const MacIdentity& mac) {
        const MasterSystemBaseline baseline = masterBaselineOf(snapshot, mac, {});
        const QString name = masterBaselineArchiveName(baseline);
        files.addFile(folder + name, encodeMasterBaseline(baseline));
        return name;
    }
    QString addOwn(int day, const QString& title) { return add(kHome, captured(day, title), identityOf(machine)); }
    void addFirst(int day, const QString& title) {
        files.addFile(kHome + u"before-quorvane.json"_s,
                      encodeMasterBaseline(masterBaselineOf(captured(day, title), identityOf(machine), {})));
    }
    void signIn() {
        cloud.account = true;
        cloud.container = kContainerFolder;
    }
    QList<ChoosableRow> listed() {
        EXPECT_TRUE(ending(session->baselineActions.list(*listener)).succeeded);
        return session->baselineActions.rows();
    }
    static QStringList titles(const QList<ChoosableRow>& rows) {
        QStringList titles;
        for (const ChoosableRow& row : rows) {
            titles.append(row.text.title + (row.mark.isEmpty() ? QString() : u" ("_s + row.mark + u')'));
        }
        return titles;
    }
    ChoosableRow row(const QString& title) {
        const QList<ChoosableRow> rows = listed();
        for (const ChoosableRow& each : rows) {
            if (each.text.title == title) {
                return each;
            }
        }
        ADD_FAILURE() << title.toStdString();
        return {};
    }
    bool use(const QString& title) {
        const QString id = row(title).id;
        steps.clear();
        return ending(session->baselineActions.use(id, *listener)).succeeded;
    }
    std::optional<RestoreBaseline> used() { return QCoro::waitFor(session->system.findRestoreBaseline()).baseline; }
    std::shared_ptr<RowChoice> openSheet(std::optional<QCoro::Task<ActionOutcome>>& action) {
        action.emplace(session->baselineActions.choose(*listener));
        auto choice = std::dynamic_pointer_cast<RowChoice>(listener->sheet);
        processEventsUntil([&choice] { return !choice->isLoading(); });
        return choice;
    }
};

} // namespace

// ---- The list

TEST_F(BaselineActionsTest, whereNothingWasSavedThereIsOnlyTheLatest) {
    EXPECT_EQ(titles(listed()), QStringList(u"The Latest (Used)"_s));
    EXPECT_EQ(session->baselineActions.rows().first().text.subtitle, u"Nothing was saved on this Mac yet."_s);
}

TEST_F(BaselineActionsTest, everythingIsListedWithItsDateItsMacAndItsLabel) {
    SnapshotManager(files, machine).save(captured(5, u"Tour"_s));
    addFirst(1, kBeforeQuorvane);
    addOwn(2, u"Two"_s);
    add(kHome, captured(3, u"Three"_s), {u"Booth"_s, kAnotherMac});
    signIn();
    add(kCloudFolder, captured(2, u"Two"_s), identityOf(machine));
    add(kCloudFolder, captured(4, u"Four"_s), {u"Booth"_s, kAnotherMac});
    EXPECT_EQ(titles(listed()),
              (QStringList{u"The Latest (Used)"_s, u"Tour"_s, u"Before Quorvane"_s, u"Four"_s, u"Three"_s, u"Two"_s}));
    const auto day = [this](int number) {
        return machine.dateAndTimeText(QDateTime(QDate(2026, 1, number), QTime(12, 0), Qt::UTC));
    };
    const QList<ChoosableRow>& rows = session->baselineActions.rows();
    EXPECT_EQ(rows.at(0).text.subtitle, u"Tour, "_s + day(5));
    EXPECT_EQ(rows.at(1).text.subtitle, u"Snapshot, "_s + day(5) + u", this Mac"_s);
    EXPECT_EQ(rows.at(2).text.subtitle, u"Saved by Quorvane, "_s + day(1) + u", this Mac"_s);
    EXPECT_EQ(rows.at(3).text.subtitle, u"Protected baseline, "_s + day(4) + u", saved on Booth, in iCloud"_s);
    EXPECT_EQ(rows.at(4).text.subtitle, u"Protected baseline, "_s + day(3) + u", saved on Booth"_s);
    EXPECT_EQ(rows.at(5).text.subtitle,
              u"Protected baseline, "_s + day(2) + u", this Mac, in iCloud and ~/.quorvane"_s);
    for (const ChoosableRow& each : rows) {
        EXPECT_EQ(each.canBeChosen, each.mark.isEmpty()) << each.text.title.toStdString();
    }
}

TEST_F(BaselineActionsTest, whatCantBeReadIsListedAsThat) {
    files.addFile(kSnapshot, "{ cut o");
    files.addFile(kHome + u"before-quorvane.json"_s, "[]");
    files.addFile(kHome + u"master-baseline-2026-01-02T12:00:00Z.json"_s, "");
    files.addFile(kHome + u"launchd-overrides.json"_s, "[]");
    const QList<ChoosableRow> rows = listed();
    EXPECT_EQ(titles(rows), (QStringList{u"The Latest (Used)"_s, u"system_snapshot.json"_s, u"before-quorvane.json"_s,
                                         u"master-baseline-2026-01-02T12:00:00Z.json"_s}));
    for (const ChoosableRow& each : rows.mid(1)) {
        EXPECT_EQ(each.note, u"Can’t be read."_s);
        EXPECT_FALSE(each.canBeChosen);
    }
}

TEST_F(BaselineActionsTest, theCurrentFileIsListedOnlyWhereItsArchiveIsGone) {
    const QString archive = addOwn(2, u"Two"_s);
    const QByteArray bytes = files.read(kHome + archive);
    files.addFile(kHome + u"master-baseline-current.json"_s, bytes);
    EXPECT_EQ(titles(listed()), (QStringList{u"The Latest (Used)"_s, u"Two"_s}));
    EXPECT_EQ(session->baselineActions.rows().last().id, u"home/"_s + archive);
    files.remove(kHome + archive);
    EXPECT_EQ(titles(listed()), (QStringList{u"The Latest (Used)"_s, u"Two"_s}));
    EXPECT_EQ(session->baselineActions.rows().last().id, u"home/master-baseline-current.json"_s);
}

TEST_F(BaselineActionsTest, whatDiffersFromNowIsNamed) {
    SystemSnapshot snapshot = captured(5, u"Tour"_s);
    snapshot.crashReporterDialogType = u"none"_s;
    snapshot.pmsetSleep = u"5"_s;
    SnapshotManager(files, machine).save(snapshot);
    commands.print(reading::kPower, "AC Power:\n sleep 5\n");
    EXPECT_EQ(row(u"Tour"_s).note, u"Differs from now: Crash Reporter"_s);
    commands.print(reading::kPower, "AC Power:\n sleep 0\n");
    commands.print(reading::kCrashReporter, "none\n");
    EXPECT_EQ(row(u"Tour"_s).note, u"Differs from now: USB Power"_s);
    commands.print(reading::kPower, "AC Power:\n sleep 5\n");
    EXPECT_EQ(row(u"Tour"_s).note, u"No setting differs from now."_s);
    commands.answer(reading::kCrashReporter, ScriptedCommandLauncher::unanswered().first());
    EXPECT_EQ(row(u"Tour"_s).note, u"No setting differs from now."_s) << "what nobody answered differs in nothing";
}

// ---- The choice

TEST_F(BaselineActionsTest, aChosenOneIsUsedAndTheLatestTakesThatBack) {
    SnapshotManager(files, machine).save(captured(5, u"Tour"_s));
    addFirst(1, kBeforeQuorvane);
    EXPECT_TRUE(use(u"Before Quorvane"_s));
    EXPECT_EQ(takeSteps(), (QStringList{u"log: [BASELINE] Chosen to go back to: \"Before Quorvane\" of "_s +
                                            machine.dateAndTimeText(captured(1, {}).dateCreated) + u", saved on "_s +
                                            machine.computerName() + u'.',
                                        u"anew: snapshot"_s}));
    EXPECT_EQ(used(), (RestoreBaseline{captured(1, kBeforeQuorvane), RestoreSource::Chosen}));
    EXPECT_EQ(session->settingsStatus.current().restoreBaseline, used());
    EXPECT_EQ(titles(listed()), (QStringList{u"The Latest"_s, u"Tour"_s, u"Before Quorvane (Used)"_s}));
    EXPECT_TRUE(use(u"The Latest"_s));
    EXPECT_FALSE(files.exists(kChosen));
    EXPECT_EQ(used(), (RestoreBaseline{captured(5, u"Tour"_s)}));
    EXPECT_EQ(titles(listed()), (QStringList{u"The Latest (Used)"_s, u"Tour"_s, u"Before Quorvane"_s}));
}

TEST_F(BaselineActionsTest, whatWasChosenMayGo) {
    addFirst(1, kBeforeQuorvane);
    const QString archive = addOwn(2, u"Two"_s);
    EXPECT_TRUE(use(u"Two"_s));
    files.remove(kHome + archive);
    EXPECT_EQ(used()->snapshot, captured(2, u"Two"_s));
    EXPECT_EQ(titles(listed()), (QStringList{u"The Latest"_s, u"Before Quorvane"_s, u"Two (Used)"_s}));
    EXPECT_TRUE(session->baselineActions.rows().last().text.subtitle.startsWith(u"Chosen baseline, "_s));
}

TEST_F(BaselineActionsTest, aClockThatWasSetBackDoesNotEndTheChoiceAtOnce) {
    SystemSnapshot late = captured(5, u"Tour"_s);
    late.dateCreated = clock.time.addYears(1);
    SnapshotManager(files, machine).save(late);
    addFirst(1, kBeforeQuorvane);
    EXPECT_TRUE(use(u"Before Quorvane"_s));
    EXPECT_EQ(used()->source, RestoreSource::Chosen);
}

TEST_F(BaselineActionsTest, anotherMacsIsChosenAfterAQuestion) {
    add(kHome, captured(3, u"Three"_s), {u"Booth"_s, kAnotherMac});
    const QString question = u"! Use Another Mac’s Settings? | This baseline was saved on “Booth”. Revert and "
                             u"Reinstate would put that Mac’s "
                             "settings onto this one. | Use, Cancel"_s;
    alerts.press(1);
    EXPECT_FALSE(use(u"Three"_s));
    EXPECT_EQ(takeSteps(), QStringList(question));
    EXPECT_FALSE(files.exists(kChosen));
    alerts.press(0);
    EXPECT_TRUE(use(u"Three"_s));
    EXPECT_EQ(takeSteps().first(), question);
    EXPECT_EQ(used(), (RestoreBaseline{captured(3, u"Three"_s), RestoreSource::Chosen, false, u"Booth"_s}));
}

TEST_F(BaselineActionsTest, aFailureIsToldAndNothingIsSaidToBeUsed) {
    addFirst(1, kBeforeQuorvane);
    addOwn(2, u"Two"_s);
    files.failOn(MemoryFileManager::Operation::Write, kChosen);
    EXPECT_FALSE(use(u"Two"_s));
    EXPECT_TRUE(takeSteps().first().startsWith(u"! Error | "_s + kChosen));
    EXPECT_EQ(titles(listed()), (QStringList{u"The Latest (Used)"_s, u"Before Quorvane"_s, u"Two"_s}));
}

// ---- The sheet

TEST_F(BaselineActionsTest, theSheetShowsWhatIsUsedUntilItIsClosed) {
    SnapshotManager(files, machine).save(captured(5, u"Tour"_s));
    addFirst(1, kBeforeQuorvane);
    std::optional<QCoro::Task<ActionOutcome>> action;
    const std::shared_ptr<RowChoice> choice = openSheet(action);
    EXPECT_EQ(titles(choice->rows()), (QStringList{u"The Latest (Used)"_s, u"Tour"_s, u"Before Quorvane"_s}));
    EXPECT_FALSE(session->turnstile.isIdle());
    choice->choose(choice->rows().last().id);
    processEventsUntil([&choice] { return !choice->rows().last().mark.isEmpty(); });
    EXPECT_EQ(titles(choice->rows()), (QStringList{u"The Latest"_s, u"Tour"_s, u"Before Quorvane (Used)"_s}));
    choice->choose(kLatestBaselineId);
    processEventsUntil([&choice] { return !choice->rows().first().mark.isEmpty(); });
    EXPECT_FALSE(choice->isOver());
    choice->dismiss();
    EXPECT_TRUE(QCoro::waitFor(*action).succeeded);
    EXPECT_TRUE(choice->isOver());
    EXPECT_TRUE(session->turnstile.isIdle());
}

TEST_F(BaselineActionsTest, whatIsDeletedWhileTheSheetIsOpenCantBeChosen) {
    addFirst(1, kBeforeQuorvane);
    const QString archive = addOwn(2, u"Two"_s);
    std::optional<QCoro::Task<ActionOutcome>> action;
    const std::shared_ptr<RowChoice> choice = openSheet(action);
    files.remove(kHome + archive);
    choice->choose(u"home/"_s + archive);
    processEventsUntil([&choice] { return choice->hasFailed(); });
    EXPECT_EQ(choice->text(), kGoneText);
    EXPECT_FALSE(files.exists(kChosen));
    choice->dismiss();
    EXPECT_FALSE(QCoro::waitFor(*action).succeeded);
}

TEST_F(BaselineActionsTest, whatICloudAloneHasIsListedByNameAndReadWhenItHasCome) {
    signIn();
    const QString archive = add(kCloudFolder, captured(4, u"Four"_s), identityOf(machine));
    const QByteArray bytes = files.read(kCloudFolder + archive);
    files.remove(kCloudFolder + archive);
    cloud.waiting.insert(kCloudFolder + archive, {bytes, 2, {}, false});
    std::optional<QCoro::Task<ActionOutcome>> action;
    action.emplace(session->baselineActions.choose(*listener));
    const auto choice = std::dynamic_pointer_cast<RowChoice>(listener->sheet);
    QStringList seen{titles(choice->rows()).last()};
    QObject::connect(choice.get(), &SheetModel::changed, [&] {
        const QStringList now = titles(choice->rows());
        if (!now.isEmpty() && !seen.contains(now.last())) {
            seen.append(now.last());
        }
    });
    processEventsUntil([&choice] { return !choice->isLoading(); });
    EXPECT_EQ(seen, (QStringList{archive, u"Four"_s}));
    choice->dismiss();
    QCoro::waitFor(*action);
}

TEST_F(BaselineActionsTest, whatIsEvictedWhileTheSheetIsOpenAndDoesNotComeCantBeChosen) {
    signIn();
    const QString archive = add(kCloudFolder, captured(4, u"Four"_s), identityOf(machine));
    std::optional<QCoro::Task<ActionOutcome>> action;
    const std::shared_ptr<RowChoice> choice = openSheet(action);
    EXPECT_EQ(titles(choice->rows()), (QStringList{u"The Latest (Used)"_s, u"Four"_s}));
    files.remove(kCloudFolder + archive);
    cloud.waiting.insert(kCloudFolder + archive, {});
    choice->choose(u"icloud/"_s + archive);
    processEventsUntil([&choice] { return choice->hasFailed(); });
    EXPECT_EQ(choice->text(), kGoneText);
    EXPECT_FALSE(files.exists(kChosen));
    choice->dismiss();
    QCoro::waitFor(*action);
    const ChoosableRow row = listed().last();
    EXPECT_EQ(row.text.title, archive);
    EXPECT_EQ(row.note, u"Not downloaded from iCloud yet."_s);
    EXPECT_FALSE(row.canBeChosen);
}

// ---- The row of Settings

TEST_F(BaselineActionsTest, theRowSaysWhatIsUsed) {
    EXPECT_EQ(usedBaselineRow({}, machine).title, u"Nothing was saved on this Mac yet"_s);
    const QString date = machine.dateAndTimeText(captured(5, {}).dateCreated);
    EXPECT_EQ(usedBaselineRow(RestoreBaseline{captured(5, u"Tour"_s)}, machine),
              (RowText{u"Latest: Tour"_s, date, u"checkmark.shield.fill"_s}));
    EXPECT_EQ(
        usedBaselineRow(RestoreBaseline{captured(5, u"To\nur"_s), RestoreSource::Chosen, false, u"Booth"_s}, machine),
        (RowText{u"Chosen: To ur"_s, date + u", saved on Booth"_s, u"checkmark.shield.fill"_s}));
    addFirst(1, kBeforeQuorvane);
    session->settingsStatus.readAnew();
    EXPECT_EQ(session->settingsStatus.current().restoreBaseline,
              (RestoreBaseline{captured(1, kBeforeQuorvane), RestoreSource::First}));
}

} // namespace quorvane
