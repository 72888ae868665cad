// The look of tests passes the contract.

#include "fakes/ManualSystemLook.h"
#include "contract/SystemLookContract.h"

namespace quorvane {

namespace {

class ManualLookSubject final : public LookSubject {
public:
    SystemLook& look() override { return m_look; }
    void setDark(bool isDark) override {
        m_look.systemScheme = isDark ? ColorScheme::Dark : ColorScheme::Light;
        tell();
    }
    void setReducesMotion(bool isOn) override {
        m_look.isMotionReduced = isOn;
        tell();
    }
    void setIncreasesContrast(bool isOn) override {
        m_look.isContrastIncreased = isOn;
        tell();
    }

private:
    void tell() {
        QMetaObject::invokeMethod(
            &m_context, [this] { m_look.tell(); }, Qt::QueuedConnection);
    }

    ManualSystemLook m_look;
    QObject m_context;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Manual, SystemLookContract, ::testing::Values(&makeSubject<LookSubject, ManualLookSubject>));

} // namespace quorvane
