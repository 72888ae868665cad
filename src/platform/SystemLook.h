#pragma once

#include "platform/ColorScheme.h"

#include <functional>
#include <memory>

namespace quorvane {

class NotificationObservation;

/// How the user wants every program to look. Main thread.
class SystemLook {
public:
    SystemLook() = default;
    SystemLook(const SystemLook&) = delete;
    SystemLook& operator=(const SystemLook&) = delete;
    virtual ~SystemLook() = default;

    /// Light where the system doesn't say.
    virtual ColorScheme scheme() const = 0;
    /// Nothing is to move that needn't.
    virtual bool reducesMotion() const = 0;
    /// Borders and texts are to stand out more.
    virtual bool increasesContrast() const = 0;

    /// Calls the handler from the event loop each time that one of the three is another; several changes at once may be one
    /// call. The observation ends before the port does; the handler may end it.
    virtual std::unique_ptr<NotificationObservation> observe(std::function<void()> handler) = 0;
};

} // namespace quorvane
