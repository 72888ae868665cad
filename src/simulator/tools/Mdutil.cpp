#include "simulator/tools/Mdutil.h"

#include "simulator/tools/ToolOptions.h"

#include <QDateTime>

#include <algorithm>
#include <unistd.h>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr const char* kSpotlightSubject = "spotlight";
constexpr QStringView kDataVolume = u"/System/Volumes/Data";
constexpr OptionRules kMdutilRules{u"pEsai:dvtLPrX", u"said",
                                   u"Usage: mdutil -pEsa -i (on|off) -d volume ...\n"
                                   u"       mdutil -t {volume-path | deviceid} fileid\n",
                                   1};

/// One volume or folder that the line names.
struct Place {
    QString shown;  ///< as mdutil prints it
    QString volume; ///< the volume that it lies on
    bool isVolume = false;
};

Json readSpotlight(const ToolContext& context) {
    const Json state = context.mac.state().read(kSpotlightSubject);
    return state.is_null() ? Json{{"volumes", Json::object()}} : state;
}

QString describe(const std::string& state) {
    if (state == "enabled") {
        return u"Indexing enabled. "_s;
    }
    if (state == "disabled") {
        return u"Indexing disabled."_s;
    }
    if (state == "searchDisabled") {
        return u"Indexing and searching disabled."_s;
    }
    if (state == "noIndex") {
        return u"No index."_s;
    }
    if (state == "readOnly") {
        return u"Index is read-only."_s;
    }
    if (state == "transitioning") {
        return u"Error: unexpected indexing state. kMDConfigSearchLevelTransitioning"_s;
    }
    return u"Error: unknown indexing state."_s;
}

bool lists(const Json& state, const char* key, const QString& volume) {
    const Json list = state.value(key, Json::array());
    return std::find(list.begin(), list.end(), Json(volume.toStdString())) != list.end();
}

/// The state that a volume shows now. One look at it brings an unfinished change a step further.
std::string lookAt(Json& state, const QString& volume) {
    const std::string key = volume.toStdString();
    Json& pending = state["pending"];
    std::string shown = state["volumes"].value(key, std::string("unknown"));
    if (pending.is_object() && pending.contains(key)) {
        const bool showsOld = state.value("lagShows", std::string("old")) == "old";
        shown = showsOld ? pending[key]["was"].get<std::string>() : "transitioning";
        const int left = pending[key]["looks"].get<int>() - 1;
        pending[key]["looks"] = left;
        if (left <= 0) {
            pending.erase(key);
        }
    }
    if (pending.empty()) {
        state.erase("pending");
    }
    return shown;
}

/// What shows in the meantime is what showed before, also where an earlier change wasn't through yet. An order that goes
/// back to that has nothing to wait for.
void changeTo(Json& state, const QString& volume, const std::string& wanted) {
    const std::string key = volume.toStdString();
    const Json unfinished = state.value("pending", Json::object()).value(key, Json::object());
    const std::string current = state["volumes"].value(key, std::string("unknown"));
    const std::string was = unfinished.value("was", current);
    const int lag = state.value("lag", 0);
    if (lag > 0 && was != wanted) {
        state["pending"][key] = {{"was", was}, {"looks", lag}};
    } else if (!unfinished.empty()) {
        state["pending"].erase(key);
    }
    state["volumes"][key] = wanted;
}

/// Both volumes of the system are read as one by the user, and are two here. What lies on no volume of its
/// own lies on the data volume and is printed with its place there.
Place placeOf(const Json& state, const QString& path) {
    if (state.at("volumes").contains(path.toStdString())) {
        return {path, path, true};
    }
    const QString mounted = path.section(u'/', 0, 2);
    if (path.startsWith(u"/Volumes/"_s) && state.at("volumes").contains(mounted.toStdString())) {
        return {path, mounted, false};
    }
    const QString data = kDataVolume.toString();
    if (path.startsWith(u"/System/"_s)) {
        return {path, u"/"_s, false};
    }
    return {data + path, state.at("volumes").contains(data.toStdString()) ? data : u"/"_s, false};
}

void printState(ToolContext& context, const Place& place, const std::string& state) {
    context.print(place.shown + u":\n\t"_s + describe(state) + u'\n');
}

int showState(ToolContext& context, const Place& place) {
    std::string shown;
    context.mac.state().update(kSpotlightSubject, [&](Json& state) { shown = lookAt(state, place.volume); });
    printState(context, place, shown);
    return shown == "transitioning" ? 1 : 0;
}

QString logPrefix() {
    const qint64 pid = ::getpid();
    return QDateTime::currentDateTime().toString(u"yyyy-MM-dd hh:mm:ss.zzz"_s) + u" mdutil["_s + QString::number(pid) +
           u':' + QString::number(pid * 16) + u"] "_s;
}

/// Root alone switches the volumes of the system; what a user reads who tries is not known. This is the text
/// of the other refused switches, with a status that tells of the failure.
int refuseUser(ToolContext& context, const Place& place) {
    context.print(place.shown + u":\nError: unable to perform operation.  (-1)\nError: invalid operation.\n"_s);
    return 1;
}

int refuseSwitch(ToolContext& context, const Place& place, const QString& errors, const std::string& state) {
    context.print(place.shown + u":\n"_s + errors + u"Error: invalid operation.\n\t"_s + describe(state) + u'\n');
    return 0;
}

/// The level that the log tells of when a volume is to get a state; it tells of none when it is enabled.
QString loggedLevel(const std::string& wanted) {
    if (wanted == "enabled") {
        return {};
    }
    return wanted == "disabled" ? u"kMDConfigSearchLevelFSSearchOnly"_s : u"kMDConfigSearchLevelOff"_s;
}

/// Carries an order out on a volume that takes it.
void obey(const ToolContext& context, const QString& volume, const std::string& wanted) {
    context.mac.state().update(kSpotlightSubject, [&](Json& state) {
        const QString data = kDataVolume.toString();
        changeTo(state, volume, wanted);
        if (volume == u"/"_s && state.value("rootSwitchesData", false) && !lists(state, "refusesSwitch", data)) {
            changeTo(state, data, wanted);
        }
    });
}

int switchTo(ToolContext& context, const Place& place, const std::string& wanted) {
    const Json before = readSpotlight(context);
    if (!place.isVolume) {
        return refuseSwitch(context, place, {}, "unknown");
    }
    if (!context.isRoot() && !place.volume.startsWith(u"/Volumes/"_s)) {
        return refuseUser(context, place);
    }
    if (const QString level = loggedLevel(wanted); !level.isEmpty()) {
        context.complain(logPrefix() + u"mdutil disabling Spotlight: "_s + place.volume + u" -> "_s + level + u'\n');
    }
    if (lists(before, "refusesSwitch", place.volume)) {
        return refuseSwitch(context, place, u"Error: unable to perform operation.  (-1)\n"_s,
                            before.at("volumes").value(place.volume.toStdString(), std::string("unknown")));
    }
    obey(context, place.volume, wanted);
    printState(context, place, wanted);
    return 0;
}

int handle(ToolContext& context, const Place& place, const ToolOptions& options) {
    int status = 0;
    if (options.has(u'i')) {
        status |= switchTo(context, place, options.value(u'i') == u"on"_s ? "enabled" : "disabled");
    }
    if (options.has(u'd')) {
        status |= switchTo(context, place, "searchDisabled");
    }
    if (options.has(u's')) {
        status |= showState(context, place);
    }
    return status;
}

int handleAll(ToolContext& context, const Json& state, const ToolOptions& options) {
    int status = 0;
    for (const auto& [volume, shown] : state.at("volumes").items()) {
        const QString path = QString::fromStdString(volume);
        status |= handle(context, {path, path, true}, options);
    }
    return status;
}

int handlePaths(ToolContext& context, const Json& state, const ToolOptions& options) {
    int status = 0;
    for (const QString& typed : options.operands) {
        const QString path = context.absolutePath(typed);
        const bool isMounted =
            state.at("volumes").contains(path.toStdString()); // though its folder may not be described
        if (!isMounted && !context.volume.exists(path)) {
            context.print(u"Error: invalid path `"_s + typed + u"'.\n"_s);
            continue;
        }
        status |= handle(context, placeOf(state, isMounted ? path : context.volume.canonicalPath(path)), options);
    }
    return status;
}

} // namespace

int runMdutil(ToolContext& context) {
    const ToolOptions options = parseOptions(context.arguments, kMdutilRules.letters);
    if (const std::optional<int> refused = refuseOptions(context, options, kMdutilRules)) {
        return *refused;
    }
    const QString wanted = options.value(u'i');
    const bool asksForNothing = !options.has(u'i') && !options.has(u'd') && !options.has(u's');
    const bool isReadable = !options.has(u'i') || wanted == u"on"_s || wanted == u"off"_s;
    if (asksForNothing || !isReadable || options.operands.isEmpty() != options.has(u'a')) {
        return refuseWithUsage(context, kMdutilRules);
    }
    const Json state = readSpotlight(context);
    if (state.value("serverDisabled", false)) {
        context.print(u"Spotlight server is disabled.\n"_s);
        return 0;
    }
    return options.has(u'a') ? handleAll(context, state, options) : handlePaths(context, state, options);
}

} // namespace macsim
