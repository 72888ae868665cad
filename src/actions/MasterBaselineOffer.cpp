#include "actions/MasterBaselineOffer.h"

#include "actions/ActionTexts.h"

namespace quorvane {

QString MasterBaselineOffer::text() const {
    switch (state()) {
    case State::Offered:
        break;
    case State::Saving:
        return kCapturingBaseline;
    case State::Failed:
        return kBaselineNotSaved;
    }
    return {};
}

} // namespace quorvane
