#pragma once

#include "contract/Subject.h"
#include "fakes/EventLoop.h"
#include "platform/SystemLook.h"

#include <QString>

namespace quorvane {

using namespace Qt::StringLiterals;

/// A system, and somebody at its settings.
class LookSubject {
public:
    virtual ~LookSubject() = default;
    virtual SystemLook& look() = 0;
    virtual void setDark(bool isDark) = 0;
    virtual void setReducesMotion(bool isOn) = 0;
    virtual void setIncreasesContrast(bool isOn) = 0;
};

class SystemLookContract : public ContractTest<LookSubject> {
protected:
    QString described() const {
        return u"%1, motion %2, contrast %3"_s.arg(look.scheme() == ColorScheme::Dark ? u"dark"_s : u"light"_s,
                                                   look.reducesMotion() ? u"reduced"_s : u"normal"_s,
                                                   look.increasesContrast() ? u"increased"_s : u"normal"_s);
    }
    void waitFor(const int& heard, int wanted) {
        processEventsUntil([&] { return heard >= wanted; });
    }

    SystemLook& look = subject->look();
};

} // namespace quorvane
