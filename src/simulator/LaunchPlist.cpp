#include "simulator/LaunchPlist.h"

#include "simulator/PropertyList.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

using Dictionary = PropertyList::Dictionary;

template <typename T>
T valueOf(const Dictionary& dictionary, const QString& key) {
    const auto entry = dictionary.find(key);
    const T* value = entry == dictionary.end() ? nullptr : entry->second.as<T>();
    return value ? *value : T{};
}

/// A job with conditions starts again after it was killed, unless it wants to do so only after a success.
bool isKeptAlive(const Dictionary& dictionary) {
    const auto entry = dictionary.find(u"KeepAlive"_s);
    if (entry == dictionary.end()) {
        return false;
    }
    if (const auto* conditions = entry->second.as<Dictionary>()) {
        return !valueOf<bool>(*conditions, u"SuccessfulExit"_s);
    }
    return valueOf<bool>(dictionary, u"KeepAlive"_s);
}

/// Program wins over ProgramArguments; a job may have neither.
QString programOf(const Dictionary& dictionary) {
    QString program = valueOf<QString>(dictionary, u"Program"_s);
    const auto arguments = valueOf<PropertyList::Array>(dictionary, u"ProgramArguments"_s);
    if (!program.isEmpty() || arguments.empty()) {
        return program;
    }
    const auto* first = arguments.front().as<QString>();
    return first ? *first : QString();
}

} // namespace

std::optional<LaunchPlist> readLaunchPlist(const Volume& volume, const QString& path) {
    std::optional<PropertyList> list;
    try {
        list = parsePropertyList(volume.read(path));
    } catch (const FileError&) {
        return std::nullopt;
    }
    const auto* dictionary = list ? list->as<Dictionary>() : nullptr;
    const QString label = dictionary ? valueOf<QString>(*dictionary, u"Label"_s) : QString();
    if (label.isEmpty()) {
        return std::nullopt;
    }
    const bool keepAlive = isKeptAlive(*dictionary);
    return LaunchPlist{label,
                       volume.canonicalPath(path),
                       programOf(*dictionary),
                       keepAlive || valueOf<bool>(*dictionary, u"RunAtLoad"_s),
                       keepAlive,
                       valueOf<bool>(*dictionary, u"Disabled"_s)};
}

} // namespace macsim
