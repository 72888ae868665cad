#include "simulator/tools/DefaultsArguments.h"

#include "simulator/tools/DefaultsValues.h"

#include <QHash>

#include <utility>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

using Kind = DefaultsMisuse::Kind;
using Verb = DefaultsCommand::Verb;

constexpr char16_t kUsage[] = uR"(Command line interface to a user's defaults.
Syntax:

'defaults' [-currentHost | -host <hostname>] followed by one of the following:

  read                                 shows all defaults
  read <domain>                        shows defaults for given domain
  read <domain> <key>                  shows defaults for given domain, key

  read-type <domain> <key>             shows the type for the given domain, key

  write <domain> <domain_rep>          writes domain (overwrites existing)
  write <domain> <key> <value>         writes key for domain

  rename <domain> <old_key> <new_key>  renames old_key to new_key

  delete <domain>                      deletes domain
  delete <domain> <key>                deletes key in domain
  delete-all <domain>                  deletes the domain from all containers
  delete-all <domain> <key>            deletes key in domain from all containers

  import <domain> <path to plist>      writes the plist at path to domain
  import <domain> -                    writes a plist from stdin to domain
  export <domain> <path to plist>      saves domain as a binary plist to path
  export <domain> -                    writes domain as an xml plist to stdout
  domains                              lists all domains
  find <word>                          lists all entries containing word
  help                                 print this help

<domain> is ( <domain_name> | -app <application_name> | -globalDomain )
         or a path to a file omitting the '.plist' extension

<value> is one of:
  <value_rep>
  -string <string_value>
  -data <hex_digits>
  -int[eger] <integer_value>
  -float  <floating-point_value>
  -bool[ean] (true | false | yes | no)
  -date <date_rep>
  -array <value1> <value2> ...
  -array-add <value1> <value2> ...
  -dict <key1> <value1> <key2> <value2> ...
  -dict-add <key1> <value1> ...
)";

[[noreturn]] void refuseWithUsage() {
    throw DefaultsMisuse(Kind::Usage);
}

QString taken(QStringList& arguments) {
    if (arguments.isEmpty()) {
        refuseWithUsage();
    }
    return arguments.takeFirst();
}

/// A host is named before everything else; behind the verb it is no longer one.
void takeHost(QStringList& arguments, DefaultsCommand& command) {
    const QString first = arguments.value(0);
    if (first == u"-currentHost"_s) {
        command.isCurrentHost = true;
        arguments.removeFirst();
    } else if (first == u"-host"_s) {
        arguments.removeFirst();
        command.hostName = taken(arguments);
    }
}

Verb takeVerb(QStringList& arguments) {
    // Without containers, "from all containers" is what a plain delete does.
    static const QHash<QString, Verb> kVerbs{
        {u"help"_s, Verb::Help},          {u"domains"_s, Verb::Domains}, {u"read"_s, Verb::Read},
        {u"read-type"_s, Verb::ReadType}, {u"write"_s, Verb::Write},     {u"rename"_s, Verb::Rename},
        {u"delete"_s, Verb::Delete},      {u"remove"_s, Verb::Delete},   {u"delete-all"_s, Verb::Delete},
        {u"export"_s, Verb::Export},
    };
    const QString word = taken(arguments).toLower();
    if (word == u"find"_s || word == u"import"_s) {
        throw DefaultsMisuse(Kind::Unsupported, word);
    }
    const auto verb = kVerbs.constFind(word);
    if (verb == kVerbs.constEnd()) {
        refuseWithUsage();
    }
    return *verb;
}

void takeDomain(QStringList& arguments, DefaultsCommand& command) {
    command.domain = taken(arguments);
    command.isGlobalDomain = command.domain == u"-g"_s || command.domain == u"-globalDomain"_s ||
                             command.domain == u"NSGlobalDomain"_s || command.domain == u"Apple Global Domain"_s;
    if (command.domain == u"-app"_s) {
        throw DefaultsMisuse(Kind::Unsupported, command.domain);
    }
    // A Mac takes any other option that stands here for a domain; it is always a mistake in the order.
    if (command.domain.isEmpty() || (command.domain.startsWith(u'-') && !command.isGlobalDomain)) {
        refuseWithUsage();
    }
}

void takeWrite(QStringList& arguments, DefaultsCommand& command) {
    const QString first = taken(arguments);
    if (!arguments.isEmpty()) {
        command.key = first;
        DefaultsValue value = parseDefaultsValue(std::exchange(arguments, {}));
        command.change = value.change;
        command.value = std::move(value.value);
        return;
    }
    command.verb = Verb::WriteDomain;
    command.value = parseDefaultsRepresentation(first);
    if (!command.value.as<PropertyList::Dictionary>()) {
        throw DefaultsMisuse(Kind::Explained, u"\nRep argument is not a dictionary\nDefaults have not been changed."_s);
    }
}

/// To the output: nobody here needs a copy in a file.
void takeExportTarget(QStringList& arguments) {
    const QString target = taken(arguments);
    if (target != u"-") {
        throw DefaultsMisuse(Kind::Unsupported, u"export to "_s + target);
    }
}

void takeDetails(QStringList& arguments, DefaultsCommand& command) {
    switch (command.verb) {
    case Verb::Write:
        takeWrite(arguments, command);
        break;
    case Verb::Rename:
        command.key = taken(arguments);
        command.newKey = taken(arguments);
        break;
    case Verb::ReadType:
        command.key = taken(arguments);
        break;
    case Verb::Export:
        takeExportTarget(arguments);
        break;
    default:
        if (!arguments.isEmpty()) {
            command.key = arguments.takeFirst();
        }
    }
}

} // namespace

DefaultsMisuse::DefaultsMisuse(Kind kind, QString message)
    : m_kind(kind)
    , m_message(std::move(message))
    , m_text(m_message.toUtf8()) {}

DefaultsCommand parseDefaultsArguments(const QStringList& arguments) {
    QStringList rest = arguments;
    DefaultsCommand command;
    takeHost(rest, command);
    command.verb = takeVerb(rest);
    const bool readsEverything = command.verb == Verb::Read && rest.isEmpty();
    if (command.verb != Verb::Help && command.verb != Verb::Domains && !readsEverything) {
        takeDomain(rest, command);
        takeDetails(rest, command);
    }
    if (!rest.isEmpty()) {
        refuseWithUsage();
    }
    return command;
}

QString defaultsUsage() {
    return QString::fromUtf16(kUsage);
}

} // namespace macsim
