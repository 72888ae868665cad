#include "ui/pieces/AppCard.h"

#include "ui/Theme.h"
#include "ui/pieces/RowContent.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>

namespace quorvane {

namespace {

constexpr int kLine = 1;

/// Lies over the rows, whose grounds are rectangles, and rounds the corners.
class CardEdge : public QWidget {
public:
    explicit CardEdge(QWidget* parent)
        : QWidget(parent) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

protected:
    void paintEvent(QPaintEvent* event) override {
        constexpr int kCorner = Theme::kCardRadius + kLine;
        const QColor line = themeOf(this).border;
        QPainter painter(this);
        painter.fillRect(kCorner, 0, width() - 2 * kCorner, kLine, line);
        painter.fillRect(kCorner, height() - kLine, width() - 2 * kCorner, kLine, line);
        painter.fillRect(0, kCorner, kLine, height() - 2 * kCorner, line);
        painter.fillRect(width() - kLine, kCorner, kLine, height() - 2 * kCorner, line);
        // Only these need a path: a list of profiles is many screens high.
        QRect corner(0, 0, kCorner, kCorner);
        for (const QPoint& place : {QPoint(0, 0), QPoint(width() - kCorner, 0), QPoint(0, height() - kCorner),
                                    QPoint(width() - kCorner, height() - kCorner)}) {
            corner.moveTopLeft(place);
            if (event->rect().intersects(corner)) {
                painter.setClipRect(corner);
                paintRounded(painter);
            }
        }
    }

private:
    void paintRounded(QPainter& painter) const {
        const Theme& theme = themeOf(this);
        const QRectF line = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
        QPainterPath outside;
        outside.addRect(rect());
        outside.addRoundedRect(line, Theme::kCardRadius, Theme::kCardRadius);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillPath(outside, theme.window);
        painter.setPen(theme.border);
        painter.drawRoundedRect(line, Theme::kCardRadius, Theme::kCardRadius);
    }
};

} // namespace

AppCard::AppCard(QWidget* parent)
    : QFrame(parent)
    , m_rows(new QVBoxLayout(this))
    , m_edge(new CardEdge(this))
    , m_textLeft(rowTextLeft({.symbol = QStringLiteral("chevron.right")})) {
    m_rows->setContentsMargins(kLine, kLine, kLine, kLine);
    m_rows->setSpacing(kLine);
}

void AppCard::addRow(QWidget* row) {
    m_rows->addWidget(row);
    m_edge->raise();
}

void AppCard::resizeEvent(QResizeEvent*) {
    m_edge->setGeometry(rect());
}

void AppCard::paintEvent(QPaintEvent*) {
    const Theme& theme = themeOf(this);
    QPainter painter(this);
    painter.fillRect(rect(), theme.card);
    bool isFirst = true;
    for (int index = 0; index < m_rows->count(); ++index) {
        const QWidget* const row = m_rows->itemAt(index)->widget();
        if (row->isHidden()) {
            continue;
        }
        if (!isFirst) {
            painter.fillRect(QRect(m_textLeft, row->y() - kLine, width() - m_textLeft - kLine, kLine), theme.border);
        }
        isFirst = false;
    }
}

} // namespace quorvane
