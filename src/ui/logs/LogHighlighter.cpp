#include "ui/logs/LogHighlighter.h"

#include "ui/Theme.h"

#include <QEvent>
#include <QRegularExpression>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QColor inkOfTag(const Theme& theme, const QString& tag) {
    if (tag == u"ERROR"_s || tag == u"FAILED"_s) {
        return theme.danger;
    }
    if (tag == u"OK"_s || tag == u"APPLIED"_s || tag == u"RESTORED"_s || tag == u"REVERTED"_s || tag == u"ACTION"_s) {
        return theme.success;
    }
    return tag == u"SKIPPED"_s || tag == u"INFO"_s ? theme.secondaryText : theme.accentText;
}

} // namespace

LogHighlighter::LogHighlighter(QPlainTextEdit& view)
    : QSyntaxHighlighter(view.document())
    , m_view(view) {
    view.installEventFilter(this);
}

void LogHighlighter::highlightBlock(const QString& text) {
    static const QRegularExpression tagged(u"^ *\\[([A-Z ]+)\\]"_s);
    const QRegularExpressionMatch match = tagged.match(text);
    if (match.hasMatch()) {
        setFormat(0, static_cast<int>(match.capturedLength()), inkOfTag(themeOf(&m_view), match.captured(1)));
    }
}

bool LogHighlighter::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::StyleChange) {
        rehighlight();
    }
    return QSyntaxHighlighter::eventFilter(watched, event);
}

} // namespace quorvane
