#pragma once

#include <QDialog>

class QHBoxLayout;
class QVBoxLayout;

namespace quorvane {

class TextLabel;

/// What lies over the window until it is answered: a title, contents that scroll, and buttons that stay. Escape asks it to
/// close, Return presses its default button. It lives inside the window, on a SheetLayer, so that the lock covers it.
class Sheet : public QDialog {
    Q_OBJECT

public:
    explicit Sheet(QWidget* parent = nullptr);

    /// Escape, and whatever else closes things. It goes when its model says so, which may be never while something runs.
    void reject() override { Q_EMIT closeRequested(); }
    /// How high it is when nothing in it needs to scroll, at that width.
    int wholeHeight(int width) const;

Q_SIGNALS:
    void closeRequested();
    /// It needs another height now.
    void contentsChanged();

protected:
    void setTitle(const QString& title, const QString& subtitle);
    /// What scrolls, top to bottom; replaces what was there.
    void setContents(QWidget* contents);
    void addButton(QWidget* button);
    /// Stands at the left end of the buttons.
    void addButtonAside(QWidget* button);

    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    TextLabel* m_title;
    TextLabel* m_subtitle;
    class ContentsArea;
    ContentsArea* m_contents;
    QHBoxLayout* m_buttons;
};

} // namespace quorvane
