#pragma once

#include "actions/SheetOffer.h"

#include <QString>

namespace quorvane {

/// The offer to keep the Mac as it is now as the master baseline, as its sheet shows it. Main thread.
class MasterBaselineOffer : public SheetOffer {
    Q_OBJECT

public:
    using SheetOffer::SheetOffer;

    /// What the sheet says beside the offer: nothing, that it is being saved, or that it could not be.
    QString text() const;
};

} // namespace quorvane
