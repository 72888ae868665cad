#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace quorvane {

/// What a script asks System Events for.
struct AskedOfSystemEvents {
    /// One item's part in a script that changes several.
    struct Step {
        bool isAddition = false;
        QString name; ///< of what is deleted; empty where its path alone counts
        QString path;
        bool hidden = false;
        bool isHiding = false; ///< an item that is there is set to open hidden, or not

        /// @param nameOfItem, pathOfItem  of a login item: System Events ignores case
        bool isFor(const QString& nameOfItem, const QString& pathOfItem) const;
        /// "delete where name is Dropbox", "delete where path is /a and name is A", "add /Applications/Live.app hidden:false",
        /// "set hidden:true where path is /a and name is A"
        QString purpose() const;
    };

    QList<Step> steps;        ///< none: the script reads
    QList<qsizetype> numbers; ///< of the items whose names alone are read; none: everything is

    /// "list", "names of 2 5", or the purposes of the steps with "; " between them.
    QString purpose() const;
};

/// Knows a script by its whole text: one that differs in a single character isn't known.
std::optional<AskedOfSystemEvents> askedOfSystemEvents(const QString& script);

} // namespace quorvane
