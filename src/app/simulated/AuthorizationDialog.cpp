#include "app/simulated/AuthorizationDialog.h"

#include "ui/pieces/Announcement.h"
#include "ui/pieces/AppButtons.h"
#include "ui/pieces/SymbolView.h"
#include "ui/pieces/TextLabel.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QVBoxLayout>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int kLock = 44;
constexpr int kDialogText = 320;

TextLabel* dialogText(TextStyle style, TextTone tone, const QString& text) {
    auto* const label = new TextLabel(style, tone, text);
    label->setFixedWidth(kDialogText);
    return label;
}

} // namespace

AuthorizationDialog::AuthorizationDialog(const QString& prompt, const macsim::Machine& machine)
    : m_attempts(machine.password)
    , m_password(new QLineEdit)
    , m_error(dialogText(TextStyle::Body, TextTone::Danger, {})) {
    setAccessibleName(prompt);
    m_password->setEchoMode(QLineEdit::Password);
    m_password->setPlaceholderText(u"Password"_s);
    m_password->setAccessibleName(u"Password"_s);
    m_error->hide();
    auto* const across = new QHBoxLayout(this);
    across->setContentsMargins(Theme::kGap24, Theme::kGap24, Theme::kGap24, Theme::kGap16);
    across->setSpacing(Theme::kGap16);
    across->setSizeConstraint(QLayout::SetFixedSize);
    across->addWidget(new SymbolView(u"lock.fill"_s, kLock, nullptr, TextTone::Secondary), 0, Qt::AlignTop);
    auto* const column = new QVBoxLayout;
    column->setSpacing(Theme::kGap8);
    across->addLayout(column);
    column->addWidget(dialogText(TextStyle::SectionTitle, TextTone::Normal, prompt));
    column->addWidget(dialogText(TextStyle::Body, TextTone::Normal,
                                 u"Enter the password of “%1” to allow this."_s.arg(machine.userName)));
    column->addWidget(m_password);
    column->addWidget(m_error);
    column->addWidget(dialogText(TextStyle::Secondary, TextTone::Secondary,
                                 u"This is a simulated Mac. Its password is “%1”."_s.arg(machine.password)));
    auto* const buttons = new QHBoxLayout;
    buttons->setSpacing(Theme::kGap8);
    auto* const cancel = new AppSecondaryButton(u"Cancel"_s);
    auto* const allow = new AppPrimaryButton(u"OK"_s);
    buttons->addStretch(1);
    buttons->addWidget(cancel);
    buttons->addWidget(allow);
    column->addLayout(buttons);
    connect(cancel, &QPushButton::clicked, this, &AuthorizationDialog::reject);
    connect(allow, &QPushButton::clicked, this, &AuthorizationDialog::submit);
    m_password->setFocus();
}

void AuthorizationDialog::submit() {
    const QString typed = m_password->text();
    m_password->clear();
    if (const std::optional<macsim::Authorization> ending = m_attempts.ending(typed)) {
        end(*ending);
        return;
    }
    m_error->setText(u"That isn’t the password. Try again."_s);
    m_error->show();
    announce(m_error, m_error->text());
    m_password->setFocus();
}

void AuthorizationDialog::reject() {
    end(macsim::Authorization::Cancel);
}

void AuthorizationDialog::end(macsim::Authorization authorization) {
    if (!std::exchange(m_isAnswered, true)) {
        hide();
        deleteLater();
        Q_EMIT answered(authorization);
    }
}

} // namespace quorvane
