#include "simulator/applescript/Value.h"

#include "simulator/applescript/Errors.h"

#include <algorithm>

namespace macsim::applescript {

namespace {

constexpr int kDeepestValue = 500;

} // namespace

void List::append(const Value& value) {
    m_depth = std::max(m_depth, value.depth() + 1);
    if (m_depth > kDeepestValue) {
        throw stackOverflow();
    }
    m_values.append(value);
}

void List::append(const List& other) {
    m_depth = std::max(m_depth, other.m_depth);
    m_values.append(other.m_values);
}

qsizetype List::size() const {
    return m_values.size();
}

const Value& List::at(qsizetype index) const {
    return m_values.at(index);
}

void Record::insert(const QString& name, const Value& value) {
    const QString key = name.toCaseFolded();
    if (!m_indexes.contains(key)) {
        m_indexes.insert(key, m_names.size());
        m_names.append(name);
        m_values.append(value);
    }
}

void Record::insert(const Record& other) {
    for (qsizetype i = 0; i < other.m_names.size(); ++i) {
        insert(other.m_names.at(i), other.m_values.at(i));
    }
}

const Value* Record::find(const QString& name) const {
    const auto found = m_indexes.constFind(name.toCaseFolded());
    return found == m_indexes.constEnd() ? nullptr : &m_values.at(*found);
}

int Value::depth() const {
    if (const auto* list = get<List>()) {
        return list->depth();
    }
    if (const auto* record = get<Record>()) {
        return record->values().depth();
    }
    if (const auto* reference = get<ItemReference>()) {
        return reference->list.depth() + 1;
    }
    return 0;
}

} // namespace macsim::applescript
