#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

namespace quorvane {

class Turnstile;

/// Disables a page while something runs or is open, and gives the focus back afterwards to what had it: at once, or when the page
/// is seen again.
class IdleGuard : public QObject {
    Q_OBJECT

public:
    /// Belongs to the page.
    IdleGuard(QWidget* page, const Turnstile& turnstile);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void update();
    void giveFocusBack();

    QWidget* m_page;
    const Turnstile& m_turnstile;
    QPointer<QWidget> m_focusBefore;
};

} // namespace quorvane
