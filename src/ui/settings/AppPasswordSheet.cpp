#include "ui/settings/AppPasswordSheet.h"

#include "actions/AppPasswordEntry.h"
#include "lock/BiometryNames.h"
#include "lock/LockManager.h"
#include "lock/LockTexts.h"
#include "ui/QuorvaneStyle.h"
#include "ui/pieces/Announcement.h"
#include "ui/pieces/AppButtons.h"
#include "ui/pieces/TextLabel.h"

#include <QLineEdit>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

AppPasswordSheet::AppPasswordSheet(std::shared_ptr<AppPasswordEntry> entry, const LockManager& lock, QWidget* parent)
    : Sheet(parent)
    , m_entry(std::move(entry)) {
    setTitle(passwordSheetTitle(m_entry->mode()), {});
    setContents(makeFields());
    makeButtons();
    connect(this, &Sheet::closeRequested, m_entry.get(), &SheetModel::dismiss);
    connect(m_entry.get(), &SheetModel::changed, this, &AppPasswordSheet::takeEntry);
    connect(m_entry.get(), &SheetModel::ended, this, &AppPasswordSheet::empty);
    if (m_current != nullptr) {
        connect(m_entry.get(), &AppPasswordEntry::verified, m_current, &QLineEdit::setText);
    }
    connect(&lock, &LockManager::isUnlockedChanged, this, &AppPasswordSheet::empty);
    takeEntry();
}

AppPasswordSheet::~AppPasswordSheet() = default;

QWidget* AppPasswordSheet::makeFields() {
    auto* const fields = new QWidget;
    auto* const layout = new QVBoxLayout(fields);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Theme::kGap4);
    const AppPasswordSheetMode mode = m_entry->mode();
    if (mode != AppPasswordSheetMode::enable) {
        m_current = addField(kCurrentPasswordField, fields);
    }
    if (mode != AppPasswordSheetMode::disable) {
        m_new = addField(mode == AppPasswordSheetMode::enable ? kPasswordField : kNewPasswordField, fields);
        m_confirmation = addField(kConfirmPasswordField, fields);
    }
    m_error = new TextLabel(TextStyle::Body, TextTone::Danger);
    layout->addWidget(m_error);
    layout->addStretch(1);
    return fields;
}

QLineEdit* AppPasswordSheet::addField(const QString& name, QWidget* fields) {
    auto* const field = new QLineEdit;
    field->setEchoMode(QLineEdit::Password);
    field->setAccessibleName(name);
    fields->layout()->addWidget(new TextLabel(TextStyle::Secondary, TextTone::Secondary, name));
    fields->layout()->addWidget(field);
    connect(field, &QLineEdit::textChanged, this, &AppPasswordSheet::updateConfirm);
    return field;
}

void AppPasswordSheet::makeButtons() {
    if (const std::optional<BiometryType> biometry = m_entry->biometry()) {
        m_finger = new AppSecondaryButton(useBiometryText(*biometry));
        m_finger->setIcon(symbolOn(m_finger, biometrySymbolName(*biometry)));
        addButtonAside(m_finger);
        connect(m_finger, &QPushButton::clicked, m_entry.get(), &AppPasswordEntry::useFinger);
    }
    auto* const cancel = new AppSecondaryButton(u"Cancel"_s);
    m_confirm = new AppPrimaryButton(passwordSheetButton(m_entry->mode()));
    addButton(cancel);
    addButton(m_confirm);
    connect(cancel, &QPushButton::clicked, m_entry.get(), &SheetModel::dismiss);
    connect(m_confirm, &QPushButton::clicked, this, &AppPasswordSheet::submit);
}

QList<QLineEdit*> AppPasswordSheet::fields() const {
    QList<QLineEdit*> fields{m_current, m_new, m_confirmation};
    fields.removeAll(nullptr);
    return fields;
}

void AppPasswordSheet::showEvent(QShowEvent* event) {
    Sheet::showEvent(event);
    if (focusWidget() == nullptr) {
        fields().constFirst()->setFocus(Qt::OtherFocusReason);
    }
}

void AppPasswordSheet::takeEntry() {
    const QString& error = m_entry->error();
    const bool isNews = !error.isEmpty() && m_error->text() != error;
    m_error->setText(error);
    m_error->setVisible(!error.isEmpty());
    if (isNews) {
        announce(m_error, error);
    }
    if (m_finger != nullptr) {
        m_finger->setEnabled(!m_entry->isVerifying());
    }
    updateConfirm();
    Q_EMIT contentsChanged();
}

void AppPasswordSheet::updateConfirm() {
    const QList<QLineEdit*> all = fields();
    const bool isFilledIn =
        std::none_of(all.begin(), all.end(), [](const QLineEdit* field) { return field->text().isEmpty(); });
    m_confirm->setEnabled(isFilledIn && !m_entry->isVerifying());
}

void AppPasswordSheet::submit() {
    const auto textOf = [](const QLineEdit* field) { return field != nullptr ? field->text() : QString(); };
    m_entry->submit({textOf(m_current), textOf(m_new), textOf(m_confirmation)});
}

void AppPasswordSheet::empty() {
    for (QLineEdit* const field : fields()) {
        field->clear();
    }
}

} // namespace quorvane
