#pragma once

#include "platform/Activity.h"

#include <QList>

namespace quorvane {

/// Remembers what it is told.
class RecordingActivity final : public Activity {
public:
    void setWorking(bool isWorking) override { told.append(isWorking); }

    QList<bool> told;
};

} // namespace quorvane
