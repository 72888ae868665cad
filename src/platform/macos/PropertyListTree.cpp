#include "platform/macos/PropertyListTree.h"

#include <QDateTime>
#include <QTimeZone>

#include <cmath>
#include <utility>
#include <vector>

namespace quorvane {

namespace {

constexpr std::size_t kDeepestLevel = 512;
constexpr qint64 kHeaviestList = qint64{128} * 1024 * 1024;

/// An array or a dictionary that isn't whole yet.
struct OpenPart {
    PropertyListPart part;
    QVariantList done; ///< what its first parts have become

    bool isWhole() const { return done.size() == part.parts.size(); }
    const void* next() const { return part.parts[done.size()]; }
    void leaveOut() {
        part.parts.removeAt(done.size());
        if (part.kind == PropertyListPart::Kind::Dictionary) {
            part.keys.removeAt(done.size());
        }
    }
};

QVariant wholeOf(const OpenPart& open) {
    if (open.part.kind == PropertyListPart::Kind::Array) {
        return open.done;
    }
    QVariantMap map;
    for (qsizetype at = 0; at < open.done.size(); ++at) {
        map.insert(open.part.keys[at], open.done[at]);
    }
    return map;
}

/// In bytes, about.
qint64 weightOf(const PropertyListPart& part) {
    constexpr qint64 kOfEach = 64;
    qint64 weight = kOfEach;
    if (part.value.typeId() == QMetaType::QString) {
        weight += part.value.toString().size() * static_cast<qint64>(sizeof(QChar));
    } else if (part.value.typeId() == QMetaType::QByteArray) {
        weight += part.value.toByteArray().size();
    }
    for (const QString& key : part.keys) {
        weight += kOfEach + key.size() * static_cast<qint64>(sizeof(QChar));
    }
    return weight;
}

} // namespace

std::optional<QVariantMap> propertyListDictionary(const void* root,
                                                  const std::function<PropertyListPart(const void*)>& look,
                                                  ForeignValues foreign) {
    std::vector<OpenPart> open; // no recursion: other threads than the first have small stacks
    open.push_back({look(root), {}});
    if (open.back().part.kind != PropertyListPart::Kind::Dictionary) {
        return std::nullopt;
    }
    qint64 weight = weightOf(open.back().part);
    for (;;) {
        OpenPart& current = open.back();
        if (current.isWhole()) {
            const QVariant whole = wholeOf(current);
            open.pop_back();
            if (open.empty()) {
                return whole.toMap();
            }
            open.back().done.append(whole);
            continue;
        }
        PropertyListPart part = look(current.next());
        weight += weightOf(part);
        const bool isRefused = part.kind == PropertyListPart::Kind::Foreign && foreign == ForeignValues::Refused;
        if (isRefused || weight > kHeaviestList) {
            return std::nullopt;
        }
        if (part.kind == PropertyListPart::Kind::Foreign) {
            current.leaveOut();
        } else if (part.kind == PropertyListPart::Kind::Value) {
            current.done.append(std::move(part.value));
        } else if (open.size() < kDeepestLevel) {
            open.push_back({std::move(part), {}});
        } else {
            return std::nullopt;
        }
    }
}

std::optional<QDateTime> propertyListDate(double secondsSince2001) {
    constexpr double kMostSeconds = 1e12; // some thirty thousand years
    if (!(std::abs(secondsSince2001) < kMostSeconds)) {
        return std::nullopt;
    }
    const QDateTime start(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC);
    return start.addMSecs(std::llround(secondsSince2001 * 1000));
}

} // namespace quorvane
