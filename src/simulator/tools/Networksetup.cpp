#include "simulator/tools/Networksetup.h"

#include "simulator/tools/ToolOptions.h"

#include <QHash>

#include <arpa/inet.h>

#include <array>
#include <functional>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr const char* kServicesSubject = "networkServices";
constexpr int kInvalidParameters = 4;
constexpr int kNoPrivileges = 14;
constexpr QStringView kHeading = u"An asterisk (*) denotes that a network service is disabled.\n";

QString serviceText(const Json& service, const char* key) {
    const auto entry = service.find(key);
    return entry != service.end() && entry->is_string() ? QString::fromStdString(entry->get<std::string>()) : QString();
}

QString nameOf(const Json& service) {
    return serviceText(service, "name");
}

bool isEnabled(const Json& service) {
    return service.value("enabled", true);
}

Json services(const ToolContext& context) {
    const Json state = context.mac.state().read(kServicesSubject);
    return state.is_array() ? state : Json::array();
}

/// The service of a name, or null. Names are compared exactly; one with the asterisk of the list is no name.
const Json* find(const Json& services, const QString& name) {
    for (const Json& service : services) {
        if (nameOf(service) == name) {
            return &service;
        }
    }
    return nullptr;
}

// Every message of this tool goes to its output.

int refuseParameters(ToolContext& context) {
    context.print(u"** Error: The parameters were not valid.\n"_s);
    return kInvalidParameters;
}

int refuseName(ToolContext& context, const QString& name) {
    context.print(name + u" is not a recognized network service.\n"_s);
    return refuseParameters(context);
}

int refuseChange(ToolContext& context) {
    context.print(u"** Error: Command requires admin privileges.\n"_s);
    return kNoPrivileges;
}

/// Changes one service, if the caller may and there is one of the name.
int change(ToolContext& context, const QString& name, const std::function<void(Json&)>& changeService) {
    if (!context.isRoot()) {
        return refuseChange(context);
    }
    bool isFound = false;
    context.mac.state().update(kServicesSubject, [&](Json& state) {
        for (Json& service : state) {
            if (!isFound && nameOf(service) == name) {
                changeService(service);
                isFound = true;
            }
        }
    });
    return isFound ? 0 : refuseName(context, name);
}

int listServices(ToolContext& context, const QStringList& /*words*/) {
    context.print(kHeading.toString());
    const Json all = services(context);
    for (const Json& service : all) {
        context.print((isEnabled(service) ? u""_s : u"*"_s) + nameOf(service) + u'\n');
    }
    return 0;
}

/// Only the enabled services are counted.
int listOrder(ToolContext& context, const QStringList& /*words*/) {
    context.print(kHeading.toString());
    int number = 0;
    const Json all = services(context);
    for (const Json& service : all) {
        const QString place = isEnabled(service) ? QString::number(++number) : u"*"_s;
        const QString port = serviceText(service, "hardwarePort");
        context.print(u'(' + place + u") "_s + nameOf(service) + u"\n(Hardware Port: "_s +
                      (port.isEmpty() ? nameOf(service) : port) + u", Device: "_s + serviceText(service, "device") +
                      u")\n\n"_s);
    }
    return 0;
}

int showEnabled(ToolContext& context, const QStringList& words) {
    const Json all = services(context);
    const Json* service = find(all, words[0]);
    if (!service) {
        return refuseName(context, words[0]);
    }
    context.print(isEnabled(*service) ? u"Enabled\n"_s : u"Disabled\n"_s);
    return 0;
}

int setEnabled(ToolContext& context, const QStringList& words) {
    const bool on = words[1] == u"on"_s;
    if (!on && words[1] != u"off"_s) {
        return refuseParameters(context);
    }
    return change(context, words[0], [on](Json& service) { service["enabled"] = on; });
}

int showDnsServers(ToolContext& context, const QStringList& words) {
    const Json all = services(context);
    const Json* service = find(all, words[0]);
    if (!service) {
        return refuseName(context, words[0]);
    }
    const Json addresses = service->value("dnsServers", Json::array());
    for (const Json& address : addresses) {
        context.print(QString::fromStdString(address.get<std::string>()) + u'\n');
    }
    if (addresses.empty()) {
        context.print(u"There aren't any DNS Servers set on "_s + words[0] + u".\n"_s);
    }
    return 0;
}

bool isAddress(const QString& word) {
    std::array<unsigned char, sizeof(in6_addr)> address{};
    const QByteArray bytes = word.toUtf8();
    return ::inet_pton(AF_INET, bytes.constData(), address.data()) == 1 ||
           ::inet_pton(AF_INET6, bytes.constData(), address.data()) == 1;
}

/// Addresses, or the word "Empty" in any case that clears the list. What a Mac says to anything else is not
/// established; nothing is changed by it.
int setDnsServers(ToolContext& context, const QStringList& words) {
    Json addresses = Json::array();
    const bool clears = words.size() == 2 && words[1].compare(u"Empty"_s, Qt::CaseInsensitive) == 0;
    for (const QString& word : clears ? QStringList() : words.mid(1)) {
        if (!isAddress(word)) {
            context.print(word + u" is not a valid IP address.  No changes were saved.\n"_s);
            return refuseParameters(context);
        }
        addresses.push_back(word.toStdString());
    }
    return change(context, words[0], [&addresses](Json& service) {
        if (addresses.empty()) {
            service.erase("dnsServers");
        } else {
            service["dnsServers"] = addresses;
        }
    });
}

struct CommandRule {
    int (*run)(ToolContext& context, const QStringList& words);
    qsizetype fewestWords;
    qsizetype mostWords;
};

const QHash<QString, CommandRule>& commands() {
    static const QHash<QString, CommandRule> kCommands{
        {u"-listallnetworkservices"_s, {listServices, 0, 0}},  {u"-listnetworkserviceorder"_s, {listOrder, 0, 0}},
        {u"-getnetworkserviceenabled"_s, {showEnabled, 1, 1}}, {u"-setnetworkserviceenabled"_s, {setEnabled, 2, 2}},
        {u"-getdnsservers"_s, {showDnsServers, 1, 1}},         {u"-setdnsservers"_s, {setDnsServers, 2, 1000}}};
    return kCommands;
}

} // namespace

int runNetworksetup(ToolContext& context) {
    const QString name = context.arguments.value(1);
    const QStringList words = context.arguments.mid(2);
    const auto rule = commands().constFind(name);
    if (rule == commands().constEnd()) {
        return notSimulated(context, name.isEmpty() ? u"the list of commands"_s : name);
    }
    if (words.size() < rule->fewestWords || words.size() > rule->mostWords) {
        return refuseParameters(context);
    }
    return rule->run(context, words);
}

} // namespace macsim
