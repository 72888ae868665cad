#pragma once

#include <QFrame>

class QVBoxLayout;

namespace quorvane {

/// A rounded ground for rows, one under the other, with a line between two that are shown.
class AppCard : public QFrame {
    Q_OBJECT

public:
    explicit AppCard(QWidget* parent = nullptr);

    void addRow(QWidget* row);
    /// Where the lines between the rows begin: where their texts do. Otherwise at those of rows with a badge.
    void setTextLeft(int left) { m_textLeft = left; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QVBoxLayout* m_rows;
    QWidget* m_edge;
    int m_textLeft;
};

} // namespace quorvane
