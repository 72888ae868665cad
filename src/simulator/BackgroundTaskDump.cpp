#include "simulator/BackgroundTaskDump.h"

#include <QHash>
#include <QUuid>

#include <array>
#include <map>
#include <utility>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr int kFirstPersonalUserId = 501;
constexpr int kLabelWidth = 21; // labels end before the 22nd column, which holds the colon

constexpr unsigned kLegacyFlag = 0x10000;
constexpr unsigned kManagedFlag = 0x20000;
constexpr unsigned kCuratedFlag = 0x80000;

/// A word on the line of the flags; that of what is managed is not established.
struct Flag {
    unsigned typeBit;
    QStringView word;
    unsigned bit;
};

/// What distinguishes the systems.
struct DumpForm {
    bool numbersIdentifiers;   ///< 16.com.x and not com.x
    bool hexDisposition;       ///< (0xb) and not (11)
    bool tellsVisibility;      ///< "visible" among the words of the disposition
    bool hasFlags;             ///< a line of its own for what is legacy and curated
    bool spacesAssociatedList; ///< [ a b ] and not [a b]
    bool tellsLastUse;
};

DumpForm formOf(const Machine& machine) {
    const int version = machine.systemVersion.section(u'.', 0, 0).toInt();
    return {version >= 14, version >= 14, version < 15, version >= 15, version >= 15, version >= 26};
}

/// As printf writes "%#x": zero has no prefix.
QString hex(unsigned number) {
    return (number == 0 ? u""_s : u"0x"_s) + QString::number(number, 16);
}

QString line(const QString& label, const QString& value) {
    return label.rightJustified(kLabelWidth) + u": "_s + value + u'\n';
}

QString optionalLine(const QString& label, const QString& value) {
    return value.isEmpty() ? QString() : line(label, value);
}

QString orNull(const QString& value) {
    return value.isEmpty() ? u"(null)"_s : value;
}

QString typeText(const BackgroundTask& task, const DumpForm& form) {
    const unsigned bits = backgroundTaskTypeBits(task.type).value_or(0);
    const bool hidesCurated = form.hasFlags && (bits & kCuratedFlag) != 0;
    const QString words = hidesCurated ? QString(task.type).remove(u"curated "_s) : task.type;
    return words + u" ("_s + hex(hidesCurated ? bits & ~kCuratedFlag : bits) + u')';
}

QString flagsText(const BackgroundTask& task) {
    const unsigned bits = backgroundTaskTypeBits(task.type).value_or(0);
    static constexpr std::array<Flag, 3> kFlags{
        {{kLegacyFlag, u"legacy", 1}, {kManagedFlag, u"managed", 2}, {kCuratedFlag, u"curated", 4}}};
    QStringList words;
    unsigned flags = 0;
    for (const Flag& flag : kFlags) {
        if ((bits & flag.typeBit) != 0) {
            words.append(flag.word.toString());
            flags |= flag.bit;
        }
    }
    return u"[ "_s + words.join(u", "_s) + u" ] ("_s + hex(flags) + u')';
}

QString dispositionText(const BackgroundTask& task, const DumpForm& form) {
    const unsigned bits = (task.isEnabled ? 1U : 0U) | (task.isAllowed ? 2U : 0U) | (task.isNotified ? 8U : 0U);
    const QString visibility = form.tellsVisibility ? u"visible, "_s : QString();
    return (task.isEnabled ? u"[enabled, "_s : u"[disabled, "_s) +
           (task.isAllowed ? u"allowed, "_s : u"disallowed, "_s) + visibility +
           (task.isNotified ? u"notified] ("_s : u"not notified] ("_s) +
           (form.hexDisposition ? hex(bits) : QString::number(bits)) + u')';
}

QString identifierText(const QString& identifier, const DumpForm& form) {
    return form.numbersIdentifiers ? identifier : withoutTypeNumber(identifier);
}

QString associatedText(const QStringList& identifiers, const DumpForm& form) {
    if (identifiers.isEmpty()) {
        return {};
    }
    const QString list = identifiers.join(u' ');
    return form.spacesAssociatedList ? u"[ "_s + list + u" ]"_s : u'[' + list + u']';
}

QString embeddedList(const QStringList& identifiers, const DumpForm& form) {
    if (identifiers.isEmpty()) {
        return {};
    }
    QString list = u"  Embedded Item Identifiers:\n"_s;
    for (qsizetype at = 0; at < identifiers.size(); ++at) {
        list += u"    #"_s + QString::number(at + 1) + u": "_s + identifierText(identifiers[at], form) + u'\n';
    }
    return list;
}

QString recordText(const BackgroundTask& task, const QStringList& embedded, const DumpForm& form) {
    return line(u"UUID"_s, task.uuid) + line(u"Name"_s, orNull(task.name)) +
           line(u"Developer Name"_s, orNull(task.developerName)) +
           optionalLine(u"Team Identifier"_s, task.teamIdentifier) + line(u"Type"_s, typeText(task, form)) +
           (form.hasFlags ? line(u"Flags"_s, flagsText(task)) : QString()) +
           line(u"Disposition"_s, dispositionText(task, form)) +
           line(u"Identifier"_s, identifierText(task.identifier, form)) + line(u"URL"_s, orNull(task.url)) +
           optionalLine(u"Executable Path"_s, task.executablePath) +
           line(u"Generation"_s, QString::number(task.generation)) +
           (form.tellsLastUse ? optionalLine(u"Last Use"_s, task.lastUse) : QString()) +
           optionalLine(u"Assoc. Bundle IDs"_s, associatedText(task.associatedBundleIdentifiers, form)) +
           optionalLine(u"Bundle Identifier"_s, task.bundleIdentifier) +
           optionalLine(u"Parent Identifier"_s, identifierText(task.parent, form)) + embeddedList(embedded, form);
}

/// The system's own users have UUIDs that tell their number, a person's UUID is random.
QString userUuid(int userId, const Machine& machine) {
    if (userId < kFirstPersonalUserId) {
        return u"FFFFEEEE-DDDD-CCCC-BBBB-AAAA"_s +
               QString::number(static_cast<quint32>(userId), 16).rightJustified(8, u'0').toUpper();
    }
    return QUuid::createUuidV5(QUuid(machine.hardwareUuid), QString::number(userId))
        .toString(QUuid::WithoutBraces)
        .toUpper();
}

QString sectionHead(int userId, const Machine& machine) {
    const QString rule = QString(24, u'=') + u'\n';
    return rule + u" Records for UID "_s + QString::number(userId) + u" : "_s + userUuid(userId, machine) + u'\n' +
           rule + u"\n ServiceManagement migrated: true\n LaunchServices registered: false\n\n Items:\n\n"_s;
}

using Section = std::vector<const BackgroundTask*>;

/// Sections in the order of the user ids, the machine's before root's. These two and the user's are never left out.
std::map<int, Section> sectionsOf(const std::vector<BackgroundTask>& tasks, const Machine& machine) {
    std::map<int, Section> sections{{kMachineWideTasks, {}}, {0, {}}, {machine.userId, {}}};
    for (const BackgroundTask& task : tasks) {
        sections[task.userId].push_back(&task);
    }
    return sections;
}

/// The identifiers of what each record of a section holds, by the record's own identifier.
QHash<QString, QStringList> embeddedIdentifiers(const Section& section) {
    QHash<QString, QStringList> embedded;
    for (const BackgroundTask* task : section) {
        if (!task->parent.isEmpty()) {
            embedded[task->parent].append(task->identifier);
        }
    }
    return embedded;
}

} // namespace

QString backgroundTaskDump(const std::vector<BackgroundTask>& tasks, const Machine& machine) {
    const DumpForm form = formOf(machine);
    QString dump;
    for (const auto& [userId, section] : sectionsOf(tasks, machine)) {
        const QHash<QString, QStringList> embedded = embeddedIdentifiers(section);
        dump += sectionHead(userId, machine);
        int number = 0;
        for (const BackgroundTask* task : section) {
            dump += u" #"_s + QString::number(++number) + u":\n"_s +
                    recordText(*task, embedded.value(task->identifier), form) + u'\n';
        }
    }
    return dump;
}

} // namespace macsim
