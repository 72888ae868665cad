#include "simulator/tools/Defaults.h"

#include "simulator/PreferenceStore.h"
#include "simulator/PropertyListText.h"
#include "simulator/SoftwareUpdateService.h"
#include "simulator/Tool.h"
#include "simulator/tools/DefaultsArguments.h"

#include <QCoreApplication>
#include <QDateTime>

#include <array>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

using Outcome = PreferenceStore::Outcome;
using Verb = DefaultsCommand::Verb;

constexpr int kUsageStatus = 255;

/// Prints a message as the system log's function does: the time and the process before it. Some of the tool's
/// messages begin with a line's end, so that they stand on a line of their own.
int explain(ToolContext& context, const QString& message) {
    const QString time = QDateTime::currentDateTime().toString(u"yyyy-MM-dd HH:mm:ss.zzz"_s);
    const qint64 process = QCoreApplication::applicationPid();
    context.complain(u"%1 defaults[%2:%3] "_s.arg(time).arg(process).arg(process * 16) + message + u'\n');
    return 1;
}

int answerMisuse(ToolContext& context, const DefaultsMisuse& misuse) {
    switch (misuse.kind()) {
    case DefaultsMisuse::Kind::Explained:
        return explain(context, misuse.message());
    case DefaultsMisuse::Kind::Unsupported:
        context.complain(u"defaults: %1: not possible on this simulated Mac\n"_s.arg(misuse.message()));
        return kUsageStatus;
    case DefaultsMisuse::Kind::Usage:
        break;
    }
    context.print(defaultsUsage());
    return kUsageStatus;
}

/// One run of the tool: a command line that was understood, and the preferences it is about.
class DefaultsRun {
public:
    DefaultsRun(ToolContext& context, const DefaultsCommand& command)
        : m_context(context)
        , m_command(command)
        , m_store(context.mac, context.volume)
        , m_domain{storeName(), command.isCurrentHost || !command.hostName.isEmpty() ? PreferenceHost::Current
                                                                                     : PreferenceHost::Any} {}

    int run() {
        switch (m_command.verb) {
        case Verb::Help:
            m_context.print(defaultsUsage());
            return 0;
        case Verb::Domains:
            return printDomains();
        case Verb::Read:
            return m_command.domain.isEmpty() ? printEverything() : m_command.key ? printValue() : printDomain();
        case Verb::ReadType:
            return printType();
        case Verb::Write:
        case Verb::WriteDomain:
            return write();
        case Verb::Rename:
            return rename();
        case Verb::Delete:
            return remove();
        case Verb::Export:
            return printExport();
        }
        return kUsageStatus;
    }

private:
    /// A domain with a slash in it is a path, from the working folder on where it doesn't say otherwise.
    QString storeName() const {
        const QString& domain = m_command.domain;
        if (m_command.isGlobalDomain) {
            return kGlobalDomain.toString();
        }
        if (domain.startsWith(u"~/"_s)) {
            return m_context.mac.homeFolder(m_context.actor()) + domain.mid(1);
        }
        return domain.contains(u'/') ? m_context.absolutePath(domain) : domain;
    }

    /// A path is shown in full, a name as it was typed, and the global domain by one of its names.
    QString shownDomain(const QString& globalName) const {
        return m_command.isGlobalDomain ? globalName : m_domain.isPath() ? m_domain.name : m_command.domain;
    }

    int printDomains() {
        QStringList names = m_store.domains(m_domain.host);
        names.removeAll(kGlobalDomain.toString());
        m_context.print(names.join(u", "_s) + u'\n');
        return 0;
    }

    int printEverything() {
        PropertyList::Dictionary everything;
        const QStringList names = m_store.domains(m_domain.host);
        for (const QString& name : names) {
            if (const auto values = m_store.readDomain({name, m_domain.host})) {
                everything.insert_or_assign(name == kGlobalDomain ? u"Apple Global Domain"_s : name, *values);
            }
        }
        m_context.print(propertyListText(everything) + u'\n');
        return 0;
    }

    int printDomain() {
        const auto values = m_store.readDomain(m_domain);
        if (!values) {
            return explain(m_context, u"\nDomain %1 does not exist"_s.arg(shownDomain(u"Apple Global Domain"_s)));
        }
        m_context.print(propertyListText(*values) + u'\n');
        return 0;
    }

    int printValue() {
        const std::optional<PropertyList> value = m_store.read(m_domain, *m_command.key);
        if (!value) {
            return explainMissingPair();
        }
        m_context.print(propertyListText(*value) + u'\n');
        return 0;
    }

    /// As an XML property list; one without keys for a domain that isn't there.
    int printExport() {
        const PropertyList values = m_store.readDomain(m_domain).value_or(PropertyList::Dictionary());
        m_context.print(QString::fromUtf8(xmlPropertyList(values)));
        return 0;
    }

    int printType() {
        static constexpr std::array<QStringView, std::variant_size_v<PropertyList::Value>> kTypes{
            u"dictionary", u"array", u"string", u"boolean", u"integer", u"float", u"data", u"date"};
        const std::optional<PropertyList> value = m_store.read(m_domain, *m_command.key);
        if (!value) {
            return explainMissingPair();
        }
        m_context.print(u"Type is %1\n"_s.arg(kTypes.at(value->value().index())));
        return 0;
    }

    int explainMissingPair() {
        const QString domain = shownDomain(u"kCFPreferencesAnyApplication"_s);
        return explain(m_context,
                       u"\nThe domain/default pair of (%1, %2) does not exist"_s.arg(domain, *m_command.key));
    }

    int write() {
        QString problem = u"Could not write domain %1; exiting"_s.arg(shownDomain(u"Apple Global Domain"_s));
        const Outcome outcome = m_store.update(m_domain, [&](PropertyList::Dictionary& values) {
            if (m_command.verb == Verb::WriteDomain) {
                values = *m_command.value.as<PropertyList::Dictionary>();
                return Outcome::Done;
            }
            PropertyList& value = values.try_emplace(*m_command.key, emptyValue()).first->second;
            const bool isDone = changeValue(value);
            if (!isDone) {
                problem = wrongTypeMessage();
            }
            return isDone ? Outcome::Done : Outcome::Refused;
        });
        if (outcome != Outcome::Done) {
            return explain(m_context, problem);
        }
        softwareUpdateServiceNotices(m_context.mac, m_store.filePath(m_domain));
        return 0;
    }

    /// What an array or a dictionary is added to where the key has no value.
    PropertyList emptyValue() const {
        return m_command.change == DefaultsCommand::Change::AppendToArray ? PropertyList(PropertyList::Array{})
                                                                          : PropertyList();
    }

    bool changeValue(PropertyList& value) const {
        switch (m_command.change) {
        case DefaultsCommand::Change::Replace:
            value = m_command.value;
            return true;
        case DefaultsCommand::Change::AppendToArray:
            return appended(value.as<PropertyList::Array>(), *m_command.value.as<PropertyList::Array>());
        case DefaultsCommand::Change::AddToDictionary:
            return merged(value.as<PropertyList::Dictionary>(), *m_command.value.as<PropertyList::Dictionary>());
        }
        return false;
    }

    static bool appended(PropertyList::Array* target, const PropertyList::Array& items) {
        if (target) {
            target->insert(target->end(), items.begin(), items.end());
        }
        return target != nullptr;
    }

    static bool merged(PropertyList::Dictionary* target, const PropertyList::Dictionary& entries) {
        if (!target) {
            return false;
        }
        for (const auto& [key, value] : entries) {
            target->insert_or_assign(key, value);
        }
        return true;
    }

    QString wrongTypeMessage() const {
        const bool isArray = m_command.change == DefaultsCommand::Change::AppendToArray;
        return u"Value for key %1 is not %2; cannot append.  Leaving defaults unchanged."_s.arg(
            *m_command.key, isArray ? u"an array"_s : u"a dictionary"_s);
    }

    int rename() {
        const QString domain = shownDomain(u"Apple Global Domain"_s);
        const Outcome outcome = m_store.update(m_domain, [this](PropertyList::Dictionary& values) {
            auto entry = values.extract(*m_command.key);
            if (entry.empty()) {
                return Outcome::Missing;
            }
            values.insert_or_assign(m_command.newKey, std::move(entry.mapped()));
            return Outcome::Done;
        });
        switch (outcome) {
        case Outcome::Done:
            return 0;
        case Outcome::Missing:
            return explain(m_context, u"Key %1 does not exist in domain %2; leaving defaults unchanged"_s.arg(
                                          *m_command.key, domain));
        case Outcome::Refused:
            break;
        }
        return explain(m_context, u"Failed to write domain %1"_s.arg(domain));
    }

    /// A missing key, a missing domain and a file that may not be changed have the same answer.
    int remove() {
        const Outcome outcome =
            m_command.key ? m_store.remove(m_domain, *m_command.key) : m_store.removeDomain(m_domain);
        if (outcome == Outcome::Done) {
            return 0;
        }
        const QString domain = m_command.isGlobalDomain ? u"kCFPreferencesAnyApplication"_s : m_command.domain;
        return explain(m_context, u"\nDomain (%1) not found.\nDefaults have not been changed."_s.arg(domain));
    }

    ToolContext& m_context;
    const DefaultsCommand& m_command;
    PreferenceStore m_store;
    PreferenceDomain m_domain;
};

} // namespace

int runDefaults(ToolContext& context) {
    try {
        const DefaultsCommand command = parseDefaultsArguments(context.arguments.mid(1));
        if (!command.hostName.isEmpty() && command.hostName != context.mac.machine().computerName) {
            throw DefaultsMisuse(DefaultsMisuse::Kind::Unsupported, u"-host "_s + command.hostName);
        }
        return DefaultsRun(context, command).run();
    } catch (const DefaultsMisuse& misuse) {
        return answerMisuse(context, misuse);
    }
}

} // namespace macsim
