#pragma once

#include <QWidget>

namespace quorvane {

class AppSwitch;
class IconButton;

/// One tweak: its icon, which a click lets choose anew, what it does and what it can't, and its switch.
class TweakToggle : public QWidget {
    Q_OBJECT

public:
    /// @param note  a second line under the description; may be empty
    TweakToggle(const QString& tweakKey, const QString& title, const QString& description, const QString& note,
                QWidget* parent = nullptr);

    const QString& tweakKey() const { return m_tweakKey; }
    void setState(bool isSelected, const QString& icon);

Q_SIGNALS:
    void isSelectedChanged(bool isSelected);
    void iconSelected(const QString& icon);

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void pickIcon();

    QString m_tweakKey;
    QString m_title;
    QString m_icon;
    IconButton* m_iconButton;
    AppSwitch* m_switch;
};

} // namespace quorvane
