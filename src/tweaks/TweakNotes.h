#pragma once

#include <QList>
#include <QString>

namespace quorvane {

/// What a tweak can't do by itself, or not at once.
struct TweakNote {
    QString key;         ///< of the tweak
    int firstSystem = 0; ///< the major version of macOS from which on it holds; 0 for each
    QString text{};      ///< empty where there is nothing to say
};

/// One for each tweak, in the order of the catalogue.
const QList<TweakNote>& tweakNotes();

/// What is said under a tweak on a Mac; empty where nothing is due.
/// @param systemVersion  as Machine::systemVersion gives it: "14.7"
QString tweakNote(const QString& key, const QString& systemVersion);

} // namespace quorvane
