#include "simulator/BackgroundTasks.h"

#include <QHash>
#include <QUuid>

#include <algorithm>
#include <array>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr unsigned kLegacy = 0x10000;
constexpr unsigned kManaged = 0x20000; // not established
constexpr unsigned kCurated = 0x80000;

/// What a type says of the origin, in the order of its words.
struct Origin {
    QStringView word;
    unsigned bit;
};
constexpr std::array<Origin, 3> kOrigins{{{u"managed ", kManaged}, {u"curated ", kCurated}, {u"legacy ", kLegacy}}};

/// Takes the words of the origin from a type, and gives their bits.
unsigned takeOrigin(QString& type) {
    unsigned bits = 0;
    for (const Origin& origin : kOrigins) {
        if (type.startsWith(origin.word)) {
            type.remove(0, origin.word.size());
            bits |= origin.bit;
        }
    }
    return bits;
}

QString fieldText(const Json& record, const char* key) {
    const auto entry = record.find(key);
    return entry != record.end() && entry->is_string() ? QString::fromStdString(entry->get<std::string>()) : QString();
}

int number(const Json& record, const char* key, int missing) {
    const auto entry = record.find(key);
    return entry != record.end() && entry->is_number_integer() ? wholeNumber<int>(*entry) : missing;
}

bool isOn(const Json& record, const char* key) {
    const auto entry = record.find(key);
    return entry == record.end() || !entry->is_boolean() || entry->get<bool>();
}

QStringList texts(const Json& record, const char* key) {
    QStringList list;
    for (const Json& entry : record.value(key, Json::array())) {
        if (entry.is_string()) {
            list.append(QString::fromStdString(entry.get<std::string>()));
        }
    }
    return list;
}

/// How many characters of an identifier are its number and the dot behind it.
qsizetype numberLength(const QString& identifier) {
    const qsizetype dot = identifier.indexOf(u'.');
    const auto digitsEnd = identifier.cbegin() + std::max<qsizetype>(dot, 0);
    const bool isNumber = std::all_of(identifier.cbegin(), digitsEnd, [](QChar letter) { return letter.isDigit(); });
    return dot > 0 && isNumber ? dot + 1 : 0;
}

/// The number is the type without what tells of its origin. A developer is identified by the name alone.
QString withTypeNumber(const QString& identifier, const QString& type) {
    const unsigned bits = backgroundTaskTypeBits(type).value_or(0) & ~(kLegacy | kManaged | kCurated);
    const bool hasNumber = bits != 0 && type != u"developer"_s;
    return hasNumber && numberLength(identifier) == 0 ? QString::number(bits) + u'.' + identifier : identifier;
}

QString bundleIdentifierOf(const Json& record, const BackgroundTask& task) {
    const bool isBundle = task.type == u"app"_s || task.type == u"login item"_s;
    const QString told = fieldText(record, "bundleIdentifier");
    return told.isEmpty() && isBundle ? withoutTypeNumber(task.identifier) : told;
}

QString uuidOf(const Json& record, const BackgroundTask& task) {
    static const QUuid kNamespace(u"6f2f1d0a-5d3b-4a53-9a55-0d4d6d7b7463"_s);
    const QString told = fieldText(record, "uuid");
    return told.isEmpty() ? QUuid::createUuidV5(kNamespace, QString::number(task.userId) + u' ' + task.identifier)
                                .toString(QUuid::WithoutBraces)
                                .toUpper()
                          : told;
}

BackgroundTask taskFromJson(const Json& record) {
    BackgroundTask task;
    task.userId = number(record, "uid", 0);
    task.name = fieldText(record, "name");
    task.developerName = fieldText(record, "developerName");
    task.teamIdentifier = fieldText(record, "teamIdentifier");
    task.type = fieldText(record, "type");
    task.identifier = withTypeNumber(fieldText(record, "identifier"), task.type);
    task.url = fieldText(record, "url");
    task.parent = fieldText(record, "parent");
    task.executablePath = fieldText(record, "executablePath");
    task.bundleIdentifier = bundleIdentifierOf(record, task);
    task.associatedBundleIdentifiers = texts(record, "associatedBundleIdentifiers");
    task.uuid = uuidOf(record, task);
    task.lastUse = fieldText(record, "lastUse");
    task.generation = number(record, "generation", 1);
    task.isEnabled = isOn(record, "enabled");
    task.isAllowed = isOn(record, "allowed");
    task.isNotified = isOn(record, "notified");
    return task;
}

} // namespace

QString BackgroundTask::kind() const {
    QString kind = type;
    takeOrigin(kind);
    return kind;
}

bool BackgroundTask::isLegacy() const {
    QString kind = type;
    return (takeOrigin(kind) & kLegacy) != 0;
}

std::optional<unsigned> backgroundTaskTypeBits(const QString& type) {
    static const QHash<QString, unsigned> kBits{
        {u"app"_s, 0x2},        {u"login item"_s, 0x4},  {u"agent"_s, 0x8},
        {u"daemon"_s, 0x10},    {u"developer"_s, 0x20},  {u"spotlight"_s, 0x40},
        {u"dock tile"_s, 0x80}, {u"quicklook"_s, 0x800}, {u"background tasks"_s, 0x2000}};
    QString kind = type;
    const unsigned origin = takeOrigin(kind);
    const auto bits = kBits.constFind(kind);
    return bits == kBits.constEnd() ? std::nullopt : std::optional(*bits | origin);
}

QString withoutTypeNumber(const QString& identifier) {
    return identifier.mid(numberLength(identifier));
}

std::vector<BackgroundTask> backgroundTasks(const StateStore& state) {
    std::vector<BackgroundTask> tasks;
    const Json subject = state.read("backgroundTasks");
    const Json records = subject.is_object() ? subject.value("records", Json::array()) : Json::array();
    for (const Json& record : records) {
        if (record.is_object()) {
            tasks.push_back(taskFromJson(record));
        }
    }
    return tasks;
}

void updateBackgroundTasks(const StateStore& state, const std::function<void(const BackgroundTask&, Json&)>& change) {
    state.update("backgroundTasks", [&change](Json& subject) {
        const auto records = subject.is_object() ? subject.find("records") : subject.end();
        if (!subject.is_object() || records == subject.end()) {
            return;
        }
        for (Json& record : *records) {
            if (record.is_object()) {
                change(taskFromJson(record), record);
            }
        }
    });
}

} // namespace macsim
