#pragma once

#include "core/Flow.h"

#include <QSet>
#include <QString>
#include <QStringList>

namespace quorvane {

class AdminBatch;
struct CommandResult;

/// The way back of the network services that the program has switched off and that no snapshot knows. It is made for one way back:
/// what it queues in the open batch it settles when that is finished. Main thread.
class NetworkServicesBack : private Flow {
public:
    NetworkServicesBack(FlowEnvironment& environment, AdminBatch& batch);

    /// Adds to the open batch what switches on again those that are off now.
    /// @param captured  are brought back by their snapshot
    /// @param kept      stay off
    /// @return false where the services can't be listed
    QCoro::Task<bool> queue(QSet<QString> captured, QSet<QString> kept);
    /// Reads the services anew, tells of those that were queued, and forgets all that are on. One that isn't listed
    /// stays noted: its location may not be the one that is chosen now.
    /// @return false where one that is there is still off, or can't be read
    QCoro::Task<bool> settle();
    /// Called when all services have been switched on: what the user switches off from then on is theirs.
    void forgetAll();

private:
    QCoro::Task<CommandResult> listing();
    void forget(const QStringList& services);

    AdminBatch& m_batch;
    QStringList m_queued;
};

} // namespace quorvane
