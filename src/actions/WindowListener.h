#pragma once

#include "actions/AlertingListener.h"

#include <QObject>

#include <memory>

namespace quorvane {

class ApplyReviewCoordinator;
class StartupEditing;

/// What window and menu start actions with: reviews and offers are sheets, which nothing here paints. Main thread.
class WindowListener final : public QObject, public AlertingListener {
    Q_OBJECT

public:
    struct Parts {
        AlertPresenter& alerts;
        SystemScans& scans;
        ApplyReviewCoordinator& reviews;
        StartupEditing& startup;
    };
    explicit WindowListener(const Parts& parts, QObject* parent = nullptr);

    /// None when none is open. The main window shows its sheet while there is one, and keeps it for as long as that.
    const std::shared_ptr<SheetModel>& sheet() const { return m_sheet; }

    QCoro::Task<bool> review(Review review) override;
    QCoro::Task<void> showResult(ResultPanel panel) override;
    void withdrawReview() override;
    void showSheet(std::shared_ptr<SheetModel> sheet) override;
    QCoro::Task<void> readAnew(Anew what) override;

    /// Takes sheets away, whatever their state, and shows none from then on.
    void shutDown();

Q_SIGNALS:
    void sheetChanged();
    /// Another snapshot may be the latest one now.
    void snapshotChanged();
    /// The copies in iCloud may be others now.
    void backupsChanged();

private:
    Parts m_parts;
    std::shared_ptr<SheetModel> m_sheet;
    bool m_isShutDown = false;
};

} // namespace quorvane
