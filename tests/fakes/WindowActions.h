#pragma once

#include "actions/ApplyReviewCoordinator.h"
#include "actions/SheetOffer.h"
#include "actions/WindowListener.h"
#include "fakes/ActionSystem.h"
#include "fakes/ScriptedLoginItems.h"

#include <memory>

namespace quorvane {

/// A session with a window that shows nothing: the test does what the user does in its sheets.
class WindowActions : public ActionSystem {
public:
    ~WindowActions() override { shutDown(); }

protected:
    WindowActions() {
        loginItems.items = {{u"Chat"_s, u"/Applications/Chat.app"_s}};
        addProfile(live);
    }
    /// What an action calls back may belong to the test.
    void TearDown() override { shutDown(); }

    void shutDown() {
        window.shutDown();
        QCoro::waitFor(session->shutDown());
    }

    std::shared_ptr<ApplyReview> review() const { return reviews.request() ? reviews.request()->review : nullptr; }
    bool isIn(ApplyReview::State state) const { return review() && review()->state() == state; }
    /// Null without one.
    std::shared_ptr<SheetOffer> shownOffer() const { return std::dynamic_pointer_cast<SheetOffer>(window.sheet()); }
    void waitFor(ApplyReview::State state) {
        processEventsUntil([this, state] { return isIn(state); });
    }
    void waitForTasks() {
        processEventsUntil([this] { return session->tasks.count() == 0; });
    }
    /// A profile whose preview has to look at the Mac.
    static UnifiedProfile profileWithStartup() {
        UnifiedProfile profile = numberedProfile(1, u"Live"_s);
        StartupItem chat;
        chat.id = u"login:Chat"_s;
        chat.name = u"Chat"_s;
        chat.kind = StartupItemKind::loginApp;
        chat.runsAtStartup = false;
        profile.startup.items = {chat};
        return profile;
    }
    /// Nothing of an action is left.
    void expectNothingLeft() const {
        EXPECT_FALSE(reviews.request().has_value());
        EXPECT_EQ(window.sheet(), nullptr);
        EXPECT_TRUE(session->turnstile.isIdle());
        EXPECT_FALSE(session->system.isBusy());
        EXPECT_FALSE(lock->isAutoLockSuppressed());
        EXPECT_EQ(alerts.openCount(), 0);
    }

    ScriptedLoginItems loginItems{commands, trace};
    const UnifiedProfile live = profileWithStartup();
    ApplyReviewCoordinator reviews{{workspace, clock, session->tasks, session->turnstile, session->profileActions,
                                    session->tweakActions, session->systemActions}};
    WindowListener window{{alerts, session->scans, reviews, session->startupEditing}};
};

} // namespace quorvane
