#include "platform/simulated/SimulatedScriptEngine.h"

#include "platform/simulated/AuthorizationPrompt.h"

#include <QFutureWatcher>

#include <utility>

namespace quorvane {

namespace {

/// A dialog that stands until it is answered, or until nobody wants to know any more.
class OpenDialog final : public ProcessScriptEngine::Question {
public:
    OpenDialog(const QFuture<macsim::Authorization>& dialog, std::function<void(const QString&)> answered) {
        QObject::connect(&m_dialog, &QFutureWatcherBase::finished, &m_dialog, [this, answered = std::move(answered)] {
            const auto answer = m_dialog.isCanceled() ? macsim::Authorization::Cancel : m_dialog.result();
            answered(QString::fromStdString(macsim::authorizationName(answer)));
        });
        m_dialog.setFuture(dialog);
    }
    ~OpenDialog() override {
        m_dialog.disconnect();
        if (!m_dialog.isFinished()) {
            m_dialog.cancel();
        }
    }

private:
    QFutureWatcher<macsim::Authorization> m_dialog;
};

ProcessScriptEngine::Ask askBy(AuthorizationPrompt& authorization) {
    return [&authorization](const QString& prompt, std::function<void(const QString&)> answered) {
        return std::make_unique<OpenDialog>(authorization.ask(prompt), std::move(answered));
    };
}

} // namespace

SimulatedScriptEngine::SimulatedScriptEngine(QString engineProgram, const QProcessEnvironment& environment,
                                             AuthorizationPrompt& authorization)
    : ProcessScriptEngine(std::move(engineProgram), environment, askBy(authorization)) {}

} // namespace quorvane
