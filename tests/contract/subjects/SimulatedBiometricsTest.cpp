// By which means a simulated Mac says that it recognises its user.

#include "platform/simulated/SimulatedBiometrics.h"
#include "contract/BiometricsContract.h"
#include "fakes/SimulatedMacFolder.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// A Mac with an enrolled finger.
class SimulatedBiometricsSubject final : public BiometricsSubject {
public:
    SimulatedBiometricsSubject() {
        m_mac.mac.state().update("biometrics", [](macsim::Json& state) {
            state = {{"type", 1}, {"canEvaluate", true}};
        });
    }
    const Biometrics& biometrics() const override { return m_biometrics; }

private:
    macsim::SimulatedMacFolder m_mac;
    SimulatedBiometrics m_biometrics{m_mac.mac};
};

class SimulatedBiometricsState : public ::testing::Test {
protected:
    void setState(const macsim::Json& state) {
        mac.mac.state().update("biometrics", [&state](macsim::Json& stored) { stored = state; });
    }

    macsim::SimulatedMacFolder mac;
    SimulatedBiometrics biometrics{mac.mac};
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Simulated, BiometricsContract,
                         ::testing::Values(&makeSubject<BiometricsSubject, SimulatedBiometricsSubject>));

TEST_F(SimulatedBiometricsState, aMacHasNoMeansUnlessItIsSaid) {
    EXPECT_FALSE(biometrics.canEvaluate());
    EXPECT_EQ(biometrics.type(), BiometryType::None);
    EXPECT_EQ(simulatedEnrolment(mac.mac), QString());
}

TEST_F(SimulatedBiometricsState, theMeansAreKnownByTheSystemsNumbers) {
    setState({{"type", 1}, {"canEvaluate", true}, {"enrolment", "right index"}});
    EXPECT_TRUE(biometrics.canEvaluate());
    EXPECT_EQ(biometrics.type(), BiometryType::TouchId);
    EXPECT_EQ(simulatedEnrolment(mac.mac), u"right index"_s);
    setState({{"type", 2}, {"canEvaluate", true}});
    EXPECT_EQ(biometrics.type(), BiometryType::FaceId);
    setState({{"type", 4}, {"canEvaluate", true}});
    EXPECT_EQ(biometrics.type(), BiometryType::OpticId);
}

TEST_F(SimulatedBiometricsState, aMacWithTheMeansMayBeUnableToUseThem) {
    setState({{"type", 1}, {"canEvaluate", false}});
    EXPECT_FALSE(biometrics.canEvaluate());
    EXPECT_EQ(biometrics.type(), BiometryType::TouchId);
}

} // namespace quorvane
