#pragma once

#include <QHash>

namespace quorvane {

/// How high something is at a width. Layouts ask for the same few widths again and again, and each time its texts would be
/// laid out anew.
class KnownHeights {
public:
    /// @param measure  the height at that width, in device-independent pixels; asked once
    template <typename Measure>
    int at(int width, Measure measure) {
        const auto known = m_heights.constFind(width);
        return known != m_heights.cend() ? *known : *m_heights.insert(width, measure(width));
    }
    /// To be called when a text or its font has changed.
    void forget() { m_heights.clear(); }

private:
    QHash<int, int> m_heights;
};

} // namespace quorvane
