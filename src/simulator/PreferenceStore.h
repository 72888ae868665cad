#pragma once

#include "simulator/PropertyList.h"
#include "simulator/Volume.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace macsim {

class Mac;

/// Which file of a domain is meant. The two are separate stores: neither shows what the other holds.
enum class PreferenceHost {
    Any,
    Current, ///< the values of this machine alone, in ByHost
};

/// Names a set of preferences: "com.apple.dock", kGlobalDomain, or the absolute path of a property list, with
/// or without its ".plist".
struct PreferenceDomain {
    QString name;
    PreferenceHost host = PreferenceHost::Any;

    bool isPath() const { return name.startsWith(u'/'); }
    bool operator==(const PreferenceDomain&) const = default;
};

inline constexpr QStringView kGlobalDomain = u"NSGlobalDomain";

/// The preferences of one actor on a simulated Mac, as the system's preference service keeps them: one binary
/// property list per domain and host, in the actor's own home. Root's are in root's home, never in the
/// user's.
///
/// Processes may write at the same time: each change reads, changes and writes the file as one step.
class PreferenceStore {
public:
    using Dictionary = PropertyList::Dictionary;
    /// How a change ended. What is refused leaves the file as it was: the file or its folder isn't the
    /// actor's to write, the disk is full, or the file isn't a property list (its content is not thrown
    /// away).
    enum class Outcome { Done, Missing, Refused };

    /// @param mac  must outlive the store
    PreferenceStore(const Mac& mac, Volume volume);

    /// Where a domain is kept.
    QString filePath(const PreferenceDomain& domain) const;
    /// The names of the actor's domains for a host, sorted; the global one is kGlobalDomain.
    QStringList domains(PreferenceHost host) const;

    /// Nothing where there is no such domain. One that is empty, damaged or unreadable counts as missing.
    std::optional<Dictionary> readDomain(const PreferenceDomain& domain) const;
    std::optional<PropertyList> read(const PreferenceDomain& domain, const QString& key) const;

    Outcome write(const PreferenceDomain& domain, const QString& key, const PropertyList& value) const;
    /// Replaces the whole domain.
    Outcome writeDomain(const PreferenceDomain& domain, const Dictionary& values) const;
    /// Missing when there was nothing to remove.
    Outcome remove(const PreferenceDomain& domain, const QString& key) const;
    Outcome removeDomain(const PreferenceDomain& domain) const;
    /// Hands the domain's values to `change` (none of them, where it is missing) and writes what it leaves,
    /// if it says Done; any other outcome of `change` is given back and nothing is written.
    Outcome update(const PreferenceDomain& domain, const std::function<Outcome(Dictionary&)>& change) const;

private:
    Outcome writeFile(const QString& path, const Dictionary& values) const;

    const Mac& m_mac;
    Volume m_volume;
};

} // namespace macsim
