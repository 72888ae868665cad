#pragma once

#include <memory>

namespace quorvane {

/// Lets whoever has begun something that only reads give it up again. Copies speak of the same thing. Main thread.
class Abandonment {
public:
    void abandon() { *m_isAbandoned = true; }
    bool isAbandoned() const { return *m_isAbandoned; }

private:
    std::shared_ptr<bool> m_isAbandoned = std::make_shared<bool>(false);
};

} // namespace quorvane
