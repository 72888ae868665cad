#pragma once

#include "ui/pieces/OutOfReach.h"

#include <QObject>

namespace quorvane {

class Turnstile;

/// Disables a page while something runs or is open, and gives the focus back afterwards to what had it.
class IdleGuard : public QObject {
    Q_OBJECT

public:
    /// Belongs to the page.
    IdleGuard(QWidget* page, const Turnstile& turnstile);

private:
    void update();

    OutOfReach m_page;
    const Turnstile& m_turnstile;
};

} // namespace quorvane
