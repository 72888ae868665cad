#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace ScriptProtocol {

// The conversation between a program that has AppleScript run and the process that runs it: one JSON object per line. The
// program sends the source; the process may ask for administrator rights, any number of times, and is answered each time; it
// ends with a result or an error. The program and the simulator share it like the JSON class.

/// Program to process. An answer is a word that the two have agreed on.
QByteArray source(const QString& text);
QByteArray answer(const QString& word);

/// Process to program.
QByteArray authorizationWanted(const QString& prompt);
QByteArray result(const QString& text);
/// @param text  empty where there is none
QByteArray error(const QString& text, std::optional<int> number);

/// One line of either side.
struct Message {
    enum class Kind { Source, Answer, AuthorizationWanted, Result, Error, Unintelligible };
    Kind kind = Kind::Unintelligible;
    QString text{};              ///< the source, word, prompt, result or message
    std::optional<int> number{}; ///< of the error
};
Message parsed(const QByteArray& line);

} // namespace ScriptProtocol
