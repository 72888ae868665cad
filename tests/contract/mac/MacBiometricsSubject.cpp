// What this Mac says of its sensor passes the contract.

#include "contract/BiometricsContract.h"
#include "platform/macos/MacBiometrics.h"

namespace quorvane {

namespace {

class MacBiometricsSubject final : public BiometricsSubject {
public:
    const Biometrics& biometrics() const override { return m_biometrics; }

private:
    MacBiometrics m_biometrics;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Mac, BiometricsContract,
                         ::testing::Values(&makeSubject<BiometricsSubject, MacBiometricsSubject>));

} // namespace quorvane
