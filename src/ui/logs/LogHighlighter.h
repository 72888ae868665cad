#pragma once

#include <QPlainTextEdit>
#include <QSyntaxHighlighter>

namespace quorvane {

/// Tints the tags of log lines by what they say; the word itself says it, too.
class LogHighlighter : public QSyntaxHighlighter {
    Q_OBJECT

public:
    explicit LogHighlighter(QPlainTextEdit& view);

protected:
    void highlightBlock(const QString& text) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QPlainTextEdit& m_view;
};

} // namespace quorvane
