#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <string>

namespace quorvane {

template <typename Event>
void appendOrders(const QList<Event>& begun, const QList<Event>& left, QList<QList<Event>>& orders) {
    orders.append(begun);
    for (const Event& next : left) {
        QList<Event> others = left;
        others.removeOne(next);
        appendOrders(begun + QList<Event>(1, next), others, orders);
    }
}

/// Each choice of the events in each order, none among them.
template <typename Event>
QList<QList<Event>> ordersOf(const QList<Event>& events) {
    QList<QList<Event>> orders;
    appendOrders({}, events, orders);
    return orders;
}

/// For the message of a test that fails.
template <typename Stage, typename Event>
std::string traceOf(Stage stage, const QList<Event>& order) {
    QStringList numbers;
    for (const Event event : order) {
        numbers.append(QString::number(static_cast<int>(event)));
    }
    return QStringLiteral("stage %1, events %2")
        .arg(static_cast<int>(stage))
        .arg(numbers.join(QStringLiteral(", ")))
        .toStdString();
}

} // namespace quorvane
