#pragma once

#include "ui/pieces/OutOfReach.h"

#include <QWidget>

#include <chrono>

namespace quorvane {

class Clock;
class ProgressRing;
class SystemManager;
class TextLabel;

/// Says over a page what the program is busy with, once that has taken a moment; after a longer one also where it has got to.
class WaitingDialogOverlay : public QWidget {
    Q_OBJECT

public:
    /// @param beneath  what it covers, which is out of reach meanwhile
    WaitingDialogOverlay(const SystemManager& system, Clock& clock, std::chrono::milliseconds presentationDelay,
                         QWidget* beneath, QWidget* parent);

    /// Where what goes on says itself what it is.
    void setSuppressed(bool isSuppressed);

    static constexpr std::chrono::seconds kLineDelay{10};

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool isActive() const;
    void follow();
    void beginWaiting();
    void takeText();
    void reveal();
    void conceal();

    const SystemManager& m_system;
    Clock& m_clock;
    OutOfReach m_beneath;
    std::chrono::milliseconds m_presentationDelay;
    bool m_isSuppressed = false;
    int m_round = 0; ///< of what it is active for: an earlier one's waits are over
    bool m_isWaiting = false;
    bool m_showsLine = false;
    QWidget* m_card;
    ProgressRing* m_ring;
    TextLabel* m_message;
    TextLabel* m_hint;
    TextLabel* m_line;
};

} // namespace quorvane
