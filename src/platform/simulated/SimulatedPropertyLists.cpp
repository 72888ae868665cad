#include "platform/simulated/SimulatedPropertyLists.h"

#include "simulator/PropertyList.h"

#include <QVariantList>

#include <variant>

namespace quorvane {

namespace {

using macsim::PropertyList;

constexpr qint64 kLargestFile = qint64{64} * 1024 * 1024;

QVariantMap mapOf(const PropertyList::Dictionary& dictionary);

/// The value of each type as the program sees it. The reader refuses what is nested too deeply for this.
struct VariantMaker {
    QVariant operator()(const PropertyList::Dictionary& dictionary) const { return mapOf(dictionary); }
    QVariant operator()(const PropertyList::Array& array) const {
        QVariantList list;
        for (const PropertyList& item : array) {
            list.append(std::visit(*this, item.value()));
        }
        return list;
    }
    template <typename Scalar>
    QVariant operator()(const Scalar& value) const {
        return QVariant::fromValue(value);
    }
};

QVariantMap mapOf(const PropertyList::Dictionary& dictionary) {
    QVariantMap map;
    for (const auto& [key, item] : dictionary) {
        map.insert(map.cend(), key, std::visit(VariantMaker{}, item.value()));
    }
    return map;
}

std::optional<PropertyList> read(const macsim::Volume& volume, const QString& path) {
    try {
        return volume.size(path) > kLargestFile ? std::nullopt : macsim::parsePropertyList(volume.read(path));
    } catch (const macsim::FileError&) {
        return std::nullopt;
    }
}

} // namespace

std::optional<QVariantMap> SimulatedPropertyLists::dictionary(const QString& path) const {
    const std::optional<PropertyList> list = read(m_mac.volume(macsim::Actor::User), path);
    const auto* dictionary = list ? list->as<PropertyList::Dictionary>() : nullptr;
    return dictionary ? std::optional(mapOf(*dictionary)) : std::nullopt;
}

} // namespace quorvane
