#pragma once

#include "ui/pieces/ScrollPage.h"

#include <QModelIndex>

#include <optional>

namespace quorvane {

class PerformanceEmptyState;
class PerformanceGroupedSection;
class PerformanceSnapshotStatusRow;
class PerformanceStatusNoteRow;
class PerformanceSystemMatchStatusRow;
class SavedProfilesModel;
class SavedProfilesView;
struct StatusNote;
struct ViewEnvironment;

/// The centre of the program: the state of this Mac, the saved profiles, and the way to single settings.
class PerformanceMainPage : public ScrollPage {
    Q_OBJECT

public:
    explicit PerformanceMainPage(const ViewEnvironment& environment, QWidget* parent = nullptr);

Q_SIGNALS:
    void tweaksRequested();
    void startupRequested();
    /// A new profile.
    void wizardRequested();
    /// The loaded one is to be edited.
    void editorRequested();

private:
    QWidget* makeStatusSection();
    QWidget* makeHeroCard();
    QWidget* makeProfilesSection();
    QWidget* makeManualSection();
    void updateStatus();
    void showNote(PerformanceStatusNoteRow& row, const std::optional<StatusNote>& note);
    void updateSnapshot();
    void updateProfiles();
    void pick(const QModelIndex& index);
    void edit(const QModelIndex& index);
    void remove(const QModelIndex& index);

    const ViewEnvironment& m_environment;
    PerformanceGroupedSection* m_statusSection = nullptr;
    PerformanceSystemMatchStatusRow* m_status = nullptr;
    PerformanceStatusNoteRow* m_changes = nullptr;
    PerformanceStatusNoteRow* m_inForce = nullptr;
    PerformanceSnapshotStatusRow* m_snapshot = nullptr;
    PerformanceGroupedSection* m_profilesSection = nullptr;
    PerformanceEmptyState* m_empty = nullptr;
    SavedProfilesModel* m_model = nullptr;
    SavedProfilesView* m_profiles = nullptr;
};

} // namespace quorvane
