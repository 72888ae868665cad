#pragma once

#include "ui/pieces/RowButton.h"

#include <QCheckBox>
#include <QEvent>
#include <QPainter>
#include <QRadioButton>

#include <algorithm>

namespace quorvane {

/// What a tick stands in.
enum class TickShape { Box, Circle };
void paintTick(QPainter& painter, const Theme& theme, const QRect& row, TickShape shape, bool isTicked, bool isEnabled);
/// The row's content, with room for its tick.
RowContent withTickRoom(RowContent content);

/// A row that can be ticked: the whole of it is the target. Its name and description are what it says.
template <typename Button, TickShape kShape>
class TickRow : public Button {
public:
    explicit TickRow(const RowContent& content, QWidget* parent = nullptr)
        : Button(parent)
        , m_content(withTickRoom(content)) {
        this->setSizePolicy(rowSizePolicy());
        this->setFocusPolicy(Qt::StrongFocus);
        this->setAccessibleName(content.title);
        this->setAccessibleDescription(content.description);
    }

    QSize sizeHint() const override {
        const int width = minimumSizeHint().width();
        return {width, heightForWidth(std::max(width, this->width()))};
    }
    QSize minimumSizeHint() const override { return {rowMinimumWidth(themeOf(this), m_content), Theme::kSingleRow}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override { return rowHeight(themeOf(this), m_content, width); }

protected:
    bool hitButton(const QPoint& position) const override { return this->rect().contains(position); }
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const RowState state = rowState(*this);
        paintRow(painter, themeOf(this), this->rect(), m_content, state);
        paintTick(painter, themeOf(this), this->rect(), kShape, this->isChecked(), state.isEnabled);
    }
    void changeEvent(QEvent* event) override {
        Button::changeEvent(event);
        if (event->type() == QEvent::StyleChange) {
            this->updateGeometry();
        }
    }
    void enterEvent(QEnterEvent* event) override {
        Button::enterEvent(event);
        this->update();
    }
    void leaveEvent(QEvent* event) override {
        Button::leaveEvent(event);
        this->update();
    }

private:
    RowContent m_content;
};

/// A check box.
using CheckRow = TickRow<QCheckBox, TickShape::Box>;
/// One of several, of which one is ticked.
using ChoiceRow = TickRow<QRadioButton, TickShape::Circle>;

} // namespace quorvane
