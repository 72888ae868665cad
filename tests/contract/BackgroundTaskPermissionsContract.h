#pragma once

#include "contract/Subject.h"
#include "platform/BackgroundTaskPermissions.h"

namespace quorvane {

/// A system that has the library, and says nothing of its private entry points.
class TaskPermissionsSubject {
public:
    virtual ~TaskPermissionsSubject() = default;
    virtual BackgroundTaskPermissions& permissions() = 0;
};

class BackgroundTaskPermissionsContract : public ContractTest<TaskPermissionsSubject> {
protected:
    BackgroundTaskPermissions& permissions = subject->permissions();
};

} // namespace quorvane
