#pragma once

#include "actions/WindowTexts.h"

#include <QHash>
#include <QStackedWidget>

namespace quorvane {

struct ViewEnvironment;

/// The page of the selected tab. A tab is made when it is shown first, and then kept.
class MainContentArea : public QStackedWidget {
    Q_OBJECT

public:
    explicit MainContentArea(const ViewEnvironment& environment, QWidget* parent = nullptr);

    void setSelectedTab(Tab tab);

private:
    QWidget* makePage(Tab tab);

    const ViewEnvironment& m_environment;
    QHash<Tab, QWidget*> m_loadedTabs;
};

} // namespace quorvane
