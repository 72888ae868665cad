#pragma once

#include "maintenance/MaintenanceSelection.h"
#include "network/NetworkOperations.h"
#include "simulator/Authorizer.h"

#include <QString>
#include <QStringList>

#include <exception>

namespace quorvane {

// The exit statuses of the rehearsal.
inline constexpr int kDone = 0;
inline constexpr int kNotDone = 1;
inline constexpr int kUnusable = 2;

/// Something that the rehearsal can't work with: arguments, or a file. One line, which says what is wrong with what.
class UnusableInput : public std::exception {
public:
    explicit UnusableInput(const QString& text)
        : m_text(text.toUtf8()) {}

    const char* what() const noexcept override { return m_text.constData(); }

private:
    QByteArray m_text;
};

/// The command line of the rehearsal.
struct Arguments {
    QString macFolder; ///< empty: a temporary simulated Mac, which goes at the end
    macsim::Authorization authorization = macsim::Authorization::Allow;
    QString faultsFile;
    QString journalFile;
    bool json = false;

    QString command;             ///< "new", "shell", "apply", …
    QStringList operands;        ///< the file or the line that the command is about; as many as the command takes
    bool asRoot = false;         ///< of `shell`
    bool asMaster = false;       ///< of `snapshot`
    bool withoutOverlay = false; ///< of `overlay`
    bool replaces = false;       ///< of `apply`
    MaintenanceSelection maintenance;
    NetworkOperations network;

    /// The first operand; empty when there is none.
    QString operand() const { return operands.value(0); }
};

/// @param list  without the program's name. Throws UnusableInput.
Arguments parsedArguments(const QStringList& list);

} // namespace quorvane
