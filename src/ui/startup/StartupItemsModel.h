#pragma once

#include "actions/StartupTexts.h"
#include "startup/items/WorkingStartup.h"
#include "ui/Theme.h"

#include <QAbstractListModel>
#include <QSet>

#include <functional>
#include <optional>
#include <variant>

namespace quorvane {

class MasterProfileState;
class StartupEditing;

/// What one row of the editor's list shows.
struct StartupListRow {
    QString symbol;
    BadgeColor tint = BadgeColor::Grey;
    QString title;
    QString description;
    QString mark;
    QString help;
    std::optional<bool> isOn; ///< its switch; none has none
    bool canSwitch = true;
    bool isProtected = false;
    std::optional<bool> isHidden; ///< of what can be hidden
    bool isRemovable = false;
};

/// All that scrolls in the startup editor: the startup items, those that aren't on this Mac now, suggestions, cloud services and
/// the network. Rows are known by what they stand for, so that a change moves nothing else.
class StartupItemsModel : public QAbstractListModel {
    Q_OBJECT

public:
    StartupItemsModel(const StartupEditing& editing, const MasterProfileState& workingCopy, QObject* parent = nullptr);

    enum class Kind { Note, Item, Heading, ServicesHeading, Suggestion, Service, Network };
    enum Role { SymbolRole = Qt::UserRole + 1, IdRole, HiddenRole, RemovableRole };

    /// Shows the items that match what was typed.
    void setSearch(const QString& typed);
    bool isSearched() const { return !m_query.isEmpty(); }
    /// How many items run on this Mac, whatever is searched.
    qsizetype runningCount() const { return m_runningCount; }

    Kind kind(int row) const { return m_rows.at(row).kind; }
    /// Rows of one group stand on one card; none for a heading.
    int group(int row) const { return m_rows.at(row).group; }
    StartupListRow row(const QModelIndex& index) const;
    // Copies: what is done with them may take their rows away.

    /// Only of an item.
    StartupItem item(const QModelIndex& index) const;
    /// Only of a suggestion.
    StartupLaunchItem suggestion(const QModelIndex& index) const;
    /// Only of a service.
    ServiceRow service(const QModelIndex& index) const;
    QModelIndex indexOf(const QString& id) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

Q_SIGNALS:
    /// Several rows come or go; in between nothing is to be relied on.
    void rowsAboutToChange();
    void rowsHaveChanged();
    void runningCountChanged();

private:
    struct Entry {
        StartupItem item;
        bool isAbsent = false;
        bool isAdded = false;
        bool isNew = false;
        bool showsPath = false; ///< which alone tells it from another

        bool operator==(const Entry&) const = default;
    };
    struct Row {
        Kind kind = Kind::Note;
        QString id; ///< no other row has it
        int group = 0;
        /// It shows its own copy, so that it can be looked at while others come and go: of a note and a heading the text, of the
        /// network whether it is off.
        std::variant<QString, Entry, StartupLaunchItem, ServiceRow, bool> what{};

        bool operator==(const Row&) const = default;
    };

    static QList<Entry> entriesOf(const WorkingStartup& working);
    static bool areSameItems(const QList<Entry>& left, const QList<Entry>& right);
    static QSet<QString> likeOthers(const QList<Entry>& entries);
    void takeStartup();
    void takeEntries();
    void takeSections();
    void countRunning();
    QList<Row> rowsToShow() const;
    QList<Row> itemsToShow(bool areAbsent) const;
    bool matches(const StartupItem& item) const;
    StartupListRow itemRow(const Entry& entry) const;
    void show();
    /// A part of the rows.
    struct Stretch {
        qsizetype begin = 0;
        qsizetype end = 0;
    };
    QSet<QString> keptRows(const Stretch& before, const QList<Row>& rows, const Stretch& now) const;
    void replaceRows(const QList<Row>& rows);
    void removeRowsBeside(const QSet<QString>& kept, const Stretch& stretch);
    void insertRowsBeside(const QSet<QString>& kept, const QList<Row>& rows, const Stretch& stretch);
    void updateRows(const QList<Row>& rows);
    void tellOfRows(const std::function<bool(int row)>& isConcerned);

    const StartupEditing& m_editing;
    const MasterProfileState& m_workingCopy;
    QString m_query;
    QList<Entry> m_entries;
    QSet<QString> m_likeOthers; ///< items that only their paths tell from others
    QList<StartupLaunchItem> m_suggestions;
    QList<ServiceRow> m_services;
    CloudSyncServices m_disabledServices;
    qsizetype m_runningCount = 0;
    QList<Row> m_rows;
};

} // namespace quorvane
