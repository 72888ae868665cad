// What every login service promises.

#include "fakes/FixedLoginService.h"
#include "fakes/SimulatedMacFolder.h"
#include "platform/simulated/SimulatedLoginService.h"
#include "simulator/LoginItems.h"

#include <gtest/gtest.h>

#include <memory>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using LoginState = LoginService::State;

/// A login service, and somebody at the system's settings.
class LoginSubject {
public:
    virtual ~LoginSubject() = default;
    virtual LoginService& service() = 0;
    virtual void setNeedsApproval(bool isNeeded) = 0;
    virtual void refuse(const QString& words) = 0;
};

class FixedLogin final : public LoginSubject {
public:
    LoginService& service() override { return m_service; }
    void setNeedsApproval(bool isNeeded) override { m_service.needsApproval = isNeeded; }
    void refuse(const QString& words) override { m_service.failure = words; }

private:
    FixedLoginService m_service;
};

class SimulatedLogin final : public LoginSubject {
public:
    LoginService& service() override { return m_service; }
    void setNeedsApproval(bool isNeeded) override {
        m_mac.mac.state().update("loginService", [=](macsim::Json& state) { state["needsApproval"] = isNeeded; });
    }
    void refuse(const QString& words) override {
        m_mac.mac.state().update("loginService", [words](macsim::Json& state) {
            state["registeringFails"] = words.toStdString();
            state["unregisteringFails"] = words.toStdString();
        });
    }

private:
    macsim::SimulatedMacFolder m_mac;
    SimulatedLoginService m_service{m_mac.mac};
};

class LoginServiceContract : public ::testing::TestWithParam<std::unique_ptr<LoginSubject> (*)()> {
protected:
    std::unique_ptr<LoginSubject> subject = GetParam()();
};

template <typename Each>
std::unique_ptr<LoginSubject> makeLoginSubject() {
    return std::make_unique<Each>();
}

} // namespace

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

INSTANTIATE_TEST_SUITE_P(Of, LoginServiceContract,
                         ::testing::Values(makeLoginSubject<FixedLogin>, makeLoginSubject<SimulatedLogin>));

TEST(SimulatedLoginServiceTest, standsAmongTheLoginItems) {
    const macsim::SimulatedMacFolder folder;
    SimulatedLoginService service(folder.mac);
    service.registerProgram();
    macsim::LoginItems items(folder.mac);
    ASSERT_EQ(items.all().size(), 1);
    EXPECT_EQ(items.all().first().name, u"Quorvane"_s);
    items.remove(items.all().first().identity());
    EXPECT_EQ(service.state(), LoginState::NotEnabled) << "the user has taken it out";
}

} // namespace quorvane
