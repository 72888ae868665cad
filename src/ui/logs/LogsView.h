#pragma once

#include <QWidget>

class QPlainTextEdit;

namespace quorvane {

class AppCard;
struct ViewEnvironment;

/// The log, with its newest line in view.
class LogsView : public QWidget {
    Q_OBJECT

public:
    explicit LogsView(const ViewEnvironment& environment, QWidget* parent = nullptr);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void append(const QString& message);
    void takeTheme();

    QPlainTextEdit* m_list;
    AppCard* m_card = nullptr;
};

} // namespace quorvane
