#pragma once

#include "simulator/Machine.h"
#include "simulator/StateStore.h"
#include "simulator/Volume.h"

#include <QString>

namespace macsim {

/// Where the state files lie below a Mac's folder.
inline constexpr QStringView kStateFolder = u"/private/var/db/simulator";

/// The machine that a description tells of ({"userName": "alex", …}); what it leaves out has the values of Machine.
/// Throws nlohmann's exceptions for a value of the wrong type.
Machine machineFromJson(const Json& json);

/// A Mac in a folder: its disk, and the state behind it.
class Mac {
public:
    /// Opens the simulated Mac that lies in a folder of the host. Throws std::runtime_error when there is none.
    explicit Mac(const QString& hostFolder);

    const QString& hostFolder() const { return m_hostFolder; }
    const Machine& machine() const { return m_machine; }
    const StateStore& state() const { return m_state; }
    Volume volume(Actor actor) const { return {m_hostFolder, m_machine, actor}; }

    /// "/Users/alex", "/var/root".
    QString homeFolder(Actor actor) const;
    /// The user's own temporary folder; the name ends in "/".
    QString temporaryFolder() const;

private:
    QString m_hostFolder;
    StateStore m_state;
    Machine m_machine;
};

} // namespace macsim
