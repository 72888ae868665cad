#include "platform/macos/ScriptThread.h"

#include <QThread>

#include <condition_variable>
#include <deque>
#include <optional>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// Threads other than the first one have 512 KiB otherwise, and the compiler of a script may need what a program's first
/// thread has.
constexpr uint kStackSize = 8 * 1024 * 1024;

ScriptOutcome refused() {
    ScriptOutcome outcome;
    outcome.errorMessage = u"The program is quitting."_s;
    return outcome;
}

} // namespace

/// The scripts that wait. Held by both threads.
class ScriptThread::Queue {
public:
    struct Job {
        QString source;
        std::function<void(ScriptOutcome)> answer;
    };

    void put(Job job) {
        {
            const std::lock_guard lock(m_mutex);
            m_jobs.push_back(std::move(job));
        }
        m_hasChanged.notify_one();
    }

    /// Waits for one; none when there won't be any more.
    std::optional<Job> take() {
        std::unique_lock lock(m_mutex);
        m_hasChanged.wait(lock, [this] { return m_isClosed || !m_jobs.empty(); });
        if (m_isClosed) {
            return std::nullopt;
        }
        Job job = std::move(m_jobs.front());
        m_jobs.pop_front();
        return job;
    }

    void close() {
        {
            const std::lock_guard lock(m_mutex);
            m_isClosed = true;
            m_jobs.clear();
        }
        m_hasChanged.notify_one();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_hasChanged;
    std::deque<Job> m_jobs;
    bool m_isClosed = false;
};

/// Nobody owns it, because a thread that runs can't be destroyed: it goes when it has ended.
class ScriptThread::Thread final : public QThread {
public:
    Thread(std::shared_ptr<Queue> queue, Run run)
        : m_queue(std::move(queue))
        , m_run(std::move(run)) {
        setStackSize(kStackSize);
        connect(this, &QThread::finished, this, &QObject::deleteLater);
    }

private:
    void run() override {
        while (const std::optional<Queue::Job> job = m_queue->take()) {
            job->answer(m_run(job->source));
        }
    }

    std::shared_ptr<Queue> m_queue;
    Run m_run;
};

ScriptThread::ScriptThread(Run run)
    : m_answers(refused())
    , m_queue(std::make_shared<Queue>()) {
    auto* thread = new Thread(m_queue, std::move(run));
    thread->start();
}

QFuture<ScriptOutcome> ScriptThread::run(QString source) {
    OpenAnswers<ScriptOutcome>::Question question = m_answers.ask();
    if (!m_answers.isClosed()) {
        m_queue->put({std::move(source), std::move(question.answer)});
    }
    return question.future;
}

void ScriptThread::shutDown() {
    m_queue->close();
    m_answers.close();
}

} // namespace quorvane
