#pragma once

#include "actions/ActionListener.h"
#include "matching/SystemConfigurationMatch.h"

#include <QStringList>

#include <functional>
#include <optional>

namespace quorvane {

class SystemScans;

/// What a command of the rehearsal shows of its action. It asks nothing: whoever types the command means it.
class TerminalListener final : public ActionListener {
public:
    struct Manners {
        bool tells = true;            ///< how the action ended; false where its log says it all
        SystemScans* scans = nullptr; ///< by which it scans afterwards, if it does
    };
    TerminalListener(std::function<void(const QStringList&)> print, Manners manners)
        : m_print(std::move(print))
        , m_manners(manners) {}

    /// What the scan has found.
    const std::optional<SystemConfigurationMatch>& match() const { return m_match; }
    /// What the user was told.
    const std::optional<ClosingAlert>& told() const { return m_told; }

    bool asks() const override { return false; }
    QCoro::Task<bool> ask(Alert question) override;
    QCoro::Task<void> tell(ClosingAlert alert) override;
    /// Shows what an apply of a whole profile would change.
    QCoro::Task<bool> review(Review review) override;
    QCoro::Task<void> showResult(ResultPanel panel) override;
    void withdrawReview() override {}
    /// A terminal has a command for it.
    void showSheet(std::shared_ptr<SheetModel> sheet) override;
    QCoro::Task<void> readAnew(Anew what) override;

private:
    std::function<void(const QStringList&)> m_print;
    Manners m_manners;
    std::optional<SystemConfigurationMatch> m_match;
    std::optional<ClosingAlert> m_told;
};

} // namespace quorvane
