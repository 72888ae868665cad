#include "core/Collation.h"

#include <QCollator>

#include <algorithm>
#include <numeric>
#include <vector>

namespace quorvane {

namespace {

QCollator makeCollator() {
    // For the C locale, which a session without a language has, a collator compares bytes and ignores no
    // case.
    const QLocale locale = QLocale().collation();
    QCollator made(locale.language() == QLocale::C ? QLocale(QLocale::English) : locale);
    made.setCaseSensitivity(Qt::CaseInsensitive);
    made.compare(QString(),
                 QString()); // what it is set to counts from here on: the next comparisons may be on two threads
    return made;
}

const QCollator& collator() {
    static const QCollator shared = makeCollator();
    return shared;
}

using Places = QList<qsizetype>::iterator;

/// Each of these names is collated once.
void sortByKeys(Places begin, Places end, const QList<QString>& names) {
    const qsizetype first = begin == end ? 0 : *begin;
    std::vector<QCollatorSortKey> keys;
    keys.reserve(static_cast<std::size_t>(end - begin));
    for (Places place = begin; place != end; ++place) {
        keys.push_back(collator().sortKey(names.at(*place)));
    }
    std::stable_sort(begin, end, [&keys, first](qsizetype left, qsizetype right) {
        return keys[static_cast<std::size_t>(left - first)] < keys[static_cast<std::size_t>(right - first)];
    });
}

} // namespace

bool localizedCaseInsensitiveEqual(const QString& left, const QString& right) {
    return left == right || collator().compare(left, right) == 0;
}

/// Mostly the names come in order, with a few new ones behind: telling that by comparing costs less than their keys.
QList<qsizetype> localizedOrder(const QList<QString>& names) {
    QList<qsizetype> order(names.size());
    std::iota(order.begin(), order.end(), qsizetype{0});
    const auto comesBefore = [&names](qsizetype left, qsizetype right) {
        return collator().compare(names.at(left), names.at(right)) < 0;
    };
    const auto unsorted = std::is_sorted_until(order.begin(), order.end(), comesBefore);
    sortByKeys(unsorted, order.end(), names);
    std::inplace_merge(order.begin(), unsorted, order.end(), comesBefore);
    return order;
}

} // namespace quorvane
