#pragma once

#include "actions/PageTexts.h"
#include "ui/Theme.h"

#include <QWidget>

namespace quorvane {

class AppSwitch;
class TextLabel;

/// A row with a switch that asks: it moves when what it was asked for has happened.
class SwitchRow : public QWidget {
    Q_OBJECT

public:
    SwitchRow(const RowText& text, BadgeColor tint, QWidget* parent = nullptr);

    /// @param note  stands below the description; may be empty
    void setState(bool isOn, const QString& note);

Q_SIGNALS:
    void asked(bool isWantedOn);

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void moveBack(bool isOn);

    QString m_description;
    AppSwitch* m_switch;
    TextLabel* m_note;
    bool m_isOn = false;
};

} // namespace quorvane
