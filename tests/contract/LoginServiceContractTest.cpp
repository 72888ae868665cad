// What every login service promises.

#include "contract/LoginServiceContract.h"

namespace quorvane {

using namespace Qt::StringLiterals;
using LoginState = LoginService::State;

TEST_P(LoginServiceContract, registersAndUnregisters) {
    LoginService& service = subject->service();
    EXPECT_EQ(service.state(), LoginState::NotEnabled);
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(service.registerProgram(), std::nullopt);
        EXPECT_EQ(service.state(), LoginState::Enabled);
    }
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(service.unregisterProgram(), std::nullopt);
        EXPECT_EQ(service.state(), LoginState::NotEnabled);
    }
}

TEST_P(LoginServiceContract, mayWaitForTheUser) {
    subject->setNeedsApproval(true);
    EXPECT_EQ(subject->service().registerProgram(), std::nullopt);
    EXPECT_EQ(subject->service().state(), LoginState::RequiresApproval);
}

TEST_P(LoginServiceContract, aRefusalChangesNothing) {
    LoginService& service = subject->service();
    EXPECT_EQ(service.registerProgram(), std::nullopt);
    subject->refuse(u"Operation not permitted"_s);
    EXPECT_EQ(service.unregisterProgram(), u"Operation not permitted"_s);
    EXPECT_EQ(service.state(), LoginState::Enabled);
    EXPECT_EQ(service.registerProgram(), u"Operation not permitted"_s);
}

} // namespace quorvane
