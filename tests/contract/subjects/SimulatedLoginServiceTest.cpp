// The simulated Mac's login service: the contract, and where it stands on that Mac.

#include "platform/simulated/SimulatedLoginService.h"
#include "contract/LoginServiceContract.h"
#include "fakes/SimulatedMacFolder.h"
#include "simulator/LoginItems.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

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

} // namespace

INSTANTIATE_TEST_SUITE_P(Simulated, LoginServiceContract,
                         ::testing::Values(&makeSubject<LoginSubject, SimulatedLogin>));

TEST(SimulatedLoginServiceTest, standsAmongTheLoginItems) {
    const macsim::SimulatedMacFolder folder;
    SimulatedLoginService service(folder.mac);
    service.registerProgram();
    macsim::LoginItems items(folder.mac);
    ASSERT_EQ(items.all().size(), 1);
    EXPECT_EQ(items.all().first().name, u"Quorvane"_s);
    items.remove(items.all().first().identity());
    EXPECT_EQ(service.state(), LoginService::State::NotEnabled) << "the user has taken it out";
}

} // namespace quorvane
