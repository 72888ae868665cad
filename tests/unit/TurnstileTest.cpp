#include "actions/Turnstile.h"

#include "fakes/ScriptedSystem.h"

#include <optional>

namespace quorvane {

namespace {

class TurnstileTest : public ScriptedSystem {
protected:
    TurnstileTest() {
        QObject::connect(&turnstile, &Turnstile::idleChanged, [this] { changes.append(turnstile.isIdle()); });
    }

    Turnstile turnstile{system};
    QList<bool> changes;
};

} // namespace

TEST_F(TurnstileTest, isIdleWhereNothingRunsAndNothingIsOpen) {
    EXPECT_TRUE(turnstile.isIdle());
    {
        const Turnstile::Hold sheet = turnstile.open();
        EXPECT_FALSE(turnstile.isIdle());
        { const Turnstile::Hold question = turnstile.open(); }
        EXPECT_FALSE(turnstile.isIdle()) << "the sheet is still there";
    }
    EXPECT_TRUE(turnstile.isIdle());
    EXPECT_EQ(changes, (QList<bool>{false, true}));
}

TEST_F(TurnstileTest, whatIsBusyWithoutItCountsToo) {
    system.beginBusy(u"Scanning…"_s);
    EXPECT_FALSE(turnstile.isIdle());
    system.endBusy();
    EXPECT_EQ(changes, (QList<bool>{false, true}));
}

TEST_F(TurnstileTest, aBusyBracketEndsWithItsScopeHoweverThatIsLeft) {
    try {
        [[maybe_unused]] const Turnstile::Hold busy = turnstile.busy(u"Applying profile…"_s);
        EXPECT_EQ(system.busyMessage(), u"Applying profile…"_s);
        throw std::runtime_error("left");
    } catch (const std::runtime_error&) {
    }
    EXPECT_FALSE(system.isBusy());
    EXPECT_TRUE(turnstile.isIdle());
}

TEST_F(TurnstileTest, aHoldThatMovesEndsOnce) {
    std::optional<Turnstile::Hold> kept;
    {
        Turnstile::Hold first = turnstile.open();
        kept.emplace(std::move(first));
    }
    EXPECT_FALSE(turnstile.isIdle());
    kept.reset();
    EXPECT_TRUE(turnstile.isIdle());
    EXPECT_EQ(changes, (QList<bool>{false, true}));
}

} // namespace quorvane
