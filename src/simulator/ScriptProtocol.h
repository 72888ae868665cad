#pragma once

#include "simulator/Authorizer.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace macsim::ScriptProtocol {

// The conversation between a program that runs AppleScript on the simulated Mac and the process that runs it: one JSON
// object per line. The program sends the source; the engine may ask for administrator rights, any number of times, and
// is answered each time; it ends with a result or an error.

/// Program to engine.
QByteArray source(const QString& text);
QByteArray answer(Authorization answer);

/// Engine to program.
QByteArray authorizationWanted(const QString& prompt);
QByteArray result(const QString& text);
QByteArray error(const QString& text, int number);

/// One line of either side.
struct Message {
    enum class Kind { Source, Answer, AuthorizationWanted, Result, Error, Unintelligible };
    Kind kind = Kind::Unintelligible;
    QString text; ///< the source, prompt, result or message
    Authorization answer = Authorization::Cancel;
    std::optional<int> number{}; ///< of the error
};
Message parsed(const QByteArray& line);

} // namespace macsim::ScriptProtocol
