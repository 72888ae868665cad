#pragma once

#include <QString>
#include <QStringList>

namespace quorvane {

/// What the user chose to do with the network. Selected together they run under one prompt, in this order; nothing keeps
/// them from switching everything off and on again.
struct NetworkOperations {
    bool flushDNS = false;    ///< the caches of names and of addresses
    bool resetConfig = false; ///< the same, and no service asks a name server of its own any more
    bool disableAll = false;  ///< every network service goes off
    bool enableAll = false;   ///< every network service goes on

    /// False where nothing but caches is emptied.
    bool changesSettings() const { return resetConfig || disableAll || enableAll; }

    bool operator==(const NetworkOperations&) const = default;
};

/// What became of them.
struct NetworkOutcome {
    QStringList messages; ///< one sentence for each operation
    bool success = false; ///< false: the administrator run was refused or failed, or a name server stayed

    bool operator==(const NetworkOutcome&) const = default;

    /// True when nothing failed: a run can succeed and yet lack an operation whose services couldn't be listed.
    bool isComplete() const;
    // What the user is told at the end.
    QString alertTitle() const;
    QString alertText() const;
};

/// The shell lines of the flush and the reset; a reset takes the flush with it, so the flush isn't done twice.
/// @param services  those whose name servers a reset takes away
QStringList networkDiagnosticsCommands(const NetworkOperations& operations, const QStringList& services);

/// @param operations  those that were to run; not the ones that had failed before
QStringList networkFailureMessages(const NetworkOperations& operations);

// Of the operations that ran; of a reset also the services that it has left as they were.
QStringList networkSuccessMessages(const NetworkOperations& operations, const QStringList& notReset = {});
QStringList networkSuccessLogLines(const NetworkOperations& operations, const QStringList& notReset = {});

} // namespace quorvane
