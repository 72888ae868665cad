#pragma once

#include "simulator/shell/ShellSyntax.h"

#include <QByteArray>
#include <QString>

#include <exception>

namespace macsim {

class ShellCursor;

/// A text that isn't a shell's, or that needs what this shell doesn't do.
class ShellSyntaxError : public std::exception {
public:
    /// @param line  counted from 1
    ShellSyntaxError(const QString& message, int line)
        : m_message(message)
        , m_line(line)
        , m_text(message.toUtf8()) {}

    static ShellSyntaxError notSupported(const QString& what, int line);
    /// Throws where the text stands at the cursor: an operator of the real shell that this one lacks.
    static void refuse(const ShellCursor& cursor, QStringView text);

    QString message() const { return m_message; }
    int line() const { return m_line; }
    const char* what() const noexcept override { return m_text.constData(); }

private:
    QString m_message;
    int m_line;
    QByteArray m_text;
};

/// Parses a whole text. Throws ShellSyntaxError.
ShellList parseShellText(const QString& text);

} // namespace macsim
