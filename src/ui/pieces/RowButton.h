#pragma once

#include "ui/pieces/KnownHeights.h"
#include "ui/pieces/RowContent.h"

#include <QPushButton>

namespace quorvane {

/// A row that is a button: the whole of it is the target. Its name and description are what it says.
class RowButton : public QPushButton {
    Q_OBJECT

public:
    explicit RowButton(const RowContent& content, QWidget* parent = nullptr);

    const RowContent& content() const { return m_content; }
    void setContent(const RowContent& content);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void measureAnew();

    RowContent m_content;
    mutable KnownHeights m_heights;
};

/// The state in which a row's widget is now.
RowState rowState(const QAbstractButton& button);

} // namespace quorvane
