// What every computer says of how it recognises its user.

#include "contract/BiometricsContract.h"

#include <gmock/gmock.h>

namespace quorvane {

TEST_P(BiometricsContract, theMeansAreOneThatTheProgramKnows) {
    EXPECT_THAT(biometrics.type(), ::testing::AnyOf(BiometryType::None, BiometryType::TouchId, BiometryType::FaceId,
                                                    BiometryType::OpticId));
}

TEST_P(BiometricsContract, whatCanBeUsedHasAName) {
    if (biometrics.canEvaluate()) {
        EXPECT_NE(biometrics.type(), BiometryType::None);
    }
}

TEST_P(BiometricsContract, nobodyIsAskedHoweverOftenItIsLookedAt) {
    const bool canEvaluate = biometrics.canEvaluate();
    const BiometryType type = biometrics.type();
    for (int round = 0; round < 10; ++round) {
        EXPECT_EQ(biometrics.canEvaluate(), canEvaluate);
        EXPECT_EQ(biometrics.type(), type);
    }
}

} // namespace quorvane
