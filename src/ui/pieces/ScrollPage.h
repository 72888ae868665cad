#pragma once

#include <QMargins>
#include <QScrollArea>

class QVBoxLayout;

namespace quorvane {

/// A page that scrolls: one column of the theme's width, centred.
class ScrollPage : public QScrollArea {
    Q_OBJECT

public:
    explicit ScrollPage(QWidget* parent = nullptr);

    /// Adds a part below the others.
    void addPart(QWidget* part);
    /// Ends the column: what is left of the height stays empty below.
    void finish();

private:
    QVBoxLayout* m_column;
};

/// The centred column of a page's content, also of what doesn't scroll with it.
QVBoxLayout* addColumn(QWidget& ground, const QMargins& margins);

} // namespace quorvane
