// The login service of tests passes the contract.

#include "fakes/FixedLoginService.h"
#include "contract/LoginServiceContract.h"

namespace quorvane {

namespace {

class FixedLogin final : public LoginSubject {
public:
    LoginService& service() override { return m_service; }
    void setNeedsApproval(bool isNeeded) override { m_service.needsApproval = isNeeded; }
    void refuse(const QString& words) override { m_service.failure = words; }

private:
    FixedLoginService m_service;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Fixed, LoginServiceContract, ::testing::Values(&makeSubject<LoginSubject, FixedLogin>));

} // namespace quorvane
