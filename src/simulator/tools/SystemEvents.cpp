#include "simulator/tools/SystemEvents.h"

#include "simulator/applescript/Coercions.h"
#include "simulator/applescript/Errors.h"

#include <iterator>

namespace macsim {

using namespace Qt::StringLiterals;
using applescript::ClassName;
using applescript::Record;
using applescript::ScriptObject;
using applescript::Value;

namespace {

QString className() {
    return u"login item"_s;
}

ScriptObject objectFrom(const LoginItem& item) {
    return {className(), item.name, item.identity()};
}

Value pathOf(const LoginItem& item) {
    return item.path ? Value(*item.path) : Value();
}

// Of the other kinds only that of an application is known.
Value kindOf(const LoginItem& item) {
    const bool isApplication = item.path && (item.path->endsWith(u".app"_s) || item.path->endsWith(u".app/"_s));
    return Value(isApplication ? u"Application"_s : u"UNKNOWN"_s);
}

struct Property {
    const char16_t* name;
    Value (*value)(const LoginItem& item);
};

/// In the order in which System Events lists them.
constexpr Property kProperties[] = {
    {u"path", pathOf},
    {u"hidden", [](const LoginItem& item) { return Value(item.hidden); }},
    {u"kind", kindOf},
    {u"name", [](const LoginItem& item) { return Value(item.name); }},
};

Value allOf(const LoginItem& item) {
    Record record;
    record.insert(u"class"_s, Value(ClassName{className()}));
    for (const Property& each : kProperties) {
        record.insert(QString::fromUtf16(each.name), each.value(item));
    }
    return Value(record);
}

} // namespace

SystemEvents::SystemEvents(ToolContext& context, const std::chrono::seconds& eventLimit)
    : m_items(context.mac)
    , m_automation(context, SystemEvents::name(), eventLimit) {}

const ScriptDictionary& SystemEvents::dictionary() {
    static const ScriptDictionary dictionary = [] {
        ScriptClass items{className(), u"login items"_s, {}};
        for (const Property& each : kProperties) {
            items.properties.append(QString::fromUtf16(each.name));
        }
        return ScriptDictionary{{items}};
    }();
    return dictionary;
}

QList<ScriptObject> SystemEvents::objects(const QString& /*className*/) {
    m_automation.require();
    QList<ScriptObject> objects;
    std::ranges::transform(m_items.all(), std::back_inserter(objects), objectFrom);
    return objects;
}

std::optional<ScriptObject> SystemEvents::objectAt(const QString& /*className*/, qsizetype position) {
    m_automation.require();
    const QList<LoginItem>& items = m_items.all();
    return position >= 0 && position < items.size() ? std::optional(objectFrom(items.at(position))) : std::nullopt;
}

ScriptObject SystemEvents::asKept(const ScriptObject& object) {
    return {object.className, object.name, LoginItem{object.name, {}}.nameIdentity()};
}

std::optional<Value> SystemEvents::property(const ScriptObject& object, const QString& property) {
    m_automation.require();
    const LoginItem* item = m_items.find(object.identity);
    const bool isReadable = item != nullptr && m_items.canRead(*item, property);
    if (const int error = m_items.readingError(); !isReadable && error != 0) {
        throw ScriptError{error, u"System Events got an error."_s};
    }
    if (!isReadable) {
        return std::nullopt;
    }
    if (property == u"properties"_s) {
        return allOf(*item);
    }
    const auto isIt = [&](const Property& each) { return property == QStringView(each.name); };
    const auto found = std::ranges::find_if(kProperties, isIt);
    return found == std::end(kProperties) ? std::nullopt : std::optional(found->value(*item));
}

bool SystemEvents::setProperty(const ScriptObject& object, const QString& property, const Value& value) {
    m_automation.require();
    return property == u"hidden"_s && m_items.setHidden(object.identity, applescript::toBoolean(value));
}

// A name that is given doesn't count. What System Events makes of no path is not established; here it makes nothing.
ScriptObject SystemEvents::make(const QString& className, const Record& properties) {
    m_automation.require();
    const Value* path = properties.find(u"path"_s);
    const QString pathText = path ? applescript::toText(*path) : QString();
    if (pathText.isEmpty()) {
        throw applescript::cannotMakeObject(*this, className);
    }
    const Value* hidden = properties.find(u"hidden"_s);
    return objectFrom(m_items.add(pathText, hidden && applescript::toBoolean(*hidden)));
}

bool SystemEvents::remove(const ScriptObject& object) {
    m_automation.require();
    return m_items.remove(object.identity);
}

} // namespace macsim
