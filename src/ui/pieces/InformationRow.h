#pragma once

#include "ui/pieces/RowContent.h"

#include <QLabel>

namespace quorvane {

/// A row that says something and does nothing.
class InformationRow : public QLabel {
    Q_OBJECT

public:
    explicit InformationRow(QWidget* parent = nullptr);

    void setContent(const RowContent& content);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    RowContent m_content;
};

} // namespace quorvane
