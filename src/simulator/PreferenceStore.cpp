#include "simulator/PreferenceStore.h"

#include "simulator/Mac.h"
#include "simulator/MacPaths.h"

#include <cerrno>
#include <stdexcept>
#include <utility>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

using Dictionary = PropertyList::Dictionary;

const QString kSuffix = u".plist"_s;
const QString kGlobalFile = u".GlobalPreferences"_s;

QString withoutSuffix(QString name) {
    if (name.endsWith(kSuffix)) {
        name.chop(kSuffix.size());
    }
    return name;
}

/// The dictionary in a file: an empty one where there is no file, nothing where it can't be read as a
/// dictionary.
std::optional<Dictionary> dictionaryIn(const Volume& volume, const QString& path) {
    try {
        const std::optional<PropertyList> list = parsePropertyList(volume.read(path));
        const auto* dictionary = list ? list->as<Dictionary>() : nullptr;
        return dictionary ? std::optional(*dictionary) : std::nullopt;
    } catch (const FileError& error) {
        return error.errorNumber() == ENOENT ? std::optional(Dictionary()) : std::nullopt;
    }
}

} // namespace

PreferenceStore::PreferenceStore(const Mac& mac, Volume volume)
    : m_mac(mac)
    , m_volume(std::move(volume)) {}

QString PreferenceStore::filePath(const PreferenceDomain& domain) const {
    const bool isThisHost = domain.host == PreferenceHost::Current;
    const QString ending = (isThisHost ? u'.' + m_mac.machine().hardwareUuid : QString()) + kSuffix;
    if (domain.isPath()) {
        return withoutSuffix(domain.name) + ending;
    }
    const QString folder = m_mac.homeFolder(m_volume.actor()) + u"/Library/Preferences/"_s;
    const QString name = domain.name == kGlobalDomain ? kGlobalFile : withoutSuffix(domain.name);
    return folder + (isThisHost ? u"ByHost/"_s : QString()) + name + ending;
}

QStringList PreferenceStore::domains(PreferenceHost host) const {
    const QString pattern = filePath({u"*"_s, host});
    const qsizetype star = pattern.lastIndexOf(u'*');
    const QString ending = pattern.mid(star + 1);
    QStringList names;
    try {
        const QStringList files = m_volume.list(pattern.left(star));
        for (const QString& file : files) {
            if (file.endsWith(ending)) {
                const QString name = file.chopped(ending.size());
                names.append(name == kGlobalFile ? kGlobalDomain.toString() : name);
            }
        }
    } catch (const FileError&) {
        return {}; // no folder, or not this actor's to look into
    }
    names.sort();
    return names;
}

std::optional<Dictionary> PreferenceStore::readDomain(const PreferenceDomain& domain) const {
    std::optional<Dictionary> values = dictionaryIn(m_volume, filePath(domain));
    return values && !values->empty() ? std::move(values) : std::nullopt;
}

std::optional<PropertyList> PreferenceStore::read(const PreferenceDomain& domain, const QString& key) const {
    const std::optional<Dictionary> values = readDomain(domain);
    const auto entry = values ? values->find(key) : Dictionary::const_iterator();
    return values && entry != values->end() ? std::optional(entry->second) : std::nullopt;
}

PreferenceStore::Outcome PreferenceStore::write(const PreferenceDomain& domain, const QString& key,
                                                const PropertyList& value) const {
    return update(domain, [&](Dictionary& values) {
        values.insert_or_assign(key, value);
        return Outcome::Done;
    });
}

PreferenceStore::Outcome PreferenceStore::writeDomain(const PreferenceDomain& domain, const Dictionary& values) const {
    return update(domain, [&](Dictionary& current) {
        current = values;
        return Outcome::Done;
    });
}

PreferenceStore::Outcome PreferenceStore::remove(const PreferenceDomain& domain, const QString& key) const {
    return update(domain, [&](Dictionary& values) { return values.erase(key) > 0 ? Outcome::Done : Outcome::Missing; });
}

PreferenceStore::Outcome PreferenceStore::removeDomain(const PreferenceDomain& domain) const {
    return update(domain, [](Dictionary& values) {
        const bool isMissing = values.empty();
        values.clear();
        return isMissing ? Outcome::Missing : Outcome::Done;
    });
}

PreferenceStore::Outcome PreferenceStore::update(const PreferenceDomain& domain,
                                                 const std::function<Outcome(Dictionary&)>& change) const {
    const QString path = filePath(domain);
    Outcome outcome = Outcome::Refused;
    // The subject has no state of its own: its lock stands for the preference service, which serves one by
    // one.
    m_mac.state().update("preferences", [&](Json&) {
        std::optional<Dictionary> values = dictionaryIn(m_volume, path);
        outcome = values ? change(*values) : Outcome::Refused;
        if (outcome == Outcome::Done) {
            outcome = writeFile(path, *values);
        }
    });
    return outcome;
}

PreferenceStore::Outcome PreferenceStore::writeFile(const QString& path, const Dictionary& values) const {
    try {
        m_volume.createFolders(parentFolder(path));
        m_volume.writeAtomically(path, binaryPropertyList(values));
        return Outcome::Done;
    } catch (const FileError&) {
        return Outcome::Refused;
    } catch (const std::invalid_argument&) {
        return Outcome::Refused; // nested too deeply, or a text that no property list holds
    }
}

} // namespace macsim
