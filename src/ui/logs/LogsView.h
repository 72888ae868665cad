#pragma once

#include "ui/logs/LogModel.h"
#include "ui/logs/LogSearch.h"

#include <QPointer>
#include <QWidget>

#include <memory>

namespace QCoro {
template <typename T>
class Task;
}

class QLineEdit;
class QPushButton;

namespace quorvane {

class AppCard;
class AppSwitch;
class LogLinesView;
class MenuButton;
class TextLabel;
struct KeptRun;
struct ViewEnvironment;

/// The log: what is searched and shown of it in a bar above, below that what is done with it, and the lines. Of an earlier run
/// there is what was kept when it was chosen.
class LogsView : public QWidget {
    Q_OBJECT

public:
    explicit LogsView(const ViewEnvironment& environment, QWidget* parent = nullptr);
    ~LogsView() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* makeSearchBar();
    QWidget* makeActionBar();
    void makeLatestButton();
    void makeShortcuts();
    void fillTagMenu();
    void showTag(const std::optional<QString>& tag);
    void fillRunMenu();
    void showThisRun();
    void chooseRun(const KeptRun& run);
    static QCoro::Task<void> readRun(QPointer<LogsView> view, KeptRun run);
    void followRun(const QString& whenEmpty);
    void beginSearch(const QString& text);
    void searchOn(LogSearch::Direction direction);
    void placeLatest();
    void followIdle();
    void exportLog();

    const ViewEnvironment& m_environment;
    LogModel m_model;
    LogSearch m_search{m_model};
    LogLinesView* m_lines;
    AppCard* m_card;
    QLineEdit* m_searchField;
    TextLabel* m_searchOutcome;
    QPushButton* m_previous;
    QPushButton* m_next;
    MenuButton* m_run;
    MenuButton* m_tag;
    AppSwitch* m_debug;
    QPushButton* m_clear;
    QPushButton* m_export;
    std::unique_ptr<KeptRun> m_kept; ///< the earlier run that is shown; none where it is this one
    bool m_isReading = false;        ///< that run's log
    QString m_whenEmpty;
    QPushButton* m_latest = nullptr;
};

} // namespace quorvane
