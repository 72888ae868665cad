#pragma once

#include <QObject>
#include <QString>

#include <utility>

namespace quorvane {

class SystemManager;

/// One thing at a time: an action begins when nothing is busy and nothing is open. Whoever passes, opens a sheet, asks, or
/// works holds it by an object that ends with their scope, whatever happens there. Main thread.
class Turnstile : public QObject {
    Q_OBJECT

public:
    explicit Turnstile(SystemManager& system, QObject* parent = nullptr);

    /// What keeps the next from beginning; it ends with this object. The turnstile outlives it.
    class Hold {
    public:
        Hold(Hold&& other) noexcept
            : m_turnstile(std::exchange(other.m_turnstile, nullptr))
            , m_release(other.m_release) {}
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;
        Hold& operator=(Hold&&) = delete;
        ~Hold() {
            if (m_turnstile != nullptr) {
                (m_turnstile->*m_release)();
            }
        }

    private:
        friend class Turnstile;
        using Release = void (Turnstile::*)();
        Hold(Turnstile& turnstile, Release release)
            : m_turnstile(&turnstile)
            , m_release(release) {}

        Turnstile* m_turnstile;
        Release m_release;
    };

    /// True when an action may begin.
    bool isIdle() const;

    /// An action has passed, or a sheet or a question is open.
    [[nodiscard]] Hold open();
    /// Something runs. Brackets nest; the outermost text stays.
    [[nodiscard]] Hold busy(const QString& text);

Q_SIGNALS:
    /// It is another answer now, in either direction.
    void idleChanged();

private:
    void close();
    void endBusy();
    void update();

    SystemManager& m_system;
    int m_openCount = 0;
    bool m_wasIdle;
};

} // namespace quorvane
