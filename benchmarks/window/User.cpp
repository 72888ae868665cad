#include "User.h"

#include "actions/PageTexts.h"

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLabel>
#include <QListView>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>

#include <cstdio>

namespace quorvane::user {

using namespace Qt::StringLiterals;

namespace {

constexpr int kPatience = 30'000; // milliseconds
constexpr int kLook = 25;         // milliseconds
constexpr int kTurnOfWheel = 360;

QString nameOf(const QWidget* widget) {
    if (!widget->accessibleName().isEmpty()) {
        return widget->accessibleName();
    }
    if (const auto* const button = qobject_cast<const QAbstractButton*>(widget)) {
        return button->text();
    }
    const auto* const label = qobject_cast<const QLabel*>(widget);
    return label != nullptr ? label->text() : QString();
}

QWidget* seenWidget(const QString& name) {
    for (QWidget* const widget : QApplication::allWidgets()) {
        if (widget->isVisible() && nameOf(widget) == name) {
            return widget;
        }
    }
    return nullptr;
}

} // namespace

void look() {
    QEventLoop loop;
    QTimer::singleShot(kLook, &loop, &QEventLoop::quit);
    loop.exec();
}

/// It looks now and then only, so that looking is no stall.
void waitUntil(const QString& what, const std::function<bool()>& condition) {
    QElapsedTimer waited;
    waited.start();
    while (!condition()) {
        if (waited.elapsed() > kPatience) {
            std::fprintf(stderr, "waited in vain: %s\n", qPrintable(what));
            std::_Exit(EXIT_FAILURE);
        }
        look();
    }
}

bool isSeen(const QString& name) {
    return seenWidget(name) != nullptr;
}

bool isUsable(const QString& name) {
    const QWidget* const widget = seenWidget(name);
    return widget != nullptr && widget->isEnabled();
}

void waitUntilSeen(const QString& name) {
    waitUntil(u"“%1” is seen"_s.arg(name), [&name] { return isSeen(name); });
}

void waitUntilGone(const QString& name) {
    waitUntil(u"“%1” is gone"_s.arg(name), [&name] { return !isSeen(name); });
}

QListView* listNamed(const QString& name) {
    for (QWidget* const widget : QApplication::allWidgets()) {
        auto* const list = qobject_cast<QListView*>(widget);
        if (list != nullptr && list->isVisible() && list->accessibleName() == name) {
            return list;
        }
    }
    return nullptr;
}

QListView* profileList() {
    return listNamed(kSavedProfilesTitle);
}

void click(const QString& name) {
    waitUntil(u"“%1” can be used"_s.arg(name), [&name] { return isUsable(name); });
    QTest::mouseClick(seenWidget(name), Qt::LeftButton);
}

void clickProfile(const QString& name) {
    waitUntil(u"the profiles can be used"_s, [] { return profileList()->isEnabled(); });
    QListView* const list = profileList();
    const QModelIndexList found =
        list->model()->match(list->model()->index(0, 0), Qt::DisplayRole, name, 1, Qt::MatchExactly);
    const QRect row = list->visualRect(found.value(0));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, row.topLeft() + QPoint(80, row.height() / 2));
}

void clickRow(QListView* list, const QModelIndex& row) {
    list->scrollTo(row);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(row).center());
}

void press(const QString& name, Qt::Key key) {
    waitUntilSeen(name);
    QTest::keyClick(seenWidget(name), key);
}

void type(const QString& name, const QString& text) {
    waitUntilSeen(name);
    QTest::keyClicks(seenWidget(name), text);
}

void scrollAlong(QWidget* widget) {
    QWidget* ancestor = widget->parentWidget();
    while (qobject_cast<QScrollArea*>(ancestor) == nullptr) {
        ancestor = ancestor->parentWidget();
    }
    const auto* const area = qobject_cast<QScrollArea*>(ancestor);
    const QScrollBar* const bar = area->verticalScrollBar();
    while (bar->value() < bar->maximum()) {
        const QPointF middle = QRectF(area->viewport()->rect()).center();
        QWheelEvent turn(middle, area->viewport()->mapToGlobal(middle), {}, {0, -kTurnOfWheel}, Qt::NoButton,
                         Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(area->viewport(), &turn);
        QEventLoop loop;
        QTimer::singleShot(1, &loop, &QEventLoop::quit); // it is painted, and there is a beat
        loop.exec();
    }
}

} // namespace quorvane::user
