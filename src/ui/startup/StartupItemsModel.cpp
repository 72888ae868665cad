#include "ui/startup/StartupItemsModel.h"

#include "actions/StartupEditing.h"
#include "core/OneLine.h"
#include "profiles/MasterProfileState.h"

#include <QHash>

#include <algorithm>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

enum Group { NoGroup, ItemsGroup, AbsentGroup, SuggestionsGroup, ServicesGroup, NetworkGroup };

const QString kNoteId = u"note"_s;
const QString kAbsentHeadingId = u"absent"_s;
const QString kSuggestionsHeadingId = u"suggestions"_s;
const QString kServicesHeadingId = u"services"_s;
const QString kNetworkHeadingId = u"networkHeading"_s;
const QString kNetworkId = u"network"_s;

/// From so many places on at which rows come or go, views take note of few large changes faster than of many small ones.
constexpr int kManyChanges = 32;

BadgeColor tintOfItem(StartupItemKind kind) {
    switch (kind) {
    case StartupItemKind::loginApp:
        return BadgeColor::Blue;
    case StartupItemKind::addedApp:
        return BadgeColor::Green;
    case StartupItemKind::backgroundAgent:
    case StartupItemKind::backgroundLoginItem:
        return BadgeColor::Purple;
    case StartupItemKind::launchAgent:
    case StartupItemKind::launchDaemon:
        break;
    }
    return BadgeColor::Grey;
}

} // namespace

StartupItemsModel::StartupItemsModel(const StartupEditing& editing, const MasterProfileState& workingCopy,
                                     QObject* parent)
    : QAbstractListModel(parent)
    , m_editing(editing)
    , m_workingCopy(workingCopy) {
    connect(&editing, &StartupEditing::changed, this, &StartupItemsModel::takeStartup);
    connect(&workingCopy, &MasterProfileState::startupChanged, this, &StartupItemsModel::takeStartup);
    takeStartup();
}

// ---- What is listed

QList<StartupItemsModel::Entry> StartupItemsModel::entriesOf(const WorkingStartup& working) {
    QList<Entry> entries;
    entries.reserve(working.shown.size() + working.absent.size());
    for (const StartupRow& row : working.shown) {
        entries.append({working.itemOf(row), false, row.isAdded, row.isNew});
    }
    for (const StartupRow& row : working.absent) {
        entries.append({working.itemOf(row), true, row.isAdded, row.isNew});
    }
    return entries;
}

void StartupItemsModel::takeStartup() {
    const QList<Entry> entries = entriesOf(m_workingCopy.workingStartup());
    const bool isLoading = m_editing.isRefreshing();
    if (!updateEntries(entries)) {
        takeEntries(entries);
    }
    takeSections();
    if (std::exchange(m_wasLoading, isLoading) != isLoading) {
        tellOfRows([](const Row& row) { return row.kind == Kind::Note; });
    }
    countRunning();
}

/// Where the same items are listed as before, only what they show may have changed.
bool StartupItemsModel::updateEntries(const QList<Entry>& entries) {
    const auto isSameItem = [](const Entry& one, const Entry& other) {
        return one.item.id == other.item.id && one.isAbsent == other.isAbsent && one.item.name == other.item.name &&
               one.item.path == other.item.path && one.item.kind == other.item.kind;
    };
    if (m_rows.isEmpty() ||
        !std::equal(entries.cbegin(), entries.cend(), m_entries.cbegin(), m_entries.cend(), isSameItem)) {
        return false;
    }
    QHash<QString, const Entry*> changed;
    for (qsizetype place = 0; place < entries.size(); ++place) {
        if (entries.at(place) != m_entries.at(place)) {
            changed.insert(entries.at(place).item.id, &entries.at(place));
        }
    }
    m_entries = entries;
    if (!changed.isEmpty()) {
        for (Row& row : m_rows) {
            if (const Entry* const now = changed.value(row.id)) {
                row.what = *now;
            }
        }
        tellOfRows([&changed](const Row& row) { return changed.contains(row.id); });
    }
    return true;
}

void StartupItemsModel::takeEntries(const QList<Entry>& entries) {
    const QList<Entry> before = std::exchange(m_entries, entries);
    QHash<std::pair<QString, int>, QString> first;
    m_likeOthers.clear();
    for (const Entry& entry : entries) {
        const std::pair<QString, int> look(entry.item.name, static_cast<int>(entry.item.kind));
        if (const auto other = first.constFind(look); other != first.cend()) {
            m_likeOthers << *other << entry.item.id;
        } else {
            first.insert(look, entry.item.id);
        }
    }
    show();
    QHash<QString, const Entry*> earlier;
    for (const Entry& entry : before) {
        earlier.insert(entry.item.id, &entry);
    }
    tellOfRows([this, &earlier](const Row& row) {
        if (row.kind != Kind::Item) {
            return row.kind == Kind::Heading;
        }
        const Entry* const known = earlier.value(row.id);
        return known == nullptr || *known != std::get<Entry>(row.what);
    });
}

void StartupItemsModel::takeSections() {
    const StartupConfiguration& startup = m_workingCopy.startup();
    const QList<StartupLaunchItem> suggestions = m_editing.suggestions();
    const QList<ServiceRow> services = serviceRows(m_editing.detectedServices(), startup.disabledCloudSyncAtStartup,
                                                   m_workingCopy.servicesWithItemsLeftOff());
    const bool isNetworkDisabled = startup.disableNetworkAtStartup;
    if (suggestions == m_suggestions && services == m_services && isNetworkDisabled == m_isNetworkDisabled) {
        return;
    }
    m_suggestions = suggestions;
    m_services = services;
    m_isNetworkDisabled = isNetworkDisabled;
    show();
    // A service that goes off or comes back changes what can be switched above.
    tellOfRows([](const Row&) { return true; });
}

void StartupItemsModel::countRunning() {
    const qsizetype count = std::count_if(m_entries.cbegin(), m_entries.cend(), [](const Entry& entry) {
        return !entry.isAbsent && entry.item.runsAtStartup;
    });
    if (std::exchange(m_runningCount, count) != count) {
        Q_EMIT runningCountChanged();
    }
}

void StartupItemsModel::setSearch(const QString& typed) {
    const QString query = startupQuery(typed);
    if (std::exchange(m_query, query) != query) {
        show();
        tellOfRows([](const Row& row) { return row.kind == Kind::Note; });
    }
}

bool StartupItemsModel::matches(const StartupItem& item) const {
    return m_query.isEmpty() || m_editing.searchText(item).contains(m_query);
}

// ---- Which rows there are

void StartupItemsModel::addItems(QList<Row>& rows, bool areAbsent) const {
    for (const Entry& entry : m_entries) {
        if (entry.isAbsent == areAbsent && matches(entry.item)) {
            rows.append({Kind::Item, entry.item.id, areAbsent ? AbsentGroup : ItemsGroup, entry});
        }
    }
}

QList<StartupItemsModel::Row> StartupItemsModel::rowsToShow() const {
    QList<Row> rows;
    rows.reserve(m_entries.size() + m_suggestions.size() + m_services.size() + 8);
    addItems(rows, false);
    QList<Row> absent;
    addItems(absent, true);
    if (rows.isEmpty() && (absent.isEmpty() || !isSearched())) {
        rows.append({Kind::Note, kNoteId, ItemsGroup});
    }
    if (!absent.isEmpty()) {
        rows.append({Kind::Heading, kAbsentHeadingId, NoGroup});
        rows += absent;
    }
    if (!m_suggestions.isEmpty()) {
        rows.append({Kind::Heading, kSuggestionsHeadingId, NoGroup});
        for (const StartupLaunchItem& application : m_suggestions) {
            rows.append({Kind::Suggestion, u"suggestion:"_s + application.path, SuggestionsGroup, application});
        }
    }
    if (!m_services.isEmpty()) {
        rows.append({Kind::ServicesHeading, kServicesHeadingId, NoGroup});
        for (const ServiceRow& service : m_services) {
            rows.append({Kind::Service, u"service:"_s + rawValue(service.service), ServicesGroup, service});
        }
    }
    rows.append({Kind::Heading, kNetworkHeadingId, NoGroup});
    rows.append({Kind::Network, kNetworkId, NetworkGroup});
    return rows;
}

void StartupItemsModel::show() {
    const QList<Row> rows = rowsToShow();
    Q_EMIT rowsAboutToChange();
    replaceRows(rows);
    Q_EMIT rowsHaveChanged();
}

/// The rows that stay, in the order in which they stand. Of very many changes only those stay that somebody holds on to, and
/// what lies before the first change and behind the last.
QSet<QString> StartupItemsModel::keptRows(const QList<Row>& rows) const {
    QHash<QString, qsizetype> placeBefore;
    placeBefore.reserve(m_rows.size());
    for (qsizetype place = 0; place < m_rows.size(); ++place) {
        placeBefore.insert(m_rows.at(place).id, place);
    }
    QSet<QString> kept;
    qsizetype last = -1;
    int changes = 0;
    for (const Row& row : rows) {
        const qsizetype before = placeBefore.value(row.id, -1);
        if (before > last) {
            kept.insert(row.id);
            changes += before == last + 1 ? 0 : 1;
            last = before;
        } else {
            ++changes;
        }
    }
    if (changes < kManyChanges) {
        return kept;
    }
    QSet<QString> few;
    const auto keepWhileSame = [&few](auto before, auto beforeEnd, auto now, auto nowEnd) {
        for (; before != beforeEnd && now != nowEnd && before->id == now->id; ++before, ++now) {
            few.insert(now->id);
        }
    };
    keepWhileSame(m_rows.cbegin(), m_rows.cend(), rows.cbegin(), rows.cend());
    keepWhileSame(m_rows.crbegin(), m_rows.crend(), rows.crbegin(), rows.crend());
    for (const QModelIndex& held : persistentIndexList()) {
        if (const QString& id = m_rows.at(held.row()).id; kept.contains(id)) {
            few.insert(id);
        }
    }
    return few & kept;
}

/// Removes what has gone and inserts what has come, run by run.
void StartupItemsModel::replaceRows(const QList<Row>& rows) {
    const QSet<QString> kept = keptRows(rows);
    const auto stays = [&kept](const Row& row) { return kept.contains(row.id); };
    for (qsizetype end = m_rows.size(); end > 0;) {
        if (stays(m_rows.at(end - 1))) {
            --end;
            continue;
        }
        qsizetype first = end - 1;
        while (first > 0 && !stays(m_rows.at(first - 1))) {
            --first;
        }
        beginRemoveRows({}, static_cast<int>(first), static_cast<int>(end) - 1);
        m_rows.remove(first, end - first);
        endRemoveRows();
        end = first;
    }
    for (qsizetype row = 0; row < rows.size(); ++row) {
        if (stays(rows.at(row))) {
            m_rows[row] = rows.at(row);
            continue;
        }
        qsizetype end = row + 1;
        while (end < rows.size() && !stays(rows.at(end))) {
            ++end;
        }
        beginInsertRows({}, static_cast<int>(row), static_cast<int>(end) - 1);
        const QList<Row> behind = m_rows.mid(row);
        m_rows.resize(row);
        m_rows += rows.mid(row, end - row);
        m_rows += behind;
        endInsertRows();
        row = end - 1;
    }
}

void StartupItemsModel::tellOfRows(const std::function<bool(const Row&)>& isConcerned) {
    for (int first = 0; first < m_rows.size(); ++first) {
        int end = first;
        while (end < m_rows.size() && isConcerned(m_rows.at(end))) {
            ++end;
        }
        if (end > first) {
            Q_EMIT dataChanged(index(first), index(end - 1));
            first = end;
        }
    }
}

// ---- What a row shows

StartupItem StartupItemsModel::item(const QModelIndex& index) const {
    return std::get<Entry>(m_rows.at(index.row()).what).item;
}

StartupLaunchItem StartupItemsModel::suggestion(const QModelIndex& index) const {
    return std::get<StartupLaunchItem>(m_rows.at(index.row()).what);
}

ServiceRow StartupItemsModel::service(const QModelIndex& index) const {
    return std::get<ServiceRow>(m_rows.at(index.row()).what);
}

QModelIndex StartupItemsModel::indexOf(const QString& id) const {
    for (int row = 0; row < m_rows.size(); ++row) {
        if (m_rows.at(row).id == id) {
            return index(row);
        }
    }
    return {};
}

QString StartupItemsModel::headingText(const Row& row) const {
    if (row.id == kAbsentHeadingId) {
        return absentHeading(
            std::count_if(m_entries.cbegin(), m_entries.cend(), [](const Entry& entry) { return entry.isAbsent; }));
    }
    if (row.id == kNetworkHeadingId) {
        return kNetworkTitle;
    }
    return row.kind == Kind::ServicesHeading ? kServicesTitle : kSuggestionsTitle;
}

QString StartupItemsModel::noteText() const {
    const bool isLoading = m_editing.isRefreshing() && m_entries.isEmpty();
    return emptyListText(isLoading, isSearched());
}

StartupListRow StartupItemsModel::itemRow(const Entry& entry) const {
    const StartupItem& item = entry.item;
    const ItemPath path = m_likeOthers.contains(item.id) ? ItemPath::Shown : ItemPath::Left;
    StartupListRow row;
    row.symbol = symbolOf(item.kind);
    row.tint = tintOfItem(item.kind);
    row.title = nameOnOneLine(item.name);
    row.description = itemDescription(item, path);
    row.mark = entry.isNew ? kNewMark : QString();
    row.help = nameOnOneLine(item.path);
    row.isOn = item.runsAtStartup;
    row.canSwitch = !isHeldOff(item, m_workingCopy.startup().disabledCloudSyncAtStartup);
    row.isProtected = item.isProtected;
    if (entry.isAdded) {
        row.isHidden = item.hidden.value_or(false);
    }
    row.isRemovable = entry.isAdded || entry.isAbsent;
    return row;
}

StartupListRow StartupItemsModel::row(const QModelIndex& index) const {
    const Row& shown = m_rows.at(index.row());
    StartupListRow row;
    switch (shown.kind) {
    case Kind::Note:
        row.title = noteText();
        break;
    case Kind::Item:
        return itemRow(std::get<Entry>(shown.what));
    case Kind::Heading:
    case Kind::ServicesHeading:
        row.title = headingText(shown);
        row.symbol = shown.id == kSuggestionsHeadingId ? kSuggestionsSymbol : QString();
        row.description = shown.kind == Kind::ServicesHeading ? kServicesText : QString();
        break;
    case Kind::Suggestion: {
        const auto& application = std::get<StartupLaunchItem>(shown.what);
        row.symbol = symbolOf(StartupItemKind::addedApp);
        row.tint = BadgeColor::Green;
        row.title = nameOnOneLine(application.name);
        row.description = nameOnOneLine(application.path);
        break;
    }
    case Kind::Service: {
        const auto& service = std::get<ServiceRow>(shown.what);
        row.symbol = service.text.symbol;
        row.tint = BadgeColor::Teal;
        row.title = service.text.title;
        row.description = service.text.subtitle;
        row.help = service.help;
        row.isOn = service.isOn;
        break;
    }
    case Kind::Network: {
        const RowText text = networkRow();
        row.symbol = text.symbol;
        row.tint = BadgeColor::Orange;
        row.title = text.title;
        row.description = text.subtitle;
        row.isOn = m_isNetworkDisabled;
        break;
    }
    }
    return row;
}

int StartupItemsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant StartupItemsModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) {
        return {};
    }
    const StartupListRow shown = row(index);
    switch (role) {
    case Qt::DisplayRole:
        return shown.title;
    case Qt::CheckStateRole:
        return shown.isOn ? QVariant(*shown.isOn ? Qt::Checked : Qt::Unchecked) : QVariant();
    case Qt::AccessibleTextRole:
        return kind(index.row()) == Kind::Item ? spokenItem(item(index)) : shown.title;
    case Qt::AccessibleDescriptionRole: {
        QStringList parts{shown.mark, shown.description, shown.help};
        if (shown.isHidden) {
            parts.append(hiddenHelp(*shown.isHidden));
        }
        parts.removeAll(QString());
        parts.removeDuplicates();
        return parts.join(u". "_s);
    }
    case Qt::ToolTipRole:
        return shown.help.isEmpty() ? QString() : Qt::convertFromPlainText(shown.help); // Qt would guess
    case SymbolRole:
        return shown.symbol;
    case IdRole:
        return m_rows.at(index.row()).id;
    case HiddenRole:
        return shown.isHidden ? QVariant(*shown.isHidden) : QVariant();
    case RemovableRole:
        return shown.isRemovable;
    default:
        return {};
    }
}

/// Only what can be done something with can be reached by keys.
Qt::ItemFlags StartupItemsModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) {
        return Qt::NoItemFlags;
    }
    switch (kind(index.row())) {
    case Kind::Note:
    case Kind::Heading:
    case Kind::ServicesHeading:
        return Qt::ItemNeverHasChildren;
    case Kind::Suggestion:
        return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    case Kind::Item:
    case Kind::Service:
    case Kind::Network:
        break;
    }
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemNeverHasChildren;
}

} // namespace quorvane
