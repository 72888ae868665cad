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

        bool operator==(const Entry&) const = default;
    };
    struct Row {
        Kind kind = Kind::Note;
        QString id; ///< no other row has it
        int group = 0;
        /// It shows its own copy, so that it can be looked at while others come and go.
        std::variant<std::monostate, Entry, StartupLaunchItem, ServiceRow> what{};
    };

    static QList<Entry> entriesOf(const WorkingStartup& working);
    void takeStartup();
    void takeEntries(const QList<Entry>& entries);
    bool updateEntries(const QList<Entry>& entries);
    void takeSections();
    void countRunning();
    QList<Row> rowsToShow() const;
    void addItems(QList<Row>& rows, bool areAbsent) const;
    bool matches(const StartupItem& item) const;
    QString headingText(const Row& row) const;
    QString noteText() const;
    StartupListRow itemRow(const Entry& entry) const;
    void show();
    void replaceRows(const QList<Row>& rows);
    QSet<QString> keptRows(const QList<Row>& rows) const;
    void tellOfRows(const std::function<bool(const Row&)>& isConcerned);

    const StartupEditing& m_editing;
    const MasterProfileState& m_workingCopy;
    QString m_query;
    QList<Entry> m_entries;
    QSet<QString> m_likeOthers; ///< items that only their paths tell from others
    QList<StartupLaunchItem> m_suggestions;
    QList<ServiceRow> m_services;
    bool m_isNetworkDisabled = false;
    bool m_wasLoading = false;
    qsizetype m_runningCount = 0;
    QList<Row> m_rows;
};

} // namespace quorvane
