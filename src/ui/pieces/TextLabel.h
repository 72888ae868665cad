#pragma once

#include "ui/Theme.h"
#include "ui/pieces/KnownHeights.h"

#include <QLabel>

namespace quorvane {

/// The colour in which a text is written.
enum class TextTone { Normal, Secondary, Success, Warning, Danger };

/// Plain text in one of the theme's styles. It wraps, and nothing in it is taken for markup.
class TextLabel : public QLabel {
    Q_OBJECT

public:
    explicit TextLabel(TextStyle style, TextTone tone = TextTone::Normal, const QString& text = {});
    /// One whose text stands in the middle.
    static TextLabel* centred(TextStyle style, TextTone tone = TextTone::Normal, const QString& text = {});

    void setTone(TextTone tone);
    void setText(const QString& text);

    int heightForWidth(int width) const override;

protected:
    void changeEvent(QEvent* event) override;

private:
    void takeTheme();

    TextStyle m_style;
    TextTone m_tone;
    bool m_isTakingTheme = false;
    mutable KnownHeights m_heights;
};

QColor inkOf(const Theme& theme, TextTone tone);

} // namespace quorvane
