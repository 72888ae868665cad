#pragma once

#include <QWidget>

namespace quorvane {

class AppSwitch;
class TextLabel;

/// A row with a title over a description and a switch at its end, for what is merely chosen: it moves at once. All of it is the
/// switch's target.
class OptionRow : public QWidget {
    Q_OBJECT

public:
    OptionRow(const QString& title, const QString& description, QWidget* parent = nullptr);

    void setDescription(const QString& description);
    void setChecked(bool isChecked);
    bool isChecked() const;

Q_SIGNALS:
    /// The user has switched it.
    void switched(bool isOn);

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    TextLabel* m_description;
    AppSwitch* m_switch;
};

} // namespace quorvane
