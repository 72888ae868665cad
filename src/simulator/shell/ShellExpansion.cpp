#include "simulator/shell/ShellExpansion.h"

#include "simulator/shell/Glob.h"
#include "simulator/shell/GlobPaths.h"

#include <QCoreApplication>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

/// Collects the fields of a word as patterns in which quoted text stands for itself.
class FieldCollector {
public:
    void add(const ShellWordPart& part, const QString& value) {
        using Kind = ShellWordPart::Kind;
        if (part.isQuoted || (part.kind == Kind::Home && value != u'~' + part.text)) {
            append(globQuoted(value));
        } else if (part.kind == Kind::Variable || part.kind == Kind::Substitution) {
            addSplit(value);
        } else {
            append(globUnquoted(value));
        }
    }

    QStringList take() {
        endField();
        return std::exchange(m_patterns, {});
    }

private:
    void append(const QString& pattern) {
        m_current += pattern;
        m_isOpen = true; // even when empty: "" is a field
    }

    void endField() {
        if (m_isOpen) {
            m_patterns.append(std::exchange(m_current, {}));
        }
        m_isOpen = false;
    }

    void addSplit(const QString& value) {
        qsizetype start = 0;
        for (qsizetype at = 0; at <= value.size(); ++at) {
            const bool isBlank = at < value.size() && QStringView(u" \t\n").contains(value[at]);
            if (at < value.size() && !isBlank) {
                continue;
            }
            if (at > start) {
                append(globUnquoted(value.mid(start, at - start)));
            }
            if (isBlank) {
                endField();
            }
            start = at + 1;
        }
    }

    QStringList m_patterns;
    QString m_current;
    bool m_isOpen = false;
};

} // namespace

QStringList ShellExpansion::fields(const std::vector<ShellWord>& words) const {
    QStringList fields;
    for (const ShellWord& word : words) {
        FieldCollector collector;
        for (const ShellWordPart& part : word) {
            collector.add(part, value(part));
        }
        for (const QString& pattern : collector.take()) {
            const QStringList paths =
                isGlob(pattern) ? matchingPaths(pattern, m_state.workingFolder(), m_context.volume) : QStringList();
            fields += paths.isEmpty() ? QStringList{globText(pattern)} : paths;
        }
    }
    return fields;
}

QString ShellExpansion::text(const ShellWord& word) const {
    QString text;
    for (const ShellWordPart& part : word) {
        text += value(part);
    }
    return text;
}

QString ShellExpansion::value(const ShellWordPart& part) const {
    switch (part.kind) {
    case ShellWordPart::Kind::Variable:
        return variable(part.text);
    case ShellWordPart::Kind::Substitution:
        return substitution(*part.commands);
    case ShellWordPart::Kind::Home:
        return home(part.text);
    case ShellWordPart::Kind::Text:
        break;
    }
    return part.text;
}

QString ShellExpansion::variable(const QString& name) const {
    if (name == u"?"_s) {
        return QString::number(m_state.lastStatus);
    }
    if (name == u"$"_s) {
        return QString::number(QCoreApplication::applicationPid());
    }
    return m_state.value(name).value_or(QString());
}

QString ShellExpansion::substitution(const ShellList& commands) const {
    QByteArray output = m_substitute(commands);
    output.replace('\0', QByteArray());
    while (output.endsWith('\n')) {
        output.chop(1);
    }
    return QString::fromUtf8(output);
}

QString ShellExpansion::home(const QString& user) const {
    if (user.isEmpty()) {
        return m_state.value(u"HOME"_s).value_or(m_context.mac.homeFolder(m_context.actor()));
    }
    if (user == u"root"_s) {
        return m_context.mac.homeFolder(Actor::Root);
    }
    const bool isUser = user == m_context.mac.machine().userName;
    return isUser ? m_context.mac.homeFolder(Actor::User) : u'~' + user;
}

} // namespace macsim
