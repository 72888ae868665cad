#include "platform/simulated/SimulatedBackgroundTaskPermissions.h"

#include "simulator/MacPaths.h"

#include <QSet>
#include <QUrl>

#include <algorithm>
#include <string>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using macsim::Json;

constexpr const char* kTasksSubject = "backgroundTasks";
constexpr QStringView kLibrary = u"/System/Library/Frameworks/ServiceManagement.framework/ServiceManagement";

QString text(const Json& record, const char* key) {
    const auto value = record.find(key);
    return value != record.end() && value->is_string() ? QString::fromStdString(value->get<std::string>()) : QString();
}

Json listIn(const Json& state, const char* key) {
    const auto list = state.is_object() ? state.find(key) : state.end();
    return state.is_object() && list != state.end() && list->is_array() ? *list : Json::array();
}

/// "4.com.splice.helper" without the number of its kind.
QString bareIdentifier(const QString& identifier) {
    const qsizetype dot = identifier.indexOf(u'.');
    const QStringView number = QStringView(identifier).left(std::max<qsizetype>(dot, 0));
    const bool isNumber =
        !number.isEmpty() && std::all_of(number.begin(), number.end(), [](QChar letter) { return letter.isDigit(); });
    return isNumber ? identifier.mid(dot + 1) : identifier;
}

/// The identifiers, without their numbers, of the records that stand for the application itself.
QSet<QString> identifiersOfApplication(const Json& records, const QString& path) {
    QSet<QString> identifiers;
    for (const Json& record : records) {
        const QString location = QUrl(text(record, "url")).toLocalFile();
        if (!location.isEmpty() && macsim::withoutFinalSlashes(location) == path) {
            identifiers.insert(bareIdentifier(text(record, "identifier")));
        }
    }
    return identifiers;
}

bool hasLabel(const Json& record, const QString& label) {
    const QString identifier = text(record, "identifier");
    return text(record, "bundleIdentifier") == label || identifier == label || bareIdentifier(identifier) == label;
}

bool setAllowed(Json& state, const QString& application, const QString& label, bool isAllowed) {
    Json records = listIn(state, "records");
    const QSet<QString> parents = identifiersOfApplication(records, macsim::withoutFinalSlashes(application));
    bool isTaken = false;
    for (Json& record : records) {
        if (hasLabel(record, label) && parents.contains(bareIdentifier(text(record, "parent")))) {
            record["allowed"] = isAllowed;
            isTaken = true;
        }
    }
    if (isTaken) {
        state["records"] = records;
    }
    return isTaken;
}

} // namespace

bool SimulatedBackgroundTaskPermissions::openLibrary(const QString& path) {
    m_isOpen = m_isOpen || path == kLibrary;
    return path == kLibrary;
}

BackgroundTaskPermissions::SetUserAllowed SimulatedBackgroundTaskPermissions::entryPoint(const QString& symbol) {
    const Json symbols = listIn(m_mac.state().read(kTasksSubject), "entryPoints");
    if (!m_isOpen || std::find(symbols.begin(), symbols.end(), symbol.toStdString()) == symbols.end()) {
        return {};
    }
    return [&mac = m_mac](const QString& application, const QString& label, bool isAllowed) {
        bool isTaken = false;
        mac.state().update(kTasksSubject,
                           [&](Json& state) { isTaken = setAllowed(state, application, label, isAllowed); });
        return isTaken;
    };
}

} // namespace quorvane
