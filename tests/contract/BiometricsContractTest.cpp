// By which means a simulated Mac says that it recognises its user.

#include "fakes/SimulatedMacFolder.h"
#include "platform/simulated/SimulatedBiometrics.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

class BiometricsContract : public ::testing::Test {
protected:
    void setState(const macsim::Json& state) {
        mac.mac.state().update("biometrics", [&state](macsim::Json& stored) { stored = state; });
    }

    macsim::SimulatedMacFolder mac;
    SimulatedBiometrics biometrics{mac.mac};
};

} // namespace

TEST_F(BiometricsContract, aMacHasNoMeansUnlessItIsSaid) {
    EXPECT_FALSE(biometrics.canEvaluate());
    EXPECT_EQ(biometrics.type(), BiometryType::None);
    EXPECT_EQ(simulatedEnrolment(mac.mac), QString());
}

TEST_F(BiometricsContract, theMeansAreKnownByTheSystemsNumbers) {
    setState({{"type", 1}, {"canEvaluate", true}, {"enrolment", "right index"}});
    EXPECT_TRUE(biometrics.canEvaluate());
    EXPECT_EQ(biometrics.type(), BiometryType::TouchId);
    EXPECT_EQ(simulatedEnrolment(mac.mac), u"right index"_s);
    setState({{"type", 2}, {"canEvaluate", true}});
    EXPECT_EQ(biometrics.type(), BiometryType::FaceId);
    setState({{"type", 4}, {"canEvaluate", true}});
    EXPECT_EQ(biometrics.type(), BiometryType::OpticId);
}

TEST_F(BiometricsContract, aMacWithTheMeansMayBeUnableToUseThem) {
    setState({{"type", 1}, {"canEvaluate", false}});
    EXPECT_FALSE(biometrics.canEvaluate());
    EXPECT_EQ(biometrics.type(), BiometryType::TouchId);
}

} // namespace quorvane
