#pragma once

#include "actions/ServicePages.h"
#include "ui/pieces/TickRow.h"

#include <QList>
#include <QWidget>

namespace quorvane {

class AppCard;
class ScrollPage;
struct ViewEnvironment;

/// A page of check boxes, and the button that carries out what is ticked.
class CheckPage : public QWidget {
    Q_OBJECT

public:
    CheckPage(const ViewEnvironment& environment, const QString& executeTitle, QWidget* parent = nullptr);

Q_SIGNALS:
    void executed();

protected:
    /// @param choices  where it is kept what is ticked
    template <typename Toggle, typename Choices>
    void addSections(const QList<ServiceSection<Choices>>& sections, Choices& choices) {
        for (const ServiceSection<Choices>& section : sections) {
            QList<QCheckBox*> toggles;
            for (const ServiceBox<Choices>& box : section.boxes) {
                auto* const toggle = new Toggle(box.text);
                bool& isTicked = choices.*box.isTicked;
                connect(toggle, &QCheckBox::toggled, this, [this, &isTicked](bool isOn) {
                    isTicked = isOn;
                    updateExecutable();
                });
                toggles.append(toggle);
            }
            addSection(section.title, toggles);
        }
        finish();
    }
    /// Nothing is ticked any more.
    void untick();
    virtual bool canExecute() const { return true; }

private:
    void addSection(const QString& title, const QList<QCheckBox*>& toggles);
    void finish();
    void updateExecutable();

    ScrollPage* m_page;
    QPushButton* m_execute;
    QList<QCheckBox*> m_toggles;
};

} // namespace quorvane
