#pragma once

#include "simulator/Json.h"

#include <QByteArray>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>
#include <vector>

namespace macsim {

/// What goes wrong with a command on purpose.
struct Fault {
    QString tool;                 ///< the base name of the command: "pmset"
    QRegularExpression arguments; ///< searched in the arguments joined by blanks; empty matches all
    std::chrono::milliseconds delay{0};
    bool hangs = false;    ///< never ends by itself
    int signal = 0;        ///< ends the process that runs the tool by this signal; a shell that runs it dies with it
    bool diskFull = false; ///< the tool runs, and each of its writes fails for want of space
    /// Replaces the tool: it isn't run, prints these texts and ends with this status.
    std::optional<int> status;
    QByteArray output;
    QByteArray error;
};

/// The faults that were asked for, from a JSON array of rules:
///
///     [{"tool": "pmset", "arguments": "^-a", "status": 1, "error": "no\n"},
///      {"tool": "tmutil", "hang": true}, {"tool": "mdutil", "delayMilliseconds": 200},
///      {"tool": "defaults", "arguments": "write", "diskFull": true}, {"tool": "open", "signal": 9}]
///
/// "outputBase64" and "errorBase64" stand for bytes that are no text.
class Faults {
public:
    Faults() = default;
    /// Throws std::invalid_argument that names the rule and what is wrong with it.
    explicit Faults(const Json& rules);
    /// Throws std::invalid_argument, also for a file that can't be read.
    static Faults fromFile(const QString& hostPath);

    /// The first rule that matches a command line, or null. @param path  the command's path on the Mac
    const Fault* find(const QString& path, const QStringList& arguments) const;

private:
    std::vector<Fault> m_faults;
};

} // namespace macsim
