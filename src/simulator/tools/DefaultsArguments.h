#pragma once

#include "simulator/PropertyList.h"

#include <QString>
#include <QStringList>

#include <exception>
#include <optional>

namespace macsim {

/// What a command line asks `defaults` to do.
struct DefaultsCommand {
    enum class Verb { Help, Domains, Read, ReadType, Write, WriteDomain, Rename, Delete, Export };
    enum class Change { Replace, AppendToArray, AddToDictionary };

    Verb verb = Verb::Help;
    bool isCurrentHost = false;
    QString hostName; ///< of -host; empty without it
    QString domain;   ///< as typed; empty where the verb takes none
    bool isGlobalDomain = false;
    std::optional<QString> key; ///< of read, delete: the whole domain without one
    QString newKey;             ///< of rename
    Change change = Change::Replace;
    PropertyList value; ///< of write; of a whole domain always a dictionary
};

/// A command line that `defaults` doesn't take.
class DefaultsMisuse : public std::exception {
public:
    enum class Kind {
        Usage,       ///< answered with the usage text
        Explained,   ///< answered with the message in the system log's form
        Unsupported, ///< fine on a Mac, but this simulated Mac cannot do it
    };

    explicit DefaultsMisuse(Kind kind, QString message = {});

    Kind kind() const { return m_kind; }
    const QString& message() const { return m_message; }
    const char* what() const noexcept override { return m_text.constData(); }

private:
    Kind m_kind;
    QString m_message;
    QByteArray m_text;
};

/// Reads the arguments behind the tool's name. Throws DefaultsMisuse.
DefaultsCommand parseDefaultsArguments(const QStringList& arguments);

/// What `defaults help` prints.
QString defaultsUsage();

} // namespace macsim
