#include "ui/logs/LogSearch.h"

#include "ui/logs/LogModel.h"

#include <QElapsedTimer>

namespace quorvane {

namespace {

constexpr int kSearchTurn = 2; // milliseconds

} // namespace

LogSearch::LogSearch(const LogModel& model, QObject* parent)
    : QObject(parent)
    , m_model(model) {
    m_turn.setSingleShot(true);
    m_turn.setInterval(0);
    connect(&m_turn, &QTimer::timeout, this, &LogSearch::lookOn);
    connect(&model, &QAbstractItemModel::modelReset, this, &LogSearch::cancel);
}

void LogSearch::find(const QString& text, int from, Direction direction) {
    m_text = text;
    m_direction = direction;
    m_left = m_model.rowCount();
    m_row = m_left > 0 ? (from + m_left) % m_left : 0;
    lookOn();
}

void LogSearch::lookOn() {
    QElapsedTimer turn;
    turn.start();
    const int rows = m_model.rowCount();
    const int step = m_direction == Direction::Down ? 1 : rows - 1;
    while (m_left > 0) {
        --m_left;
        if (m_model.line(m_row).contains(m_text, Qt::CaseInsensitive)) {
            m_turn.stop();
            Q_EMIT found(m_row);
            return;
        }
        m_row = (m_row + step) % rows;
        if (turn.elapsed() >= kSearchTurn) {
            m_turn.start();
            return;
        }
    }
    m_turn.stop();
    Q_EMIT notFound();
}

} // namespace quorvane
