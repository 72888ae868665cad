#pragma once

#include "actions/LockActions.h"
#include "appearance/AppearanceManager.h"
#include "fakes/ManualSystemLook.h"
#include "fakes/RecordingAppearance.h"
#include "fakes/WindowActions.h"
#include "ui/ViewEnvironment.h"
#include "ui/alerts/AlertDialog.h"
#include "ui/documentation/DocumentationOpener.h"
#include "ui/documentation/WindowDocumentation.h"
#include "ui/performance/PerformanceView.h"
#include "ui/window/ContentView.h"
#include "ui/window/MainWindow.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace quorvane {

/// The main window over scripted ports, in whatever state a test brings it.
class ShownWindow : public WindowActions {
protected:
    ShownWindow() { QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path()); }
    void TearDown() override {
        mainWindow.reset();
        WindowActions::TearDown();
    }

    /// Opens it with what is known by now.
    void open() {
        if (!session->savedProfiles.wasRead()) {
            listProfiles();
        }
        mainWindow = std::make_unique<MainWindow>(environment);
        mainWindow->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(mainWindow.get()));
        settle();
    }
    void saveProfiles(int count) {
        for (int number = 1; number <= count; ++number) {
            addProfile(numberedProfile(number + 1, u"Gig %1"_s.arg(number)));
        }
    }
    /// What is to come in this turn of the event loop and the next ones has come.
    static void settle() {
        for (int turn = 0; turn < 5; ++turn) {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
        }
    }
    static QString nameOf(const QWidget& widget) {
        return widget.accessibleName().isEmpty() ? widget.property("text").toString() : widget.accessibleName();
    }
    /// The control that can be seen under that name.
    QWidget* named(const QString& name, QWidget* in = nullptr) const {
        QWidget* const where = in != nullptr ? in : mainWindow.get();
        for (QWidget* const widget : where->findChildren<QWidget*>()) {
            if (widget->isVisible() && widget->focusPolicy() != Qt::NoFocus && nameOf(*widget) == name) {
                return widget;
            }
        }
        ADD_FAILURE() << "no control is called " << name.toStdString();
        return nullptr;
    }
    void click(const QString& name) const {
        if (QWidget* const widget = named(name)) {
            QTest::mouseClick(widget, Qt::LeftButton);
        }
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const {
        QWidget* const focused = mainWindow->focusWidget();
        QTest::keyClick(focused != nullptr ? focused : mainWindow.get(), key, modifiers);
    }
    QString focusedName() const {
        const QWidget* const focused = mainWindow->focusWidget();
        return focused != nullptr ? nameOf(*focused) : QString();
    }

    QTemporaryDir folder;
    RecordingAppearance look;
    ManualSystemLook systemLook;
    AppearanceManager appearance{look, systemLook, defaults};
    LockActions lockActions{session->stage, *lock};
    WindowDocumentation documentationWindow;
    DocumentationOpener documentation{workspace, documentationWindow};
    ViewEnvironment environment{*session, *lock,     lockActions, appearance,   reviews,
                                window,   workspace, clock,       documentation};
    std::unique_ptr<MainWindow> mainWindow;
};

} // namespace quorvane
