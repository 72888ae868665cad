// The restore baselines in Settings: listed, and one of them chosen.

#include "fakes/QuickWindowOnMac.h"
#include "snapshots/ChosenBaseline.h"
#include "snapshots/HomeBaselines.h"
#include "snapshots/MasterSystemBaseline.h"

#include <QUuid>

namespace quorvane {

class BaselinesByWindow : public QuickWindowOnMac {
protected:
    BaselinesByWindow()
        : QuickWindowOnMac(u"fresh-macbook"_s) {}
    void SetUp() override {
        const Machine& machine = host->host().machine;
        save(u"before-quorvane.json"_s, u"Before Quorvane"_s, 1, identityOf(machine));
        save(u"master-baseline-2026-03-02T20:30:00Z.json"_s, u"Before the tour"_s, 2, identityOf(machine));
        save(u"master-baseline-2026-03-03T20:30:00Z.json"_s, u"Club"_s, 3, {u"Booth"_s, u"9E4D02C7"_s});
        launch();
        processEventsUntil([] { return isUsable(u"Sidebar"_s); });
        mainWindow()->resize(1000, 1600);
        chooseTab(u"Settings"_s);
        waitUntilSeen(kChoose);
        waitUntilRest();
    }
    void save(const QString& file, const QString& label, int day, const MacIdentity& mac) {
        const Host ports = host->host();
        const QString place = baselineFolderAtHome(ports.machine);
        ports.files.createFolders(place);
        SystemSnapshot snapshot;
        snapshot.id = QUuid::createUuid();
        snapshot.dateCreated = QDateTime(QDate(2026, 3, day), QTime(20, 30), Qt::UTC);
        snapshot.label = label;
        ports.files.writeAtomically(place + u'/' + file, encodeMasterBaseline(masterBaselineOf(snapshot, mac, {})));
    }
    void waitUntilRest() {
        processEventsUntil([this] { return session().turnstile.isIdle() && session().scans.isUpToDate(); });
    }
    void openSheet() {
        click(kChoose);
        processEventsUntil([] { return isUsable(useOf(u"Club"_s)); });
        processEventsUntil([] { return !isSeen(u"Looking for restore baselines…"_s); });
    }
    std::optional<QString> chosen() {
        const std::optional<ChosenBaseline> file = ChosenBaselineFile(host->host().files, host->host().machine).load();
        return file ? file->baseline.label : std::nullopt;
    }
    static QString useOf(const QString& title) { return u"Use: "_s + title; }

    const QString kChoose = u"Choose a Restore Baseline…"_s;
};

TEST_F(BaselinesByWindow, theOneThatIsChosenIsUsedUntilTheLatestIsAgain) {
    EXPECT_TRUE(isSeen(u"Latest: Before Quorvane"_s));
    openSheet();
    click(useOf(u"Before Quorvane"_s));
    processEventsUntil([] { return isUsable(useOf(u"The Latest"_s)); });
    EXPECT_EQ(chosen(), u"Before Quorvane"_s);
    EXPECT_FALSE(isSeen(useOf(u"Before Quorvane"_s))) << "it is marked as used";
    press(Qt::Key_Escape);
    waitUntilSeen(u"Chosen: Before Quorvane"_s);
    waitUntilRest();
    openSheet();
    click(useOf(u"The Latest"_s));
    processEventsUntil([] { return isUsable(useOf(u"Before Quorvane"_s)); });
    EXPECT_EQ(chosen(), std::nullopt);
    press(Qt::Key_Escape);
    waitUntilSeen(u"Latest: Before Quorvane"_s);
    waitUntilRest();
}

TEST_F(BaselinesByWindow, anotherMacsIsAskedAbout) {
    const ShownAlert question{u"Use Another Mac’s Settings?"_s,
                              u"This baseline was saved on “Booth”. Revert and Reinstate would put that Mac’s settings "
                              "onto this one."_s,
                              {u"Use"_s, u"Cancel"_s},
                              u"Cancel"_s};
    openSheet();
    click(useOf(u"Club"_s));
    answerByKey(question, Qt::Key_Escape);
    letEventsPass();
    EXPECT_EQ(chosen(), std::nullopt);
    click(useOf(u"Club"_s));
    answerAlert(question.title, u"Use"_s);
    processEventsUntil([] { return isUsable(useOf(u"The Latest"_s)); });
    EXPECT_EQ(chosen(), u"Club"_s);
    press(Qt::Key_Escape);
    waitUntilSeen(u"Chosen: Club"_s);
    waitUntilRest();
}

} // namespace quorvane
