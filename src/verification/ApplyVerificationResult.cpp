#include "verification/ApplyVerificationResult.h"

namespace quorvane {

using namespace Qt::StringLiterals;

QString summary(const ApplyVerificationResult& result) {
    if (!result.failed.isEmpty()) {
        return u"%1 verified, %2 not confirmed. Check Logs for details."_s.arg(result.verified.size())
            .arg(result.failed.size());
    }
    return u"All %1 setting(s) verified on the system."_s.arg(result.verified.size());
}

} // namespace quorvane
