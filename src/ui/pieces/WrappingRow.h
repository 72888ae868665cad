#pragma once

#include <QLayout>
#include <QList>

#include <memory>
#include <vector>

namespace quorvane {

/// A row of widgets that goes on in the next line where there is no room, as words do. What is left of a line goes to the first
/// of its widgets that wants to grow. Hidden ones take no room.
class WrappingRow : public QLayout {
public:
    explicit WrappingRow(QWidget* parent);
    ~WrappingRow() override;

    void addItem(QLayoutItem* item) override;
    int count() const override { return static_cast<int>(m_items.size()); }
    QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    Qt::Orientations expandingDirections() const override { return Qt::Horizontal; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSize() const override;
    void setGeometry(const QRect& rect) override;

private:
    using Line = QList<QLayoutItem*>;
    QList<Line> linesIn(int width) const;
    static int heightOf(const Line& line);
    void place(const Line& line, const QRect& room) const;

    std::vector<std::unique_ptr<QLayoutItem>> m_items;
};

} // namespace quorvane
