#include "ui/pieces/AppCard.h"

#include "ui/Theme.h"
#include "ui/pieces/RowContent.h"

#include <QPainter>
#include <QVBoxLayout>

namespace quorvane {

namespace {

constexpr int kLine = 1;

} // namespace

AppCard::AppCard(QWidget* parent)
    : QFrame(parent)
    , m_rows(new QVBoxLayout(this))
    , m_textLeft(rowTextLeft({.symbol = QStringLiteral("chevron.right")})) {
    m_rows->setContentsMargins(kLine, kLine, kLine, kLine);
    m_rows->setSpacing(kLine);
}

void AppCard::addRow(QWidget* row) {
    m_rows->addWidget(row);
}

void AppCard::paintEvent(QPaintEvent*) {
    const Theme& theme = themeOf(this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(theme.border);
    painter.setBrush(theme.card);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Theme::kCardRadius, Theme::kCardRadius);
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
