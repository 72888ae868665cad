#include "ui/performance/PerformanceMainPage.h"

#include "actions/ActiveProfile.h"
#include "actions/Session.h"
#include "actions/SnapshotStatus.h"
#include "actions/WindowListener.h"
#include "platform/Clock.h"
#include "platform/Host.h"
#include "ui/ViewEnvironment.h"
#include "ui/performance/PerformanceEmptyState.h"
#include "ui/performance/SavedProfilesModel.h"
#include "ui/performance/SavedProfilesView.h"
#include "ui/performance/StatusRows.h"
#include "ui/pieces/AppCard.h"
#include "ui/pieces/AppSection.h"

#include <QPointer>

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

PerformanceMainPage::PerformanceMainPage(const ViewEnvironment& environment, QWidget* parent)
    : ScrollPage(parent)
    , m_environment(environment) {
    addPart(makeStatusSection());
    addPart(makeHeroCard());
    addPart(makeProfilesSection());
    addPart(makeManualSection());
    finish();
    Session& session = environment.session;
    connect(&session.activeProfile, &ActiveProfile::changed, this, &PerformanceMainPage::updateStatus);
    connect(&session.system, &SystemManager::isVerifyingSystemChanged, this, &PerformanceMainPage::updateStatus);
    connect(&session.snapshotStatus, &SnapshotStatus::changed, this, &PerformanceMainPage::updateSnapshot);
    connect(&session.activeProfile, &ActiveProfile::changed, this, &PerformanceMainPage::updateProfiles);
    connect(&session.savedProfiles, &SavedProfiles::changed, this, &PerformanceMainPage::updateProfiles);
    updateStatus();
    updateSnapshot();
    updateProfiles();
}

// ---- System Status

QWidget* PerformanceMainPage::makeStatusSection() {
    Session& session = m_environment.session;
    ActionListener& listener = m_environment.listener;
    m_statusSection = new PerformanceGroupedSection(kSystemStatusTitle);
    m_status = new PerformanceSystemMatchStatusRow;
    m_changes = new PerformanceStatusNoteRow(u"exclamationmark.triangle.fill"_s);
    m_inForce = new PerformanceStatusNoteRow(u"clock.arrow.circlepath"_s);
    auto* const verify = new PerformanceVerifySystemRow;
    m_snapshot = new PerformanceSnapshotStatusRow;
    auto* const capture = new PerformanceNavigationRow(createSnapshotRow(), BadgeColor::Teal);
    auto* const reinstate = new PerformanceNavigationRow(reinstateRow(), BadgeColor::Orange);
    for (QWidget* const row : QList<QWidget*>{m_status, m_changes, m_inForce, verify, m_snapshot, capture, reinstate}) {
        m_statusSection->card().addRow(row);
    }
    connect(m_changes, &PerformanceStatusNoteRow::pressed, this,
            [&session, &listener] { session.tasks.start(session.systemActions.showChanges(listener)); });
    connect(m_inForce, &PerformanceStatusNoteRow::pressed, this,
            [&session, &listener] { session.tasks.start(session.tweakActions.undo(listener)); });
    connect(verify, &QPushButton::clicked, this,
            [&session, &listener] { session.tasks.start(session.systemActions.verify(listener)); });
    connect(capture, &QPushButton::clicked, this, [&session, &listener] {
        session.tasks.start(session.systemActions.saveSnapshot(u"Manual snapshot"_s, MasterArchive::No, listener));
    });
    connect(reinstate, &QPushButton::clicked, this,
            [&session, &listener] { session.tasks.start(session.systemActions.reinstate(listener)); });
    return m_statusSection;
}

void PerformanceMainPage::updateStatus() {
    const Session& session = m_environment.session;
    const ActiveConfiguration& active = session.activeProfile.current();
    const Host& host = session.system.host();
    m_status->setStatus(statusRow(active, session.system.isVerifyingSystem()));
    showNote(*m_changes, changesNote(active));
    showNote(*m_inForce, inForceNote(active, host.machine, host.clock.now()));
    m_statusSection->card().update();
}

void PerformanceMainPage::showNote(PerformanceStatusNoteRow& row, const std::optional<StatusNote>& note) {
    row.setVisible(note.has_value());
    if (note) {
        row.setNote(*note);
    }
}

void PerformanceMainPage::updateSnapshot() {
    const std::optional<RowText> text =
        snapshotRow(m_environment.session.snapshotStatus.current(), m_environment.session.system.host().machine);
    m_snapshot->setVisible(text.has_value());
    if (text) {
        m_snapshot->setText(*text);
    }
    m_statusSection->setFooter(systemStatusFooter(text.has_value()));
    m_statusSection->card().update();
}

// ---- Create Custom Profile

QWidget* PerformanceMainPage::makeHeroCard() {
    auto* const card = new AppCard;
    auto* const hero = new CustomProfileHeroCard;
    card->addRow(hero);
    connect(hero, &QPushButton::clicked, this, &PerformanceMainPage::wizardRequested);
    return card;
}

// ---- Saved Profiles

QWidget* PerformanceMainPage::makeProfilesSection() {
    Session& session = m_environment.session;
    m_profilesSection = new PerformanceGroupedSection(kSavedProfilesTitle);
    m_profilesSection->setHeader(kSavedProfilesHeader);
    m_empty = new PerformanceEmptyState(kNoSavedProfilesSymbol, kNoSavedProfiles, kNoSavedProfilesHint);
    m_model = new SavedProfilesModel(session.savedProfiles, session.activeProfile, this);
    m_profiles = new SavedProfilesView(*m_model);
    m_profilesSection->card().addRow(m_empty);
    m_profilesSection->card().addRow(m_profiles);
    connect(m_profiles, &SavedProfilesView::picked, this, &PerformanceMainPage::pick);
    connect(m_profiles, &SavedProfilesView::deletionAsked, this, &PerformanceMainPage::remove);
    connect(m_profiles, &SavedProfilesView::editingAsked, this, &PerformanceMainPage::edit);
    connect(m_profiles, &SavedProfilesView::currentMoved, this, [this](const QRect& row) {
        const QPoint centre = m_profiles->mapTo(widget(), row.center());
        ensureVisible(centre.x(), centre.y(), 0, row.height());
    });
    return m_profilesSection;
}

void PerformanceMainPage::updateProfiles() {
    const Session& session = m_environment.session;
    const bool isEmpty = session.savedProfiles.known().profiles.isEmpty();
    m_empty->setVisible(isEmpty && session.savedProfiles.wasRead());
    m_profilesSection->setFooter(
        savedProfilesFooter(session.savedProfiles.known().profiles, session.activeProfile.current()));
    m_profilesSection->card().update();
}

void PerformanceMainPage::pick(const QModelIndex& index) {
    Session& session = m_environment.session;
    ProfileActions& actions = session.profileActions;
    ActionListener& listener = m_environment.listener;
    if (m_model->kind(index) == SavedProfilesModel::Kind::Default) {
        session.tasks.start(actions.restoreDefault(StartedFrom::Page, listener));
    } else {
        const UnifiedProfile& profile = m_model->profile(index);
        session.tasks.start(actions.pick(profile.name, profile.id, StartedFrom::Page, listener));
    }
}

void PerformanceMainPage::edit(const QModelIndex& index) {
    Session& session = m_environment.session;
    const UnifiedProfile& profile = m_model->profile(index);
    const QPointer<PerformanceMainPage> page(this);
    const auto whenLoaded = [page] {
        if (page != nullptr) {
            Q_EMIT page->editorRequested();
        }
    };
    session.tasks.start(session.profileActions.edit(profile.name, profile.id, whenLoaded, m_environment.listener));
}

void PerformanceMainPage::remove(const QModelIndex& index) {
    Session& session = m_environment.session;
    const UnifiedProfile& profile = m_model->profile(index);
    session.tasks.start(session.profileActions.remove(profile.name, profile.id, m_environment.listener));
}

// ---- Manual Configuration

QWidget* PerformanceMainPage::makeManualSection() {
    auto* const section = new PerformanceGroupedSection(kManualConfigurationTitle);
    section->setHeader(kManualConfigurationHeader);
    auto* const tweaks = new PerformanceNavigationRow(systemTweaksRow(), BadgeColor::Grey, RowEnd::Chevron);
    section->card().addRow(tweaks);
    connect(tweaks, &QPushButton::clicked, this, &PerformanceMainPage::tweaksRequested);
    auto* const startup = new PerformanceNavigationRow(startupOptimizationRow(), BadgeColor::Green, RowEnd::Chevron);
    section->card().addRow(startup);
    connect(startup, &QPushButton::clicked, this, &PerformanceMainPage::startupRequested);
    return section;
}

} // namespace quorvane
