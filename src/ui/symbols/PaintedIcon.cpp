#include "ui/symbols/PaintedIcon.h"

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>

#include <utility>

namespace quorvane {

namespace {

constexpr qreal kDisabledOpacity = 0.4;

class PaintedIconEngine final : public QIconEngine {
public:
    PaintedIconEngine(IconPainter paint, const QList<QSize>& sizes)
        : m_paint(std::move(paint))
        , m_sizes(sizes) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override {
        const qreal opacity = painter->opacity();
        if (mode == QIcon::Disabled) {
            painter->setOpacity(opacity * kDisabledOpacity);
        }
        m_paint(*painter, rect);
        painter->setOpacity(opacity);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        if (!picture.isNull()) {
            QPainter painter(&picture);
            paint(&painter, picture.rect(), mode, state);
        }
        return picture;
    }

    QList<QSize> availableSizes(QIcon::Mode /*mode*/, QIcon::State /*state*/) override { return m_sizes; }

    QIconEngine* clone() const override { return new PaintedIconEngine(m_paint, m_sizes); }

private:
    IconPainter m_paint;
    QList<QSize> m_sizes;
};

} // namespace

QIcon paintedIcon(IconPainter paint, const QList<QSize>& sizes) {
    return QIcon(new PaintedIconEngine(std::move(paint), sizes));
}

} // namespace quorvane
