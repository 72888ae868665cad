#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <utility>

namespace quorvane {

/// Holds what a Core Foundation function with "Create" or "Copy" in its name has given, and releases it; what a function with
/// "Get" gives belongs to somebody else and doesn't go in here. For adapters' sources only.
template <typename Ref>
class CfRef {
public:
    /// @param owned  may be null
    explicit CfRef(Ref owned = nullptr)
        : m_ref(owned) {}
    CfRef(const CfRef&) = delete;
    CfRef& operator=(const CfRef&) = delete;
    CfRef(CfRef&& other) noexcept
        : m_ref(std::exchange(other.m_ref, nullptr)) {}
    CfRef& operator=(CfRef&& other) noexcept {
        std::swap(m_ref, other.m_ref);
        return *this;
    }
    ~CfRef() {
        if (m_ref) {
            CFRelease(m_ref);
        }
    }

    explicit operator bool() const { return m_ref != nullptr; }
    Ref get() const { return m_ref; }
    /// For a function that gives its result through a pointer, once.
    Ref* out() { return &m_ref; }
    /// What was held is the caller's to release: for CFBridgingRelease.
    [[nodiscard]] Ref take() { return std::exchange(m_ref, nullptr); }

private:
    Ref m_ref;
};

} // namespace quorvane
