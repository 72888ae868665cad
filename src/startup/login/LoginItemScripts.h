#pragma once

#include "startup/items/LoginItem.h"

#include <QHash>
#include <QList>
#include <QString>

namespace quorvane {

// What System Events is asked about login items. It compares texts without regard to case, and whole lists of them it knows by
// their names: where two share one, what is said of the second may be done to the first. Therefore items are read by their
// number, and each change finds its items in the event that makes it.
//
// The first event of a script waits two minutes, because the system may be asking its user whether the program may control System
// Events; every other waits 20 seconds. A script that isn't let through prints "ERROR|{number}|{text}".

/// Prints a line "{name}|{path}|{hidden}" for each login item. One of which not all can be read is listed with what could be:
/// its name and no path, or "Unreadable login item {number}||unreadable". Where System Events itself has gone, isn't permitted
/// or doesn't even tell a name in time, nothing is listed: the list would say of what is there that it isn't.
QString readLoginItemsScript();

/// Which login items a change is for: all of the name, all at the path, or all of both. An empty text doesn't count.
struct LoginItemSelector {
    QString name;
    QString path;

    bool operator==(const LoginItemSelector&) const = default;
};

struct LoginItemAddition {
    QString path;
    bool hidden = false;
};

/// Whether an item that is there opens hidden.
struct LoginItemHiding {
    LoginItemSelector item;
    bool hidden = false;
};

/// A script that changes several login items and prints one line for each, in order: "ok", "missing" or "exists", or "error:"
/// and AppleScript's number. An error's text isn't printed: with line ends in it, it could pass for the next item's answer.
struct LoginItemScript {
    QString source;
    qsizetype count = 0; ///< of its items
};

/// One script, or as many as it takes to keep each fit for a command line.
QList<LoginItemScript> removeLoginItemsScripts(const QList<LoginItemSelector>& selectors);
/// Adds those whose path isn't there already.
QList<LoginItemScript> addLoginItemsScripts(const QList<LoginItemAddition>& additions);

QList<LoginItemScript> hideLoginItemsScripts(const QList<LoginItemHiding>& hidings);

/// Names of login items, by the number of their line, which counts from 1.
using LoginItemNames = QHash<qsizetype, QString>;
/// Reads what the reading script printed. A line with fewer than three fields is dropped. Where a "|" stands in a name or a path its
/// name tells where the name ends; without it, or with one that the line doesn't begin with, the fields are shifted. Output of
/// which no line is an item tells nothing, nor does no output at all: the tool ends even an empty reply with a line end.
LoginItemList parsedLoginItems(const QString& output, const LoginItemNames& names = {});
/// The numbers of the lines that hold more than two bars.
QList<qsizetype> ambiguousLoginItems(const QString& output);
/// Prints the name of each login item of a number, and an empty line for one that doesn't tell it.
QString readLoginItemNamesScript(const QList<qsizetype>& numbers);
/// Reads what that script printed; empty where it printed something else.
LoginItemNames parsedLoginItemNames(const QString& output, const QList<qsizetype>& numbers);

enum class LoginItemAnswer {
    Done,
    Unchanged, ///< it isn't there, or is there already
    Failed,    ///< what has happened isn't known
};

struct LoginItemAnswers {
    QList<LoginItemAnswer> answers;          ///< one for each item, in order
    std::optional<ScriptFailure> heldUpBy{}; ///< the user's permission, which is missing or hasn't been answered
};

/// Reads what a changing script printed. Of an item without a line nobody knows what has happened.
/// @param count  of the script's items
LoginItemAnswers parsedLoginItemAnswers(const QString& output, qsizetype count);

/// Of a name that holds a "|" or a line end, which no field of the list can show: what the output shows from it on, to the
/// end of its line; empty when it doesn't, and for any other name.
QString shownLine(const LoginItemList& list, const QString& name);

} // namespace quorvane
