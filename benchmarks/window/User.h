#pragma once

#include <QString>

#include <functional>

class QListView;
class QModelIndex;
class QWidget;

/// Uses the window as a user does, by what there is to see, if need be by scrolling. Each waits for what it uses, and ends the process when that doesn't come.
namespace quorvane::user {

/// The event loop comes round for a while, in which what has changed is painted.
void look();
void waitUntil(const QString& what, const std::function<bool()>& condition);

bool isSeen(const QString& name);
/// Seen, and not switched off.
bool isUsable(const QString& name);
void waitUntilSeen(const QString& name);
void waitUntilGone(const QString& name);

/// The list of that name; none where none is seen.
QListView* listNamed(const QString& name);
/// The saved profiles' rows.
QListView* profileList();

void click(const QString& name);
void clickProfile(const QString& name);
/// Into the middle of a row, to which the list is scrolled.
void clickRow(QListView* list, const QModelIndex& row);
/// In the field of that name.
void press(const QString& name, Qt::Key key);
/// Into the field of that name.
void type(const QString& name, const QString& text);
/// From the top to the end of what scrolls around the widget, a turn of the wheel at a time.
void scrollAlong(QWidget* widget);

} // namespace quorvane::user
