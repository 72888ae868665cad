#pragma once

#include "fakes/MacSetUp.h"
#include "fakes/SimulatedMacFolder.h"

#include <gtest/gtest.h>

#include <ostream>

namespace macsim {

/// What one run of a tool leaves on its streams.
struct ToolRun {
    int status = 0;
    QByteArray output;
    QByteArray error;

    bool operator==(const ToolRun&) const = default;
};

/// Success without a word.
inline const ToolRun kSilent{0, {}, {}};

inline void PrintTo(const ToolRun& run, std::ostream* stream) {
    *stream << "status " << run.status << "\n--- output\n"
            << run.output.toStdString() << "--- error\n"
            << run.error.toStdString() << "---";
}

/// Runs a tool on a line, in the actor's home folder.
inline ToolRun runTool(SimulatedMacFolder& folder, Tool tool, const QStringList& line, Actor actor = Actor::User) {
    ToolContext context = folder.context(line, actor);
    const int status = tool(context);
    return {status, context.output, context.error};
}

inline void setState(SimulatedMacFolder& folder, const char* subject, const Json& state) {
    folder.mac.state().update(subject, [&state](Json& stored) { stored = state; });
}

/// Writes a file anywhere on the Mac's disk, the sealed system included.
inline void putFile(SimulatedMacFolder& folder, const QString& path, const QByteArray& bytes) {
    installFile(folder.mac, path, bytes);
}

} // namespace macsim
