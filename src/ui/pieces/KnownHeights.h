#pragma once

#include <QMap>

#include <iterator>

namespace quorvane {

/// How high something is at a width, which is never higher where it is wider. Layouts ask for a few widths again and again, and
/// each time its texts would be laid out anew.
class KnownHeights {
public:
    /// @param least    it is no lower at any width
    /// @param measure  the height at that width, in device-independent pixels; asked where it doesn't follow from what is known
    template <typename Measure>
    int at(int width, int least, Measure measure) {
        const auto wider = m_heights.lowerBound(width);
        const bool isBelow = wider != m_heights.cbegin();
        if (wider != m_heights.cend() && wider.key() == width) {
            return *wider;
        }
        if (isBelow && *std::prev(wider) == least) {
            return least;
        }
        if (isBelow && wider != m_heights.cend() && *std::prev(wider) == *wider) {
            return *wider;
        }
        return *m_heights.insert(width, measure(width));
    }
    /// To be called when a text or its font has changed.
    void forget() { m_heights.clear(); }

private:
    QMap<int, int> m_heights;
};

} // namespace quorvane
