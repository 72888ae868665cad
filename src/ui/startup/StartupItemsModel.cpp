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

/// As far as their looks go.
bool StartupItemsModel::areSameItems(const QList<Entry>& left, const QList<Entry>& right) {
    return std::equal(
        left.cbegin(), left.cend(), right.cbegin(), right.cend(), [](const Entry& one, const Entry& other) {
            return one.item.id == other.item.id && one.item.name == other.item.name && one.item.kind == other.item.kind;
        });
}

QSet<QString> StartupItemsModel::likeOthers(const QList<Entry>& entries) {
    QSet<QString> ids;
    QHash<std::pair<QString, int>, QString> first;
    first.reserve(entries.size());
    for (const Entry& entry : entries) {
        const std::pair<QString, int> look(entry.item.name, static_cast<int>(entry.item.kind));
        if (const auto other = first.constFind(look); other != first.cend()) {
            ids << *other << entry.item.id;
        } else {
            first.insert(look, entry.item.id);
        }
    }
    return ids;
}

void StartupItemsModel::takeStartup() {
    takeEntries();
    takeSections();
    const CloudSyncServices& disabled = m_workingCopy.startup().disabledCloudSyncAtStartup;
    const bool haveServicesChanged = std::exchange(m_disabledServices, disabled) != disabled;
    show();
    if (haveServicesChanged) { // they keep items from being switched
        tellOfRows([this](int row) { return kind(row) == Kind::Item; });
    }
    countRunning();
}

void StartupItemsModel::takeEntries() {
    QList<Entry> entries = entriesOf(m_workingCopy.workingStartup());
    if (!areSameItems(entries, m_entries)) {
        m_likeOthers = likeOthers(entries);
    }
    if (!m_likeOthers.isEmpty()) {
        for (Entry& entry : entries) {
            entry.showsPath = m_likeOthers.contains(entry.item.id);
        }
    }
    m_entries = entries;
}

void StartupItemsModel::takeSections() {
    m_suggestions = m_editing.suggestions();
    m_services = serviceRows(m_editing.detectedServices(), m_workingCopy.startup().disabledCloudSyncAtStartup,
                             m_workingCopy.servicesWithItemsLeftOff());
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
    }
}

bool StartupItemsModel::matches(const StartupItem& item) const {
    return m_query.isEmpty() || m_editing.searchText(item).contains(m_query);
}

// ---- Which rows there are

QList<StartupItemsModel::Row> StartupItemsModel::itemsToShow(bool areAbsent) const {
    QList<Row> rows;
    rows.reserve(m_entries.size());
    for (const Entry& entry : m_entries) {
        if (entry.isAbsent == areAbsent && matches(entry.item)) {
            rows.append({Kind::Item, entry.item.id, areAbsent ? AbsentGroup : ItemsGroup, entry});
        }
    }
    return rows;
}

QList<StartupItemsModel::Row> StartupItemsModel::rowsToShow() const {
    QList<Row> rows = itemsToShow(false);
    const QList<Row> absent = itemsToShow(true);
    if (rows.isEmpty() && (absent.isEmpty() || !isSearched())) {
        const bool isLoading = m_editing.isRefreshing() && m_entries.isEmpty();
        rows.append({Kind::Note, kNoteId, ItemsGroup, emptyListText(isLoading, isSearched())});
    }
    if (!absent.isEmpty()) {
        const auto count =
            std::count_if(m_entries.cbegin(), m_entries.cend(), [](const Entry& entry) { return entry.isAbsent; });
        rows.append({Kind::Heading, kAbsentHeadingId, NoGroup, absentHeading(count)});
        rows += absent;
    }
    if (!m_suggestions.isEmpty()) {
        rows.append({Kind::Heading, kSuggestionsHeadingId, NoGroup, kSuggestionsTitle});
        for (const StartupLaunchItem& application : m_suggestions) {
            rows.append({Kind::Suggestion, u"suggestion:"_s + application.path, SuggestionsGroup, application});
        }
    }
    if (!m_services.isEmpty()) {
        rows.append({Kind::ServicesHeading, kServicesHeadingId, NoGroup, kServicesTitle});
        for (const ServiceRow& service : m_services) {
            rows.append({Kind::Service, u"service:"_s + rawValue(service.service), ServicesGroup, service});
        }
    }
    rows.append({Kind::Heading, kNetworkHeadingId, NoGroup, kNetworkTitle});
    rows.append({Kind::Network, kNetworkId, NetworkGroup, m_workingCopy.startup().disableNetworkAtStartup});
    return rows;
}

void StartupItemsModel::show() {
    const QList<Row> rows = rowsToShow();
    Q_EMIT rowsAboutToChange();
    replaceRows(rows);
    updateRows(rows);
    Q_EMIT rowsHaveChanged();
}

/// The rows that stay, in the order in which they stand. Of very many changes only those stay that somebody holds on to.
QSet<QString> StartupItemsModel::keptRows(const Stretch& before, const QList<Row>& rows, const Stretch& now) const {
    QHash<QString, qsizetype> placeBefore;
    placeBefore.reserve(before.end - before.begin);
    for (qsizetype place = before.begin; place < before.end; ++place) {
        placeBefore.insert(m_rows.at(place).id, place);
    }
    QSet<QString> kept;
    qsizetype last = before.begin - 1;
    int changes = 0;
    for (qsizetype place = now.begin; place < now.end; ++place) {
        const qsizetype earlier = placeBefore.value(rows.at(place).id, -1);
        if (earlier > last) {
            kept.insert(rows.at(place).id);
            changes += earlier == last + 1 ? 0 : 1;
            last = earlier;
        } else {
            ++changes;
        }
    }
    if (changes < kManyChanges) {
        return kept;
    }
    QSet<QString> held;
    for (const QModelIndex& index : persistentIndexList()) {
        held.insert(m_rows.at(index.row()).id);
    }
    return held & kept;
}

/// Removes what has gone and inserts what has come, run by run. What lies before the first change and behind the last isn't
/// looked at any further.
void StartupItemsModel::replaceRows(const QList<Row>& rows) {
    const auto isSameRow = [](const Row& left, const Row& right) { return left.id == right.id; };
    const auto begin = std::mismatch(m_rows.cbegin(), m_rows.cend(), rows.cbegin(), rows.cend(), isSameRow).first;
    const qsizetype ahead = begin - m_rows.cbegin();
    const auto end =
        std::mismatch(m_rows.crbegin(), m_rows.crend() - ahead, rows.crbegin(), rows.crend() - ahead, isSameRow);
    const qsizetype behind = end.first - m_rows.crbegin();
    const Stretch before{ahead, m_rows.size() - behind};
    const Stretch now{ahead, rows.size() - behind};
    const QSet<QString> kept = keptRows(before, rows, now);
    removeRowsBeside(kept, before);
    insertRowsBeside(kept, rows, now);
}

void StartupItemsModel::removeRowsBeside(const QSet<QString>& kept, const Stretch& stretch) {
    const auto stays = [this, &kept](qsizetype row) { return kept.contains(m_rows.at(row).id); };
    for (qsizetype end = stretch.end; end > stretch.begin;) {
        if (stays(end - 1)) {
            --end;
            continue;
        }
        qsizetype first = end - 1;
        while (first > stretch.begin && !stays(first - 1)) {
            --first;
        }
        beginRemoveRows({}, static_cast<int>(first), static_cast<int>(end) - 1);
        m_rows.remove(first, end - first);
        endRemoveRows();
        end = first;
    }
}

void StartupItemsModel::insertRowsBeside(const QSet<QString>& kept, const QList<Row>& rows, const Stretch& stretch) {
    const auto stays = [&rows, &kept](qsizetype row) { return kept.contains(rows.at(row).id); };
    for (qsizetype row = stretch.begin; row < stretch.end; ++row) {
        if (stays(row)) {
            continue;
        }
        qsizetype end = row + 1;
        while (end < stretch.end && !stays(end)) {
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

/// They are the same ones, which may show something else.
void StartupItemsModel::updateRows(const QList<Row>& rows) {
    const QList<Row> before = std::exchange(m_rows, rows);
    tellOfRows([this, &before](int row) { return m_rows.at(row) != before.at(row); });
}

void StartupItemsModel::tellOfRows(const std::function<bool(int row)>& isConcerned) {
    for (int first = 0; first < m_rows.size(); ++first) {
        int end = first;
        while (end < m_rows.size() && isConcerned(end)) {
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

StartupListRow StartupItemsModel::itemRow(const Entry& entry) const {
    const StartupItem& item = entry.item;
    const ItemPath path = entry.showsPath ? ItemPath::Shown : ItemPath::Left;
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
        row.title = std::get<QString>(shown.what);
        break;
    case Kind::Item:
        return itemRow(std::get<Entry>(shown.what));
    case Kind::Heading:
    case Kind::ServicesHeading:
        row.title = std::get<QString>(shown.what);
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
        row.isOn = std::get<bool>(shown.what);
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
