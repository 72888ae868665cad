#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

namespace quorvane {

/// Keeps something from being used while it is covered or has to wait, and gives the focus back afterwards to what had it.
class OutOfReach : public QObject {
    Q_OBJECT

public:
    /// @param widget  is there for as long as this is
    explicit OutOfReach(QWidget* widget, QObject* parent);

    void begin();
    void end();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void giveFocusBack();

    QWidget* m_widget;
    bool m_isOut = false;
    QPointer<QWidget> m_focusBefore;
};

} // namespace quorvane
