#include "app/simulated/FingerDialog.h"

#include "ui/pieces/AppButtons.h"
#include "ui/pieces/SymbolView.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int kFinger = 44;
constexpr int kFingerText = 300;

TextLabel* fingerText(TextStyle style, TextTone tone, const QString& text, int width) {
    TextLabel* const label = TextLabel::centred(style, tone, text);
    label->setFixedWidth(width);
    return label;
}

} // namespace

FingerDialog::FingerDialog(const QString& reason) {
    setAccessibleName(reason);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(Theme::kGap24, Theme::kGap24, Theme::kGap24, Theme::kGap16);
    column->setSpacing(Theme::kGap8);
    column->setSizeConstraint(QLayout::SetFixedSize);
    column->addWidget(new SymbolView(u"touchid"_s, kFinger, nullptr, TextTone::Danger), 0, Qt::AlignHCenter);
    auto* const buttonRow = new QWidget;
    auto* const buttons = new QHBoxLayout(buttonRow);
    buttons->setContentsMargins(0, 0, 0, 0);
    buttons->setSpacing(Theme::kGap8);
    auto* const cancel = new AppSecondaryButton(u"Cancel"_s);
    auto* const passcode = new AppSecondaryButton(u"Mac’s Password"_s);
    auto* const other = new AppSecondaryButton(u"Another Finger"_s);
    auto* const own = new AppPrimaryButton(u"Enrolled Finger"_s);
    for (QPushButton* const button : std::initializer_list<QPushButton*>{cancel, passcode, other, own}) {
        buttons->addWidget(button);
    }
    const int width = std::max(kFingerText, buttonRow->sizeHint().width());
    column->addWidget(fingerText(TextStyle::SectionTitle, TextTone::Normal, reason, width));
    column->addWidget(fingerText(TextStyle::Secondary, TextTone::Secondary,
                                 u"This is a simulated Mac. Choose which finger touches its sensor."_s, width));
    column->addWidget(buttonRow);
    connect(cancel, &QPushButton::clicked, this, &FingerDialog::reject);
    connect(passcode, &QPushButton::clicked, this, [this] { end(BiometricAnswer::Passcode); });
    connect(other, &QPushButton::clicked, this, [this] { end(BiometricAnswer::Refuse); });
    connect(own, &QPushButton::clicked, this, [this] { end(BiometricAnswer::Accept); });
    own->setFocus();
}

void FingerDialog::reject() {
    end(BiometricAnswer::Cancel);
}

void FingerDialog::end(BiometricAnswer answer) {
    if (!std::exchange(m_isAnswered, true)) {
        hide();
        deleteLater();
        Q_EMIT answered(answer);
    }
}

} // namespace quorvane
