#include "simulator/tools/Finder.h"

namespace macsim {

using namespace Qt::StringLiterals;
using applescript::ObjectReference;
using applescript::ScriptObject;
using applescript::Value;

namespace {

constexpr int kHandlerFailed = -10000;

ScriptObject trashObject() {
    return {u"trash"_s, {}, u"trash"_s};
}

QStringList namesIn(const Volume& volume, const QString& folder) {
    return volume.kind(folder) == Volume::Kind::Folder ? volume.list(folder) : QStringList();
}

bool removeContents(const Volume& volume, const QString& folder);

/// Links are removed themselves: kind() doesn't follow them. @return false when something stays
bool removeWhole(const Volume& volume, const QString& path) {
    if (!removeContents(volume, path)) {
        return false;
    }
    try {
        volume.remove(path);
        return true;
    } catch (const FileError&) {
        return false;
    }
}

/// One that can't be removed doesn't keep the others.
bool removeContents(const Volume& volume, const QString& folder) {
    bool isEmpty = true;
    const QStringList names = namesIn(volume, folder);
    for (const QString& name : names) {
        isEmpty = removeWhole(volume, folder + u'/' + name) && isEmpty;
    }
    return isEmpty;
}

} // namespace

Finder::Finder(ToolContext& context, const std::chrono::seconds& eventLimit)
    : m_context(context)
    , m_automation(context, Finder::name(), eventLimit) {}

const ScriptDictionary& Finder::dictionary() {
    static const ScriptDictionary dictionary{{}, {u"trash"_s}, {u"empty"_s}};
    return dictionary;
}

std::optional<Value> Finder::property(const ScriptObject& object, const QString& property) {
    m_automation.require();
    return property == u"name"_s && object != trashObject() ? std::optional(Value(object.name)) : std::nullopt;
}

Value Finder::ownProperty(const QString& property) {
    if (property != u"trash"_s) {
        return ScriptApplication::ownProperty(property);
    }
    return Value(ObjectReference{this, std::make_shared<const ScriptObject>(trashObject())});
}

std::optional<QList<ScriptObject>> Finder::itemsIn(const ScriptObject& container) {
    m_automation.require();
    if (container != trashObject()) {
        return std::nullopt;
    }
    QList<ScriptObject> items;
    const QStringList names = namesIn(m_context.mac.volume(Actor::User), trashFolder());
    for (const QString& name : names) {
        if (!name.startsWith(u'.')) {
            items.append({u"item"_s, name, name});
        }
    }
    return items;
}

bool Finder::perform(const QString& /*command*/, const ScriptObject* object) {
    m_automation.require();
    if (object != nullptr && *object != trashObject()) {
        return false;
    }
    emptyTrash();
    return true;
}

QString Finder::trashFolder() const {
    return m_context.mac.homeFolder(Actor::User) + u"/.Trash"_s;
}

void Finder::emptyTrash() {
    if (removeContents(m_context.mac.volume(Actor::User), trashFolder())) {
        return;
    }
    requireAdministrator(m_context, u"Finder wants to make changes."_s);
    if (!removeContents(m_context.mac.volume(Actor::Root), trashFolder())) {
        throw ScriptError{kHandlerFailed, u"Finder got an error: AppleEvent handler failed."_s};
    }
}

} // namespace macsim
