#pragma once

#include "contract/Subject.h"
#include "platform/Biometrics.h"

namespace quorvane {

/// A computer that has some means to recognise its user, or none.
class BiometricsSubject {
public:
    virtual ~BiometricsSubject() = default;
    virtual const Biometrics& biometrics() const = 0;
};

class BiometricsContract : public ContractTest<BiometricsSubject> {
protected:
    const Biometrics& biometrics = subject->biometrics();
};

} // namespace quorvane
