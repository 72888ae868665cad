#pragma once

#include <QByteArray>
#include <QString>

#include <exception>

namespace quorvane {

/// A file or value that isn't what it should be.
class DecodingError : public std::exception {
public:
    /// @param problem  "missing", "not a string"
    /// @param key      the key at fault with the way to it; empty when it is the whole text
    explicit DecodingError(const QString& problem, const QString& key = {});

    QString key() const { return m_key; }
    /// `"startup.items[3].kind": unknown value "x"`, on one line.
    QString message() const { return QString::fromUtf8(m_text); }
    const char* what() const noexcept override { return m_text.constData(); }
    /// The same error, seen from the object or array that holds the value. @param step  "startup" or "[3]"
    DecodingError within(const QString& step) const;

private:
    QString m_problem;
    QString m_key;
    QByteArray m_text;
};

/// A record that no file can hold.
class EncodingError : public std::exception {
public:
    explicit EncodingError(const QString& text)
        : m_text(text.toUtf8()) {}

    QString message() const { return QString::fromUtf8(m_text); }
    const char* what() const noexcept override { return m_text.constData(); }

private:
    QByteArray m_text;
};

} // namespace quorvane
