// Profile files that are opened with the program, whatever it is about just then.

#include "actions/OpenedProfiles.h"
#include "fakes/ActionSystem.h"
#include "profiles/ProfileJson.h"

namespace quorvane {

namespace {

class OpenedProfilesTest : public ActionSystem {
protected:
    OpenedProfilesTest() {
        files.createFolders(u"/Volumes/Stick"_s);
        for (int number = 1; number <= 2; ++number) {
            const UnifiedProfile profile = numberedProfile(number, u"Gig %1"_s.arg(number));
            files.addFile(paths.at(number - 1), encodeProfile(profile));
        }
    }

    void waitUntilIdle() {
        processEventsUntil([this] { return session->tasks.count() == 0 && session->turnstile.isIdle(); });
        QCoro::waitFor(session->finished());
    }
    qsizetype savedCount() { return session->profileStore.listProfiles().size(); }

    const QStringList paths{u"/Volumes/Stick/one.json"_s, u"/Volumes/Stick/two.json"_s};
    OpenedProfiles opened{{session->tasks, session->turnstile, *lock, session->profileExchange, *listener}};
};

} // namespace

TEST_F(OpenedProfilesTest, theyAreImportedOneAfterTheOther) {
    opened.open(paths);
    processEventsUntil([this] { return steps.filter(u"! Profile Imported"_s).size() == 2; });
    waitUntilIdle();
    EXPECT_EQ(savedCount(), 2);
    EXPECT_TRUE(filePanels.asked.isEmpty());
}

TEST_F(OpenedProfilesTest, theyWaitForWhatIsUnderWay) {
    {
        const Turnstile::Hold sheet = session->turnstile.open();
        opened.open(paths);
        QCoro::waitFor(session->finished());
        EXPECT_EQ(savedCount(), 0);
    }
    processEventsUntil([this] { return steps.filter(u"! Profile Imported"_s).size() == 2; });
}

TEST_F(OpenedProfilesTest, theyWaitForTheOwner) {
    enableLock();
    lock->lockIfEnabled();
    steps.clear();
    opened.open(paths);
    QCoro::waitFor(session->finished());
    EXPECT_EQ(steps, QStringList()) << "nothing is asked above the lock screen";
    EXPECT_TRUE(lock->unlockWithPassword(kPassword));
    processEventsUntil([this] { return steps.filter(u"! Profile Imported"_s).size() == 2; });
}

TEST_F(OpenedProfilesTest, afterTheEndNoneIsImported) {
    {
        const Turnstile::Hold sheet = session->turnstile.open();
        opened.open({paths.first()});
        opened.shutDown();
        opened.open({paths.last()});
    }
    QCoro::waitFor(session->finished());
    QCoreApplication::processEvents();
    EXPECT_EQ(savedCount(), 0);
}

} // namespace quorvane
