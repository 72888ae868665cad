#pragma once

#include "simulator/Authorizer.h"

#include <QFuture>
#include <QString>

namespace quorvane {

/// Who answers the authorization dialog of a simulated Mac: a person in a window, or a policy.
class AuthorizationPrompt {
public:
    AuthorizationPrompt() = default;
    AuthorizationPrompt(const AuthorizationPrompt&) = delete;
    AuthorizationPrompt& operator=(const AuthorizationPrompt&) = delete;
    virtual ~AuthorizationPrompt() = default;

    /// Opens a dialog, and finishes when it is answered. Who asked cancels the future when the script has ended that wanted to
    /// know: nobody waits for the answer any more, and the dialog goes.
    /// @param prompt  the text of the dialog
    virtual QFuture<macsim::Authorization> ask(const QString& prompt) = 0;
};

/// Gives every dialog the same answer.
class AuthorizationPolicy final : public AuthorizationPrompt {
public:
    explicit AuthorizationPolicy(macsim::Authorization answer)
        : m_answer(answer) {}

    QFuture<macsim::Authorization> ask(const QString& prompt) override {
        m_prompts.append(prompt);
        return QtFuture::makeReadyFuture(m_answer);
    }

    void setAnswer(macsim::Authorization answer) { m_answer = answer; }
    /// The texts of all dialogs so far.
    const QStringList& prompts() const { return m_prompts; }

private:
    macsim::Authorization m_answer;
    QStringList m_prompts;
};

} // namespace quorvane
