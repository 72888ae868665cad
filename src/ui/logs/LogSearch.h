#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

namespace quorvane {

class LogModel;

/// Looks for a text in the lines of the log, whatever its case, a little in each turn of the event loop. Behind the last line
/// comes the first one.
class LogSearch : public QObject {
    Q_OBJECT

public:
    enum class Direction { Down, Up };

    explicit LogSearch(const LogModel& model, QObject* parent = nullptr);

    /// @param from  the row that is looked at first
    void find(const QString& text, int from, Direction direction);
    void cancel() { m_turn.stop(); }

Q_SIGNALS:
    void found(int row);
    void notFound();

private:
    void lookOn();

    const LogModel& m_model;
    QString m_text;
    int m_row = 0;
    int m_left = 0; ///< rows that haven't been looked at
    Direction m_direction = Direction::Down;
    QTimer m_turn;
};

} // namespace quorvane
