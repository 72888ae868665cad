#pragma once

#include <QHash>
#include <QPointer>
#include <QStackedWidget>

#include <memory>

namespace quorvane {

class ProfileWizard;
struct ViewEnvironment;

/// The pages of the performance tab.
enum class PerformancePage { main, wizard, tweaks, startup };

/// The performance tab: its main page, and those that a row of it leads to. A page is made when it is visited first, and then
/// kept; the wizard begins anew each time.
class PerformanceView : public QStackedWidget {
    Q_OBJECT

public:
    explicit PerformanceView(const ViewEnvironment& environment, QWidget* parent = nullptr);

    void setCurrentPage(PerformancePage page);

private:
    QWidget* makePage(PerformancePage page);
    void editWhenIdle();
    void openWizard(std::unique_ptr<ProfileWizard> wizard);
    void leaveWizard();
    void show(PerformancePage page, QWidget* widget);

    const ViewEnvironment& m_environment;
    QHash<PerformancePage, QWidget*> m_visitedPages;
    QPointer<QWidget> m_wizard;
    QPointer<QWidget> m_ledAway; ///< the row of the main page that led to where the user is
};

} // namespace quorvane
