#pragma once

#include <QFuture>
#include <QObject>
#include <QPromise>
#include <QString>

#include <optional>

namespace quorvane {

/// The offer to keep the Mac as it is now as the master baseline, as its sheet shows it. Main thread.
class MasterBaselineOffer : public QObject {
    Q_OBJECT

public:
    enum class State {
        Offered,
        Saving, ///< nothing closes it
        Failed, ///< offered once more, with what went wrong
    };

    explicit MasterBaselineOffer(QObject* parent = nullptr);

    State state() const { return m_state; }
    /// What the sheet says beside the offer: nothing, that it is being saved, or that it could not be.
    QString text() const;
    bool isOver() const { return m_isOver; }

    // ---- What the user does; nothing while it is saved

    /// "Create Master Baseline"
    void create();
    /// "Not Now", Escape
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
