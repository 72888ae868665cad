#pragma once

#include <QWidget>

class QPlainTextEdit;

namespace quorvane {

struct ViewEnvironment;

/// The log, with its newest line in view.
class LogsView : public QWidget {
    Q_OBJECT

public:
    explicit LogsView(const ViewEnvironment& environment, QWidget* parent = nullptr);

protected:
    void changeEvent(QEvent* event) override;

private:
    void append(const QString& message);
    void takeTheme();

    QPlainTextEdit* m_list;
};

} // namespace quorvane
