#pragma once

#include <QFuture>
#include <QString>
#include <QStringList>

namespace quorvane {

/// What the user does when a simulated Mac asks them for a finger.
enum class BiometricAnswer {
    Accept,
    Refuse,   ///< another finger, until the Mac gives up
    Passcode, ///< the Mac's own passcode, typed instead
    Cancel,   ///< the Cancel button
};

/// Who sits before a simulated Mac when it asks for a finger: a person at a window, or a policy.
class BiometricPrompt {
public:
    BiometricPrompt() = default;
    BiometricPrompt(const BiometricPrompt&) = delete;
    BiometricPrompt& operator=(const BiometricPrompt&) = delete;
    virtual ~BiometricPrompt() = default;

    /// @param reason  the text of the prompt
    virtual QFuture<BiometricAnswer> ask(const QString& reason) = 0;
    /// Cancels the questions that are open.
    virtual void shutDown() = 0;
};

/// Gives every question the same answer.
class BiometricPolicy final : public BiometricPrompt {
public:
    explicit BiometricPolicy(BiometricAnswer answer)
        : m_answer(answer) {}

    QFuture<BiometricAnswer> ask(const QString& reason) override {
        m_reasons.append(reason);
        return QtFuture::makeReadyFuture(m_answer);
    }
    void shutDown() override {}

    void setAnswer(BiometricAnswer answer) { m_answer = answer; }
    /// The texts of all questions so far.
    const QStringList& reasons() const { return m_reasons; }

private:
    BiometricAnswer m_answer;
    QStringList m_reasons;
};

} // namespace quorvane
