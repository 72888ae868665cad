#pragma once

#include <QListView>

namespace quorvane {

class LogModel;

/// The lines of the log, each as high as the next, so that where one stands is arithmetic: a line more costs the view nothing,
/// however many there are. It follows while the newest line is in view; scrolled up it stays.
class LogLinesView : public QListView {
    Q_OBJECT

public:
    explicit LogLinesView(LogModel& model, QWidget* parent = nullptr);

    QRect visualRect(const QModelIndex& index) const override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    QModelIndex indexAt(const QPoint& point) const override;
    void doItemsLayout() override;
    void reset() override;
    /// Nothing: its letters are no names, and going through them would take long.
    void keyboardSearch(const QString& /*text*/) override {}

    /// How many lines there are below those in view; none while it follows.
    int linesBelow() const { return m_linesBelow; }
    void scrollToLatest();
    int firstRowInView() const;
    /// Selects a row and brings it into view.
    void showRow(int row);
    /// Each occurrence is marked, whatever its case.
    void setMarkedText(const QString& text);
    /// What is shown when there are no lines.
    void setEmptyText(const QString& text);
    /// The selected lines as they stand in the log; all when none is.
    QString copiedText() const;

Q_SIGNALS:
    void linesBelowChanged();

protected:
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    int horizontalOffset() const override;
    int verticalOffset() const override;
    bool isIndexHidden(const QModelIndex& /*index*/) const override { return false; }
    void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) override;
    QRegion visualRegionForSelection(const QItemSelection& selection) const override;
    void updateGeometries() override;
    void scrollContentsBy(int dx, int dy) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void takeTheme();
    int lastRowInView() const;
    bool isLatestInView() const;
    void measureLinesInView();
    void countLinesBelow();
    void paintLine(QPainter& painter, const QModelIndex& index) const;
    void paintMarks(QPainter& painter, const QString& text, const QRect& line) const;

    LogModel& m_model;
    QString m_markedText;
    QString m_emptyText;
    int m_rowHeight = 1;
    int m_widestLine = 0; ///< of those that were in view
    bool m_follows = true;
    bool m_isPlacing = false; ///< what the scroll bar does then, no user has done
    int m_linesBelow = 0;
};

} // namespace quorvane
