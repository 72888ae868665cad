#pragma once

#include <QFuture>
#include <QObject>
#include <QPromise>

#include <optional>

namespace quorvane {

/// Something that a sheet offers to write down: it stays until that is written or the user doesn't want it. Main thread.
class SheetOffer : public QObject {
    Q_OBJECT

public:
    enum class State {
        Offered,
        Saving, ///< nothing closes it
        Failed, ///< offered once more
    };

    using QObject::QObject;

    State state() const { return m_state; }
    bool isOver() const { return m_isOver; }

    // ---- What the user does; nothing while it is written

    /// The button that says what is offered.
    void accept();
    /// The other one, Escape.
    void decline();

    // ---- What comes of it

    /// Finishes at the next thing that the user does: with true when they want it, with false when the offer is over.
    QFuture<bool> answer();
    void beginSaving();
    /// One that is saved is over.
    void endSaving(bool isSaved);
    /// Ends it in whatever state it is.
    void end();

Q_SIGNALS:
    void changed();
    void ended();

private:
    void settle(bool isWanted);

    State m_state = State::Offered;
    bool m_isOver = false;
    std::optional<QPromise<bool>> m_answer; ///< while somebody waits for it
};

} // namespace quorvane
