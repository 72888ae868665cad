#include "ui/profiles/ProfileSelectorView.h"

#include "actions/ActiveProfile.h"
#include "actions/PageTexts.h"
#include "actions/ProfileTexts.h"
#include "actions/Session.h"
#include "actions/WindowListener.h"
#include "core/OneLine.h"
#include "ui/Theme.h"
#include "ui/ViewEnvironment.h"
#include "ui/pieces/MenuButton.h"
#include "ui/pieces/SymbolButton.h"
#include "ui/pieces/TextLabel.h"
#include "ui/symbols/Symbols.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QPointer>

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int kWidest = 220; ///< a name that needs more is shortened in the middle

/// In menus and buttons an ampersand would mark a key.
QString withoutMnemonic(QString text) {
    return text.replace(u"&"_s, u"&&"_s);
}

SymbolButton* symbolButton(const QString& symbol, const QString& title) {
    auto* const button = new SymbolButton(symbol, {});
    button->setToolTip(title);
    button->setAccessibleName(title);
    return button;
}

} // namespace

ProfileSelectorView::ProfileSelectorView(const ViewEnvironment& environment, QWidget* parent)
    : QWidget(parent)
    , m_environment(environment)
    , m_edited(new TextLabel(TextStyle::Secondary, TextTone::Secondary, kEdited))
    , m_button(new MenuButton({}))
    , m_export(symbolButton(u"square.and.arrow.up"_s, kExportProfile))
    , m_import(symbolButton(u"square.and.arrow.down"_s, kImportProfile)) {
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Theme::kGap8);
    m_edited->setWordWrap(false);
    layout->addWidget(m_edited);
    layout->addWidget(m_button);
    layout->addWidget(m_export);
    layout->addWidget(m_import);
    setFocusProxy(m_button);
    Session& session = environment.session;
    connect(&m_button->choices(), &QMenu::aboutToShow, this, &ProfileSelectorView::fillMenu);
    connect(&session.workingCopy, &MasterProfileState::currentProfileChanged, this, &ProfileSelectorView::update);
    connect(&session.workingCopy, &MasterProfileState::settingsChanged, this, &ProfileSelectorView::update);
    connect(&session.workingCopy, &MasterProfileState::startupChanged, this, &ProfileSelectorView::update);
    connectExchange();
    update();
}

void ProfileSelectorView::connectExchange() {
    Session& session = m_environment.session;
    ActionListener& listener = m_environment.listener;
    connect(m_export, &QPushButton::clicked, this,
            [&session, &listener] { session.tasks.start(session.profileExchange.exportCurrent(listener)); });
    connect(m_import, &QPushButton::clicked, this,
            [&session, &listener] { session.tasks.start(session.profileExchange.importChosen(listener)); });
}

void ProfileSelectorView::update() {
    const MasterProfileState& workingCopy = m_environment.session.workingCopy;
    const std::optional<UnifiedProfile>& loaded = workingCopy.currentProfile();
    const QString name = nameOnOneLine(loaded ? loaded->name : UnifiedProfile::defaultProfile().name);
    const QFontMetrics metrics(m_button->font());
    m_button->setText(withoutMnemonic(metrics.elidedText(name, Qt::ElideMiddle, kWidest)));
    m_button->setToolTip(name);
    m_edited->setVisible(workingCopy.isEdited());
    m_export->setEnabled(loaded.has_value());
    m_button->setAccessibleName(u"Profile: "_s + name + (workingCopy.isEdited() ? u", edited"_s : QString()));
}

/// From the list as it is known when it opens.
void ProfileSelectorView::fillMenu() {
    m_button->choices().clear();
    addProfiles();
    m_button->choices().addSeparator();
    addCommands();
}

void ProfileSelectorView::addProfiles() {
    const QList<UnifiedProfile>& profiles = m_environment.session.savedProfiles.known().profiles;
    for (const UnifiedProfile& profile : profiles) {
        addProfile(profile);
    }
    if (profiles.isEmpty()) {
        m_button->choices().addAction(kNoProfilesInMenu)->setEnabled(false);
    }
}

void ProfileSelectorView::addProfile(const UnifiedProfile& profile) {
    Session& session = m_environment.session;
    ActionListener& listener = m_environment.listener;
    const std::optional<UnifiedProfile>& loaded = session.workingCopy.currentProfile();
    const ProfileRow row = profileRow(profile, session.activeProfile.current());
    const QString title = row.isInForce ? row.text.title : row.text.title + u" — "_s + row.text.subtitle;
    QAction* const entry = m_button->choices().addAction(withoutMnemonic(title));
    if (loaded && loaded->id == profile.id) {
        entry->setIcon(symbolIcon(u"checkmark.circle.fill"_s, themeOf(this).text));
    }
    connect(entry, &QAction::triggered, this, [&session, &listener, name = profile.name, id = profile.id] {
        session.tasks.start(session.profileActions.pick(name, id, StartedFrom::Page, listener));
    });
}

void ProfileSelectorView::addCommands() {
    Session& session = m_environment.session;
    ActionListener& listener = m_environment.listener;
    const bool isLoaded = session.workingCopy.currentProfile().has_value();
    connect(m_button->choices().addAction(kApplyDefaultToSystem), &QAction::triggered, this, [&session, &listener] {
        session.tasks.start(session.profileActions.restoreDefault(StartedFrom::Page, listener));
    });
    connect(m_button->choices().addAction(kNoneClear), &QAction::triggered, this,
            [&session, &listener] { session.tasks.start(session.profileActions.clear(listener)); });
    QAction* const edit = m_button->choices().addAction(kEditCurrent);
    edit->setEnabled(isLoaded);
    connect(edit, &QAction::triggered, this, [this, &session, &listener] {
        const QPointer<ProfileSelectorView> selector(this);
        session.tasks.start(session.profileActions.editCurrent(
            [selector] {
                if (selector != nullptr) {
                    Q_EMIT selector->editorRequested();
                }
            },
            listener));
    });
    if (isLoaded && session.savedProfiles.find(session.workingCopy.currentProfile()->id)) {
        connect(m_button->choices().addAction(kDeleteSavedProfile), &QAction::triggered, this,
                [&session, &listener] { session.tasks.start(session.profileActions.removeCurrent(listener)); });
    }
    connect(m_button->choices().addAction(kSaveProfile), &QAction::triggered, this,
            [&session, &listener] { session.tasks.start(session.profileSaving.offer(listener)); });
}

} // namespace quorvane
