#pragma once

#include <QSemaphore>
#include <QThreadPool>

namespace quorvane {

/// Keeps every thread of the program's pool busy, so that what is done in the background stays under way for as long as
/// a test looks at it. Qt paints with these threads, too: no event of a shown window may be waited for meanwhile.
class HeldThreads {
public:
    HeldThreads() {
        for (int thread = 0; thread < m_count; ++thread) {
            m_threads.start([this] { m_free.acquire(); });
        }
    }
    ~HeldThreads() {
        release();
        m_threads.waitForDone(); // they hold what goes with this
    }
    HeldThreads(const HeldThreads&) = delete;
    HeldThreads& operator=(const HeldThreads&) = delete;

    void release() { m_free.release(m_count); }

private:
    QThreadPool& m_threads = *QThreadPool::globalInstance();
    const int m_count = m_threads.maxThreadCount();
    QSemaphore m_free;
};

} // namespace quorvane
