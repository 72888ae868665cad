#include "ui/lock/LockScreenView.h"

#include "actions/Tasks.h"
#include "lock/BiometryNames.h"
#include "lock/LockManager.h"
#include "lock/LockTexts.h"
#include "platform/Workspace.h"
#include "ui/QuorvaneStyle.h"
#include "ui/pieces/Announcement.h"
#include "ui/pieces/AppButtons.h"
#include "ui/pieces/TextLabel.h"
#include "ui/symbols/Logo.h"

#include <QGraphicsOpacityEffect>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPainter>
#include <QPointer>
#include <QVBoxLayout>

#include <QCoroTask>

#include <algorithm>

namespace quorvane {

namespace {

constexpr int kLogo = 72;
constexpr int kColumnWidth = 340; // the longest line takes one line

class LogoView : public QWidget {
public:
    LogoView() { setFixedSize(kLogo, kLogo); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        paintLogo(painter, rect());
    }
};

} // namespace

LockScreenView::LockScreenView(LockManager& lock, Workspace& workspace, Tasks& tasks, QWidget* parent)
    : QWidget(parent)
    , m_lock(lock)
    , m_workspace(workspace)
    , m_tasks(tasks) {
    auto* const layout = new QVBoxLayout(this);
    layout->addStretch(2);
    auto* const across = new QHBoxLayout;
    across->addStretch(1);
    across->addWidget(makeColumn());
    across->addStretch(1);
    layout->addLayout(across);
    layout->addStretch(3);
    setAccessibleName(kLockedTitle);
    m_fade.setStartValue(1.0);
    m_fade.setEndValue(0.0);
    connect(&m_fade, &QVariantAnimation::valueChanged, this, [this](const QVariant& share) {
        if (auto* const effect = qobject_cast<QGraphicsOpacityEffect*>(graphicsEffect())) {
            effect->setOpacity(share.toDouble());
        }
    });
    connect(&m_fade, &QVariantAnimation::finished, this, [this] {
        setGraphicsEffect(nullptr);
        hide();
        Q_EMIT gone();
    });
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, &LockScreenView::askForFingerWhenActive);
    hide();
}

QWidget* LockScreenView::makeColumn() {
    m_column = new QWidget;
    m_column->setFixedWidth(kColumnWidth);
    auto* const layout = new QVBoxLayout(m_column);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Theme::kGap8);
    auto* const title = TextLabel::centred(TextStyle::PageTitle, TextTone::Normal);
    title->setText(kLockedTitle);
    m_line = TextLabel::centred(TextStyle::Body, TextTone::Secondary);
    m_password = new QLineEdit;
    m_password->setEchoMode(QLineEdit::Password);
    m_password->setPlaceholderText(kPasswordField);
    m_password->setAccessibleName(kPasswordField);
    m_error = TextLabel::centred(TextStyle::Body, TextTone::Danger);
    m_unlock = new AppPrimaryButton(kUnlock);
    m_finger = new AppSecondaryButton({});
    layout->addWidget(new LogoView, 0, Qt::AlignHCenter);
    layout->addSpacing(Theme::kGap8);
    layout->addWidget(title);
    layout->addWidget(m_line);
    layout->addSpacing(Theme::kGap8);
    layout->addWidget(m_password);
    layout->addWidget(m_error);
    layout->addWidget(m_unlock);
    layout->addWidget(m_finger);
    connect(m_password, &QLineEdit::returnPressed, this, &LockScreenView::submit);
    connect(m_unlock, &QPushButton::clicked, this, &LockScreenView::submit);
    connect(m_finger, &QPushButton::clicked, this, &LockScreenView::askForFinger);
    return m_column;
}

void LockScreenView::appear() {
    m_fade.stop();
    setGraphicsEffect(nullptr);
    setAttribute(Qt::WA_TransparentForMouseEvents, false);
    m_password->clear();
    showError({});
    updateButtons();
    m_owesFinger = m_lock.supportsBiometric();
    show();
    raise();
    takeFocus();
    announce(this, kLockedTitle);
    askForFingerWhenActive();
}

void LockScreenView::takeFocus() {
    m_password->setFocus(Qt::OtherFocusReason);
}

void LockScreenView::disappear() {
    m_owesFinger = false;
    m_password->clear();
    showError({});
    m_password->clearFocus();
    if (!isVisible()) {
        return;
    }
    setAttribute(Qt::WA_TransparentForMouseEvents); // what shines through can be clicked
    setGraphicsEffect(new QGraphicsOpacityEffect(this));
    m_fade.setDuration(static_cast<int>(themeOf(this).moving(Theme::kFade).count()));
    m_fade.start();
}

void LockScreenView::updateButtons() {
    const bool canUseFinger = m_lock.supportsBiometric();
    const BiometryType biometry = m_lock.biometryType();
    m_line->setText(lockScreenText(canUseFinger ? std::optional(biometry) : std::nullopt));
    m_finger->setText(unlockWithBiometryText(biometry));
    m_finger->setIcon(symbolOn(m_finger, biometrySymbolName(biometry)));
    m_finger->setVisible(canUseFinger);
    m_finger->setEnabled(!m_isAuthenticatingBiometrics);
    m_column->setFixedWidth(std::max(kColumnWidth, m_finger->sizeHint().width()));
}

void LockScreenView::submit() {
    const QString password = m_password->text();
    m_password->clear();
    if (m_lock.isUnlocked()) {
        return;
    }
    showError({});
    if (!m_lock.unlockWithPassword(password)) {
        showError(kIncorrectPassword);
        m_password->setFocus(Qt::OtherFocusReason);
    }
}

/// Never over another program.
void LockScreenView::askForFingerWhenActive() {
    if (m_owesFinger && isVisible() && m_workspace.isActive()) {
        askForFinger();
    }
}

void LockScreenView::askForFinger() {
    m_owesFinger = false;
    if (!m_isAuthenticatingBiometrics && !m_lock.isUnlocked()) {
        m_tasks.start(unlockWithFinger());
    }
}

QCoro::Task<void> LockScreenView::unlockWithFinger() {
    const QPointer<LockScreenView> self(this);
    LockManager& lock = m_lock;
    m_isAuthenticatingBiometrics = true;
    showError({});
    updateButtons();
    const bool isUnlocked = co_await lock.unlockWithBiometrics();
    if (self.isNull()) {
        co_return; // its window was closed meanwhile
    }
    m_isAuthenticatingBiometrics = false;
    updateButtons();
    if (!isUnlocked) {
        showError(biometryFailedText(lock.biometryType()));
    }
}

void LockScreenView::showError(const QString& text) {
    m_error->setText(text);
    m_error->setVisible(!text.isEmpty());
    if (!text.isEmpty()) {
        announce(m_error, text);
    }
}

void LockScreenView::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), themeOf(this).window);
}

/// A window that opens in a program that is active already. The dialog may not come while the window is about to.
void LockScreenView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    QMetaObject::invokeMethod(this, &LockScreenView::askForFingerWhenActive, Qt::QueuedConnection);
}

} // namespace quorvane
