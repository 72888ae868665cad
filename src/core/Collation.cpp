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
    return made;
}

const QCollator& collator() {
    static const QCollator shared = makeCollator();
    return shared;
}

} // namespace

bool localizedCaseInsensitiveEqual(const QString& left, const QString& right) {
    return left == right || collator().compare(left, right) == 0;
}

QList<qsizetype> localizedOrder(const QList<QString>& names) {
    std::vector<QCollatorSortKey> keys;
    keys.reserve(static_cast<std::size_t>(names.size()));
    for (const QString& name : names) {
        keys.push_back(collator().sortKey(name));
    }

    QList<qsizetype> order(names.size());
    std::iota(order.begin(), order.end(), qsizetype{0});
    std::stable_sort(order.begin(), order.end(), [&keys](qsizetype left, qsizetype right) {
        return keys[static_cast<std::size_t>(left)] < keys[static_cast<std::size_t>(right)];
    });
    return order;
}

} // namespace quorvane
