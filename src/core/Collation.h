#pragma once

#include <QList>
#include <QString>

#include <functional>

// Names as a user compares them: by the rules of their language, without regard to case.
namespace quorvane {

/// True when two texts differ at most in case.
bool localizedCaseInsensitiveEqual(const QString& left, const QString& right);

/// The places of the names in ascending order; equal names keep their order.
QList<qsizetype> localizedOrder(const QList<QString>& names);

/// Sorts records by a text of theirs; equal ones keep their order. @param name  a member, or a function of
/// the record
template <typename T, typename Name>
void sortLocalized(QList<T>& records, Name name) {
    QList<QString> names;
    names.reserve(records.size());
    for (const T& record : std::as_const(records)) {
        names.append(std::invoke(name, record));
    }

    QList<T> sorted;
    sorted.reserve(records.size());
    for (const qsizetype place : localizedOrder(names)) {
        sorted.append(records.at(place));
    }
    records = std::move(sorted);
}

} // namespace quorvane
