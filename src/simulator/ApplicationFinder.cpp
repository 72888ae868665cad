#include "simulator/ApplicationFinder.h"

#include "simulator/MacPaths.h"
#include "simulator/PropertyList.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr QStringView kApplicationSuffix = u".app";

QString text(const PropertyList::Dictionary& dictionary, const QString& key) {
    const auto entry = dictionary.find(key);
    const auto* value = entry == dictionary.end() ? nullptr : entry->second.as<QString>();
    return value ? *value : QString();
}

PropertyList::Dictionary readInfo(const Volume& volume, const QString& bundlePath) {
    try {
        const auto list = parsePropertyList(volume.read(bundlePath + u"/Contents/Info.plist"_s));
        const auto* dictionary = list ? list->as<PropertyList::Dictionary>() : nullptr;
        return dictionary ? *dictionary : PropertyList::Dictionary{};
    } catch (const FileError&) {
        return {};
    }
}

} // namespace

QStringList applicationFolders(const Mac& mac) {
    return {u"/Applications"_s,
            u"/Applications/Utilities"_s,
            mac.homeFolder(Actor::User) + u"/Applications"_s,
            u"/System/Applications"_s,
            u"/System/Applications/Utilities"_s,
            u"/System/Library/CoreServices"_s,
            u"/System/Library/CoreServices/Applications"_s};
}

std::optional<Application> readApplication(const Volume& volume, const QString& bundlePath) {
    if (!bundlePath.endsWith(kApplicationSuffix) || !volume.isFolder(bundlePath)) {
        return std::nullopt;
    }
    const QString path = volume.canonicalPath(bundlePath);
    const PropertyList::Dictionary info = readInfo(volume, path);
    const QString executable = text(info, u"CFBundleExecutable"_s);
    const QString name = lastPathComponent(path).chopped(kApplicationSuffix.size());
    return Application{path, text(info, u"CFBundleIdentifier"_s), executable.isEmpty() ? name : executable};
}

std::optional<Application> findApplication(const Mac& mac, const Volume& volume, const QString& name) {
    const QString bundle = name.endsWith(kApplicationSuffix) ? name : name + kApplicationSuffix.toString();
    const QStringList places = applicationFolders(mac);
    for (const QString& folder : places) {
        if (auto found = readApplication(volume, folder + u'/' + bundle)) {
            return found;
        }
    }
    return std::nullopt;
}

std::vector<Application> installedApplications(const Mac& mac, const Volume& volume) {
    std::vector<Application> applications;
    const QStringList places = applicationFolders(mac);
    for (const QString& folder : places) {
        const QStringList names = volume.isFolder(folder) ? volume.list(folder) : QStringList();
        for (const QString& name : names) {
            if (auto found = readApplication(volume, folder + u'/' + name)) {
                applications.push_back(*std::move(found));
            }
        }
    }
    return applications;
}

std::optional<Application> findApplicationByIdentifier(const Mac& mac, const Volume& volume,
                                                       const QString& bundleIdentifier) {
    const QStringList places = applicationFolders(mac);
    for (const QString& folder : places) {
        const QStringList names = volume.isFolder(folder) ? volume.list(folder) : QStringList();
        for (const QString& name : names) {
            auto found = readApplication(volume, folder + u'/' + name);
            if (found && found->bundleIdentifier.compare(bundleIdentifier, Qt::CaseInsensitive) == 0) {
                return found;
            }
        }
    }
    return std::nullopt;
}

} // namespace macsim
