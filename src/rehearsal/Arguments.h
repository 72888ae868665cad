#pragma once

#include "services/MaintenanceSelection.h"
#include "services/NetworkOperations.h"
#include "simulator/Authorizer.h"

#include <QString>
#include <QStringList>

#include <exception>

namespace quorvane {

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

    QString command;       ///< "new", "shell", "apply", …
    QString operand;       ///< the file or the line that the command is about; may be empty where it is optional
    bool asRoot = false;   ///< of `shell`
    bool asMaster = false; ///< of `snapshot`
    MaintenanceSelection maintenance;
    NetworkOperations network;
};

/// @param list  without the program's name. Throws UnusableInput.
Arguments parsedArguments(const QStringList& list);

/// What the program prints when it is asked for help.
QString usageText();

} // namespace quorvane
