#pragma once

#include "contract/Subject.h"
#include "platform/LoginService.h"

namespace quorvane {

/// A login service, and somebody at the system's settings.
class LoginSubject {
public:
    virtual ~LoginSubject() = default;
    virtual LoginService& service() = 0;
    virtual void setNeedsApproval(bool isNeeded) = 0;
    virtual void refuse(const QString& words) = 0;
};

class LoginServiceContract : public ContractTest<LoginSubject> {};

} // namespace quorvane
