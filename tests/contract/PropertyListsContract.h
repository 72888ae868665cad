#pragma once

#include "contract/Subject.h"
#include "platform/PropertyLists.h"

#include <QString>

namespace quorvane {

using namespace Qt::StringLiterals;

/// A folder in which property lists lie.
class ListsSubject {
public:
    virtual ~ListsSubject() = default;
    virtual const PropertyLists& lists() const = 0;
    virtual QString folder() const = 0;
    virtual void write(const QString& path, const QByteArray& bytes) = 0;
    virtual void link(const QString& path, const QString& target) = 0;
    /// Makes a file of a size, at whose beginning the bytes stand.
    virtual void writeLarge(const QString& path, const QByteArray& bytes, qint64 size) = 0;
};

class PropertyListsContract : public ContractTest<ListsSubject> {
protected:
    QString path(const QString& name) const { return subject->folder() + u'/' + name; }
    std::optional<QVariantMap> dictionaryOf(const QByteArray& bytes) {
        subject->write(agentPath, bytes);
        return lists.dictionary(agentPath);
    }
    void expectNestedIsNone(int depth) {
        EXPECT_EQ(dictionaryOf("<plist><dict><key>a</key>" + QByteArray("<array>").repeated(depth) +
                               QByteArray("</array>").repeated(depth) + "</dict></plist>"),
                  std::nullopt);
    }

    const PropertyLists& lists = subject->lists();
    const QString agentPath = path(u"com.example.sync.agent.plist"_s);
};

} // namespace quorvane
