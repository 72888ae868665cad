#pragma once

#include <QObject>

namespace quorvane {

/// What a sheet shows, and what its user does in it, as long as it is open. Whoever opened it has it, and the window until it is
/// over. Main thread.
class SheetModel : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    bool isOver() const { return m_isOver; }
    /// "Cancel", "Close", Escape, and the closing of the window. Nothing while it carries something out.
    virtual void dismiss() { end(); }
    /// Ends it in whatever state it is.
    void end();

Q_SIGNALS:
    void changed();
    void ended();

protected:
    /// Answers whoever waits for the user.
    virtual void settle() = 0;

private:
    bool m_isOver = false;
};

} // namespace quorvane
