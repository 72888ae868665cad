#pragma once

#include <QWidget>

class QLineEdit;
class QPushButton;
class QVBoxLayout;

namespace quorvane {

class StartupItemsModel;
class StartupItemsView;
class TextLabel;
struct ViewEnvironment;

/// The startup half of the working copy: what runs at login, to be switched, searched, added to and reviewed.
class StartupItemsEditor : public QWidget {
    Q_OBJECT

public:
    struct Options {
        bool showActions = true;          ///< the buttons below
        bool disabled = false;            ///< all of it is only to be read
        bool offersClearSelection = true; ///< among the buttons
    };
    StartupItemsEditor(const ViewEnvironment& environment, const Options& options, QWidget* parent = nullptr);

Q_SIGNALS:
    /// Escape, with nothing searched.
    void backRequested();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    static QWidget* makeAbout();
    QWidget* makeTop();
    QWidget* makeButtons(const Options& options);
    void act(const QModelIndex& index);
    void review();
    void takeFindings();
    void takeStartup();
    void showAdded(const QString& id);
    void leaveRoomForRows();

    const ViewEnvironment& m_environment;
    StartupItemsModel* m_model;
    StartupItemsView* m_view;
    QWidget* m_about = nullptr;
    QLineEdit* m_search = nullptr;
    TextLabel* m_count = nullptr;
    TextLabel* m_unread = nullptr;
    QPushButton* m_refresh = nullptr;
    QPushButton* m_review = nullptr; ///< none where there are no actions
};

} // namespace quorvane
