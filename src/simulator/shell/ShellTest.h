#pragma once

#include "simulator/Tool.h"

#include <QStringList>

#include <exception>

namespace macsim {

/// An expression that test doesn't understand.
class ShellTestError : public std::exception {
public:
    explicit ShellTestError(const QString& message)
        : m_message(message)
        , m_text(message.toUtf8()) {}

    QString message() const { return m_message; }
    const char* what() const noexcept override { return m_text.constData(); }

private:
    QString m_message;
    QByteArray m_text;
};

/// What the commands test and [ decide: -e -f -d -L -r -w -x -s on paths, -n -z = != on texts, -eq -ne -lt
/// -le -gt -ge on numbers, and "!". Any other operator is an error. How the operands are read depends on how
/// many they are. Throws ShellTestError.
bool isShellTestTrue(const QStringList& operands, const ToolContext& context);

} // namespace macsim
