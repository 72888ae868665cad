// The dialogs in which a simulated Mac asks whoever sits before it.

#include "app/simulated/AuthorizationDialog.h"
#include "app/simulated/AuthorizationDialogs.h"
#include "app/simulated/FingerDialog.h"
#include "app/simulated/FingerDialogs.h"
#include "fakes/EventLoop.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;
using macsim::Authorization;

namespace {

const QString kPrompt = u"Quorvane needs your administrator password to apply Live Set."_s;
const QString kWrong = u"That isn’t the password. Try again."_s;

macsim::Machine machineOf(const QString& user, const QString& password) {
    macsim::Machine machine;
    machine.userName = user;
    machine.password = password;
    return machine;
}

template <typename Dialog>
Dialog* dialogOnScreen() {
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (auto* const dialog = qobject_cast<Dialog*>(window); dialog != nullptr && dialog->isVisible()) {
            return dialog;
        }
    }
    return nullptr;
}

QStringList textsOf(const QWidget* dialog) {
    QStringList texts;
    for (const auto* const label : dialog->findChildren<QLabel*>()) {
        if (label->isVisible() && !label->text().isEmpty()) {
            texts.append(label->text());
        }
    }
    return texts;
}

void clickIn(const QWidget* dialog, const QString& text) {
    for (auto* const button : dialog->findChildren<QAbstractButton*>()) {
        if (button->text() == text) {
            QTest::mouseClick(button, Qt::LeftButton);
            return;
        }
    }
    FAIL() << "no button is called " << text.toStdString();
}

/// The names of what Tab leads to, from where the focus is, once round.
QStringList tabOrderOf(QWidget* dialog) {
    QStringList names;
    QWidget* const first = dialog->focusWidget();
    QWidget* now = first;
    do {
        const auto* const button = qobject_cast<const QAbstractButton*>(now);
        names.append(button != nullptr ? button->text() : now->accessibleName());
        QTest::keyClick(now, Qt::Key_Tab);
        now = dialog->focusWidget();
    } while (now != first && names.size() < 10);
    return names;
}

class AuthorizationDialogTest : public ::testing::Test {
protected:
    void SetUp() override {
        dialogs.setMachine(machineOf(u"alex"_s, u"s3cret"_s));
        answer = dialogs.ask(kPrompt);
        ASSERT_NE(dialog(), nullptr);
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog()));
    }
    static AuthorizationDialog* dialog() { return dialogOnScreen<AuthorizationDialog>(); }
    static QLineEdit* field() { return dialog()->findChild<QLineEdit*>(); }
    /// By keys, into what has the focus.
    static void type(const QString& password) {
        QTest::keyClicks(dialog()->focusWidget(), password);
        QTest::keyClick(dialog()->focusWidget(), Qt::Key_Return);
    }
    bool isAnsweredBy(Authorization authorization) const {
        return answer.isFinished() && answer.result() == authorization && dialog() == nullptr;
    }

    AuthorizationDialogs dialogs;
    QFuture<Authorization> answer;
};

class FingerDialogTest : public ::testing::Test {
protected:
    void SetUp() override {
        answer = dialogs.ask(u"Unlock Quorvane"_s);
        ASSERT_NE(dialog(), nullptr);
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog()));
    }
    static FingerDialog* dialog() { return dialogOnScreen<FingerDialog>(); }
    bool isAnsweredBy(BiometricAnswer expected) const {
        return answer.isFinished() && answer.result() == expected && dialog() == nullptr;
    }

    FingerDialogs dialogs;
    QFuture<BiometricAnswer> answer;
};

} // namespace

TEST_F(AuthorizationDialogTest, saysWhatForWhoseAndThatThisIsASimulatedMac) {
    EXPECT_EQ(textsOf(dialog()), (QStringList{kPrompt, u"Enter the password of “alex” to allow this."_s,
                                              u"This is a simulated Mac. Its password is “s3cret”."_s}));
    EXPECT_EQ(dialog()->accessibleName(), kPrompt);
    EXPECT_EQ(dialog()->windowModality(), Qt::ApplicationModal);
    EXPECT_EQ(field()->echoMode(), QLineEdit::Password);
    const auto labels = dialog()->findChildren<QLabel*>();
    EXPECT_LT(labels.last()->fontMetrics().height(), labels.first()->fontMetrics().height());
}

TEST_F(AuthorizationDialogTest, isUsedByKeys) {
    EXPECT_EQ(tabOrderOf(dialog()), (QStringList{u"Password"_s, u"Cancel"_s, u"OK"_s}));
    type(u"s3cret"_s);
    EXPECT_TRUE(isAnsweredBy(Authorization::Allow));
}

TEST_F(AuthorizationDialogTest, isUsedByClicks) {
    QTest::keyClicks(field(), u"s3cret"_s);
    clickIn(dialog(), u"OK"_s);
    EXPECT_TRUE(isAnsweredBy(Authorization::Allow));
}

TEST_F(AuthorizationDialogTest, asksAgainAfterAWrongOne) {
    type(u"guess"_s);
    EXPECT_FALSE(answer.isFinished());
    EXPECT_TRUE(textsOf(dialog()).contains(kWrong));
    EXPECT_EQ(field()->text(), QString());
    EXPECT_EQ(dialog()->focusWidget(), field());
    type(u"s3cret"_s);
    EXPECT_TRUE(isAnsweredBy(Authorization::Allow));
}

TEST_F(AuthorizationDialogTest, theThirdWrongOneIsARefusal) {
    type(u"one"_s);
    type({});
    EXPECT_FALSE(answer.isFinished());
    type(u"S3cret"_s);
    EXPECT_TRUE(isAnsweredBy(Authorization::Deny));
}

TEST_F(AuthorizationDialogTest, cancelEscapeAndClosingAreTheSame) {
    const QList<void (*)(QWidget*)> ways{
        [](QWidget* dialog) { clickIn(dialog, u"Cancel"_s); },
        [](QWidget* dialog) { QTest::keyClick(dialog, Qt::Key_Escape); },
        [](QWidget* dialog) { dialog->close(); },
    };
    for (const auto way : ways) {
        way(dialog());
        EXPECT_TRUE(isAnsweredBy(Authorization::Cancel));
        answer = dialogs.ask(kPrompt);
    }
}

TEST_F(AuthorizationDialogTest, goesWhenNobodyWaitsForTheAnswerAnyMore) {
    answer.cancel();
    processEventsUntil([] { return dialog() == nullptr; });
}

TEST_F(AuthorizationDialogTest, atTheEndWhatIsOpenIsCancelledAndNothingOpensAnyMore) {
    dialogs.shutDown();
    EXPECT_TRUE(isAnsweredBy(Authorization::Cancel));
    answer = dialogs.ask(kPrompt);
    EXPECT_TRUE(isAnsweredBy(Authorization::Cancel));
}

TEST_F(FingerDialogTest, saysWhatForAndThatThisIsASimulatedMac) {
    EXPECT_EQ(textsOf(dialog()), (QStringList{u"Unlock Quorvane"_s,
                                              u"This is a simulated Mac. Choose which finger touches its sensor."_s}));
    EXPECT_EQ(dialog()->accessibleName(), u"Unlock Quorvane"_s);
}

TEST_F(FingerDialogTest, returnIsTheEnrolledFinger) {
    EXPECT_EQ(tabOrderOf(dialog()),
              (QStringList{u"Enrolled Finger"_s, u"Cancel"_s, u"Mac’s Password"_s, u"Another Finger"_s}));
    QTest::keyClick(dialog()->focusWidget(), Qt::Key_Return);
    EXPECT_TRUE(isAnsweredBy(BiometricAnswer::Accept));
}

TEST_F(FingerDialogTest, thePasswordOfTheMacMayBeTypedInstead) {
    clickIn(dialog(), u"Mac’s Password"_s);
    EXPECT_TRUE(isAnsweredBy(BiometricAnswer::Passcode));
}

TEST_F(FingerDialogTest, anotherFingerIsRefused) {
    clickIn(dialog(), u"Another Finger"_s);
    EXPECT_TRUE(isAnsweredBy(BiometricAnswer::Refuse));
}

TEST_F(FingerDialogTest, cancelEscapeAndClosingAreTheSame) {
    const QList<void (*)(QWidget*)> ways{
        [](QWidget* dialog) { clickIn(dialog, u"Cancel"_s); },
        [](QWidget* dialog) { QTest::keyClick(dialog, Qt::Key_Escape); },
        [](QWidget* dialog) { dialog->close(); },
    };
    for (const auto way : ways) {
        way(dialog());
        EXPECT_TRUE(isAnsweredBy(BiometricAnswer::Cancel));
        answer = dialogs.ask(u"Unlock Quorvane"_s);
    }
}

TEST_F(FingerDialogTest, atTheEndWhatIsOpenIsCancelled) {
    dialogs.shutDown();
    EXPECT_TRUE(isAnsweredBy(BiometricAnswer::Cancel));
}

} // namespace quorvane
