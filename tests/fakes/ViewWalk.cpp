#include "fakes/ViewWalk.h"

#include "ui/Theme.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QFontMetrics>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QProgressBar>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <QTextBrowser>
#include <QTextEdit>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

// ---- The accessible objects

const QHash<QAccessible::Role, QString>& controlRoles() {
    static const QHash<QAccessible::Role, QString> roles{
        {QAccessible::PushButton, u"button"_s},  {QAccessible::CheckBox, u"check box"_s},
        {QAccessible::RadioButton, u"choice"_s}, {QAccessible::EditableText, u"field"_s},
        {QAccessible::List, u"list"_s},          {QAccessible::ListItem, u"row"_s},
        {QAccessible::Dialog, u"dialog"_s},
    };
    return roles;
}

/// All that can be seen, from the window down.
void collectAccessible(QAccessibleInterface* accessible, QList<QAccessibleInterface*>& found) {
    if (accessible == nullptr || accessible->state().invisible) {
        return;
    }
    found.append(accessible);
    for (int index = 0; index < accessible->childCount(); ++index) {
        collectAccessible(accessible->child(index), found);
    }
}

QList<QAccessibleInterface*> accessibleTree(QWidget* window) {
    QList<QAccessibleInterface*> found;
    collectAccessible(QAccessible::queryAccessibleInterface(window), found);
    return found;
}

QString accessibleName(QAccessibleInterface& accessible) {
    return accessible.text(QAccessible::Name);
}

QString stateOf(QAccessibleInterface& accessible) {
    const QAccessible::State state = accessible.state();
    QStringList words;
    for (const auto& [isSo, word] :
         {std::pair(bool(state.disabled), u"disabled"_s), std::pair(bool(state.checked), u"checked"_s),
          std::pair(bool(state.passwordEdit), u"password"_s), std::pair(bool(state.readOnly), u"read only"_s),
          std::pair(bool(state.selected), u"selected"_s), std::pair(bool(state.focused), u"focused"_s)}) {
        if (isSo) {
            words.append(word);
        }
    }
    return words.isEmpty() ? QString() : u" ("_s + words.join(u", "_s) + u')';
}

/// The role that a widget is to have; none where any will do.
QAccessible::Role wantedRole(const QWidget* widget) {
    if (qobject_cast<const QCheckBox*>(widget) != nullptr) {
        return QAccessible::CheckBox;
    }
    if (qobject_cast<const QRadioButton*>(widget) != nullptr) {
        return QAccessible::RadioButton;
    }
    if (qobject_cast<const QAbstractButton*>(widget) != nullptr) {
        return QAccessible::PushButton;
    }
    if (qobject_cast<const QTextBrowser*>(widget) != nullptr) {
        return QAccessible::StaticText;
    }
    if (qobject_cast<const QLineEdit*>(widget) != nullptr) {
        return QAccessible::EditableText;
    }
    if (qobject_cast<const QListView*>(widget) != nullptr) {
        return QAccessible::List;
    }
    if (qobject_cast<const QProgressBar*>(widget) != nullptr) {
        return QAccessible::ProgressBar;
    }
    return qobject_cast<const QDialog*>(widget) != nullptr ? QAccessible::Dialog : QAccessible::NoRole;
}

QString described(const QWidget* widget) {
    const QString name = widget->accessibleName();
    return QString::fromLatin1(widget->metaObject()->className()) + u" “"_s +
           (name.isEmpty() ? widget->property("text").toString() : name) + u'”';
}

// ---- The Tab key

bool isStop(const QWidget* widget) {
    return widget->isVisible() && widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus) != 0 &&
           widget->focusProxy() == nullptr;
}

QList<QWidget*> tabStops(const QWidget* window) {
    QList<QWidget*> stops;
    for (QWidget* const widget : window->findChildren<QWidget*>()) {
        if (widget->window() == window && isStop(widget)) {
            stops.append(widget);
        }
    }
    return stops;
}

QRect placeIn(const QWidget* window, const QWidget* widget) {
    return {widget->mapTo(window, QPoint()), widget->size()};
}

/// Where the keys lead to from where the focus is, until they come back there.
QList<QWidget*> wayOf(QWidget* window, Qt::Key key, qsizetype atMost) {
    QList<QWidget*> way{window->focusWidget()};
    while (way.size() <= atMost) {
        QTest::keyClick(window->windowHandle(), key, key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier);
        if (window->focusWidget() == way.first()) {
            break;
        }
        way.append(window->focusWidget());
    }
    return way;
}

/// Below, to the right, or inside.
bool isReadLater(const QWidget* window, const QWidget* earlier, const QWidget* later) {
    const QRect first = placeIn(window, earlier);
    const QRect second = placeIn(window, later);
    return second.top() >= first.bottom() - 2 || second.left() >= first.right() - 2 || first.contains(second);
}

qsizetype ringPixels(QWidget* window, const QWidget* around) {
    constexpr int kReach = 6;
    const QRect part = placeIn(window, around).adjusted(-kReach, -kReach, kReach, kReach).intersected(window->rect());
    const QImage picture = window->grab(part).toImage().convertToFormat(QImage::Format_RGB32);
    const QRgb ring = themeOf(window).focusRing.rgb();
    qsizetype count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        const auto* const line = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        count += std::count(line, line + picture.width(), ring);
    }
    return count;
}

bool hasRing(QWidget* window, QWidget* focused) {
    constexpr qsizetype kLeast = 20;
    const qsizetype with = ringPixels(window, focused);
    focused->clearFocus();
    const qsizetype without = ringPixels(window, focused);
    focused->setFocus(Qt::TabFocusReason);
    return with >= without + kLeast;
}

// ---- Room

bool isInScrolledPart(const QWidget* widget) {
    const QWidget* const parent = widget->parentWidget();
    const auto* const area = parent != nullptr ? qobject_cast<const QScrollArea*>(parent->parentWidget()) : nullptr;
    return area != nullptr && area->viewport() == parent;
}

QSize neededSize(const QWidget* widget) {
    if (widget->hasHeightForWidth()) {
        return {widget->minimumSizeHint().width(), widget->heightForWidth(widget->width())};
    }
    const auto* const field = qobject_cast<const QLineEdit*>(widget);
    if (field != nullptr) {
        const int text = QFontMetrics(field->font()).horizontalAdvance(field->placeholderText());
        return {text + 2 * Theme::kGap8, field->sizeHint().height()};
    }
    return widget->sizeHint();
}

/// A row's text, beside a symbol and margins.
bool hasRoomForRows(const QListView& list) {
    if (list.viewMode() == QListView::IconMode) {
        return true;
    }
    for (int row = 0; row < list.model()->rowCount(); ++row) {
        const QModelIndex index = list.model()->index(row, 0);
        const QRect place = list.visualRect(index);
        const QFontMetrics metrics(themeOf(&list).font(TextStyle::RowTitle));
        const int least = metrics.horizontalAdvance(index.data().toString().left(16)) + 3 * Theme::kGap8;
        if (place.height() < metrics.height() || place.width() < least) {
            return false;
        }
    }
    return true;
}

} // namespace

QStringList accessibilityFaults(QWidget* window) {
    QStringList faults;
    QSet<const QObject*> found;
    QStringList names;
    for (QAccessibleInterface* const accessible : accessibleTree(window)) {
        found.insert(accessible->object());
        const QString name = accessibleName(*accessible);
        const QAccessible::Role role = accessible->role();
        const QString what = controlRoles().value(role) + u" “"_s + name + u'”';
        if (controlRoles().contains(role)) {
            if (name.trimmed().isEmpty()) {
                faults.append(u"without a name: "_s + what + u" in “"_s + accessibleName(*accessible->parent()) + u'”');
            }
            if (role != QAccessible::ListItem && role != QAccessible::Dialog && names.contains(what)) {
                faults.append(u"a second one: "_s + what);
            }
            names.append(what);
        } else if (role == QAccessible::Client && accessible->childCount() == 0 && !name.isEmpty()) {
            faults.append(u"named, and nothing in particular: “"_s + name + u'”');
        }
        const QAccessible::State state = accessible->state();
        const bool isFocusedByKeys = role == QAccessible::PushButton || role == QAccessible::CheckBox ||
                                     role == QAccessible::EditableText || role == QAccessible::List;
        if (isFocusedByKeys && !state.focusable && !state.disabled) {
            faults.append(u"out of reach: "_s + what);
        }
    }
    for (QWidget* const widget : window->findChildren<QWidget*>()) {
        if (widget->window() != window || !widget->isVisible()) {
            continue;
        }
        const QAccessible::Role wanted = wantedRole(widget);
        QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(widget);
        if (wanted != QAccessible::NoRole && (accessible == nullptr || accessible->role() != wanted)) {
            faults.append(u"of another role: "_s + described(widget));
        }
        if ((isStop(widget) || wanted != QAccessible::NoRole) && !found.contains(widget)) {
            faults.append(u"not in the tree: "_s + described(widget));
        }
    }
    return faults;
}

QStringList tabFaults(QWidget* window) {
    const QList<QWidget*> stops = tabStops(window);
    if (stops.isEmpty()) {
        return {u"nothing to use"_s};
    }
    QStringList faults;
    // From where the way begins when nothing has the focus.
    if (QWidget* const focused = window->focusWidget()) {
        focused->clearFocus();
    }
    QTest::keyClick(window->windowHandle(), Qt::Key_Tab);
    if (window->focusWidget() == nullptr) {
        return {u"the Tab key leads nowhere"_s};
    }
    QList<QWidget*> way{window->focusWidget()};
    while (way.size() <= stops.size()) {
        if (!hasRing(window, way.last())) {
            faults.append(u"without a ring: "_s + described(way.last()));
        }
        QTest::keyClick(window->windowHandle(), Qt::Key_Tab);
        QWidget* const next = window->focusWidget();
        if (next == way.first()) {
            break;
        }
        if (!isReadLater(window, way.last(), next)) {
            faults.append(u"too late: "_s + described(next) + u" after "_s + described(way.last()));
        }
        way.append(next);
    }
    for (const QWidget* const stop : stops) {
        if (!way.contains(stop)) {
            faults.append(u"never reached: "_s + described(stop));
        }
    }
    for (const QWidget* const stop : std::as_const(way)) {
        if (!stops.contains(stop)) {
            faults.append(u"reached, and not to be used: "_s + described(stop));
        }
    }
    QList<QWidget*> back = wayOf(window, Qt::Key_Backtab, stops.size());
    std::reverse(back.begin() + 1, back.end());
    if (back != way) {
        faults.append(u"another way back"_s);
    }
    return faults;
}

QStringList clippedTexts(QWidget* window) {
    QStringList clipped;
    for (QWidget* const widget : window->findChildren<QWidget*>()) {
        if (widget->window() != window || !widget->isVisible() || qobject_cast<QScrollBar*>(widget) != nullptr) {
            continue;
        }
        const auto* const button = qobject_cast<QAbstractButton*>(widget);
        const bool hasText = qobject_cast<QLabel*>(widget) != nullptr || qobject_cast<QLineEdit*>(widget) != nullptr ||
                             (button != nullptr && (!button->text().isEmpty() || button->hasHeightForWidth()));
        const QSize needed = hasText ? neededSize(widget) : QSize(0, 0);
        if (needed.width() > widget->width() || needed.height() > widget->height()) {
            clipped.append(described(widget) + u": %1 x %2 in %3 x %4"_s.arg(needed.width())
                                                   .arg(needed.height())
                                                   .arg(widget->width())
                                                   .arg(widget->height()));
        }
        const auto* const list = qobject_cast<QListView*>(widget);
        if (list != nullptr && !hasRoomForRows(*list)) {
            clipped.append(u"rows of "_s + described(widget));
        }
        const QRect parent = widget->parentWidget()->rect();
        const QRect place = widget->geometry();
        const bool sticksOut = place.left() < 0 || place.right() > parent.right() ||
                               (!isInScrolledPart(widget) && (place.top() < 0 || place.bottom() > parent.bottom()));
        if (sticksOut) {
            clipped.append(described(widget) + u" sticks out of "_s + described(widget->parentWidget()) +
                           u": %1…%2 of %3, %4…%5 of %6"_s.arg(place.left())
                               .arg(place.right())
                               .arg(parent.width())
                               .arg(place.top())
                               .arg(place.bottom())
                               .arg(parent.height()));
        }
    }
    return clipped;
}

QStringList spokenControls(QWidget* window) {
    QStringList controls;
    for (QAccessibleInterface* const accessible : accessibleTree(window)) {
        const QString role = controlRoles().value(accessible->role());
        if (!role.isEmpty()) {
            const QString description = accessible->text(QAccessible::Description);
            controls.append(role + u' ' + accessibleName(*accessible) +
                            (description.isEmpty() ? QString() : u": "_s + description) + stateOf(*accessible));
        }
    }
    return controls;
}

} // namespace quorvane
