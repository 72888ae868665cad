#pragma once

#include "platform/Activity.h"

#include <memory>

namespace quorvane {

/// Keeps App Nap away while something runs: it would stretch the timers of a program whose window nobody sees to minutes. The
/// Mac may go to sleep all the same.
class MacActivity final : public Activity {
public:
    MacActivity();
    ~MacActivity() override;

    void setWorking(bool isWorking) override;

private:
    struct Token;
    std::unique_ptr<Token> m_token; ///< none while nothing runs
};

} // namespace quorvane
