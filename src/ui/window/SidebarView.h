#pragma once

#include "actions/WindowTexts.h"

#include <QWidget>

class QListWidget;

namespace quorvane {

/// The tabs in their groups, and the program's name at the foot.
class SidebarView : public QWidget {
    Q_OBJECT

public:
    explicit SidebarView(QWidget* parent = nullptr);

    /// In which every tab's text has room, however large texts are.
    int widthOfTexts() const;
    void setSelectedTab(Tab tab);

Q_SIGNALS:
    void tabSelected(Tab tab);
    void documentationRequested();

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void addGroups();
    void takeTheme();
    QWidget* makeDocumentationButton();
    QWidget* makeFoot();

    QListWidget* m_list;
};

} // namespace quorvane
