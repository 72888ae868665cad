#pragma once

#include "ui/pieces/OutOfReach.h"

#include <QPointer>
#include <QVariantAnimation>
#include <QWidget>

namespace quorvane {

class Sheet;

/// Dims what lies beneath and shows one sheet over it. What lies beneath is out of reach as long as the sheet is there.
class SheetLayer : public QWidget {
    Q_OBJECT

public:
    /// @param beneath  a sibling, which is disabled meanwhile
    SheetLayer(QWidget* beneath, QWidget* parent);

    /// Shows a sheet in place of the one that is there. Owns it.
    void show(Sheet* sheet);
    /// Takes the sheet away; the focus goes back to where it was.
    void clear();
    Sheet* sheet() const { return m_sheet; }

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void place();
    void removeSheet();

    OutOfReach m_beneath;
    QPointer<Sheet> m_sheet;
    QVariantAnimation m_fade;
};

} // namespace quorvane
