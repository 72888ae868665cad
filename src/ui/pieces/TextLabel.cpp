#include "ui/pieces/TextLabel.h"

#include "ui/pieces/LongWords.h"

#include <QEvent>

namespace quorvane {

TextLabel::TextLabel(TextStyle style, TextTone tone, const QString& text)
    : m_style(style)
    , m_tone(tone) {
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    takeTheme();
    setText(text);
}

TextLabel* TextLabel::centred(TextStyle style, TextTone tone, const QString& text) {
    auto* const label = new TextLabel(style, tone, text);
    label->setAlignment(Qt::AlignCenter);
    return label;
}

void TextLabel::setTone(TextTone tone) {
    m_tone = tone;
    takeTheme();
}

/// A reader and those who look for it get it as it is.
void TextLabel::setText(const QString& text) {
    const QString broken = withBreaksInLongWords(text);
    setAccessibleName(broken == text ? QString() : text);
    m_heights.forget();
    QLabel::setText(broken);
}

int TextLabel::heightForWidth(int width) const {
    if (!wordWrap()) {
        return QLabel::heightForWidth(width);
    }
    return m_heights.at(width, 0, [this](int at) { return QLabel::heightForWidth(at); });
}

void TextLabel::changeEvent(QEvent* event) {
    m_heights.forget(); // mostly the font
    QLabel::changeEvent(event);
    if (event->type() == QEvent::StyleChange) {
        takeTheme();
    }
}

void TextLabel::takeTheme() {
    if (m_isTakingTheme) {
        return; // setting the font is a change of its own
    }
    m_isTakingTheme = true;
    const Theme& theme = themeOf(this);
    setFont(theme.font(m_style));
    QPalette ink = palette();
    ink.setColor(QPalette::WindowText, inkOf(theme, m_tone));
    setPalette(ink);
    m_isTakingTheme = false;
}

QColor inkOf(const Theme& theme, TextTone tone) {
    switch (tone) {
    case TextTone::Secondary:
        return theme.secondaryText;
    case TextTone::Success:
        return theme.success;
    case TextTone::Warning:
        return theme.warning;
    case TextTone::Danger:
        return theme.danger;
    case TextTone::Normal:
        break;
    }
    return theme.text;
}

} // namespace quorvane
