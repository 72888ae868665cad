#pragma once

#include <QByteArray>
#include <QByteArrayMatcher>
#include <QDirIterator>
#include <QFile>
#include <QList>
#include <QString>
#include <QStringEncoder>
#include <QStringList>

#include <gtest/gtest.h>

namespace quorvane {

/// Looks for secrets, however they may have been written down: in UTF-8 and in UTF-16 of both byte orders, and each of these
/// also in base64, wherever the secret stands in what was encoded, and in hexadecimal of either case. Spaces and line ends
/// that wrap a text don't hide it.
class SecretSearch {
public:
    /// @param secrets  long enough not to turn up by chance
    explicit SecretSearch(const QStringList& secrets);

    /// What is in there, by secret and form: "gig-7431-door in UTF-8, base64".
    QStringList formsIn(const QByteArray& bytes) const;

    /// The paths in a folder whose names, link targets or contents hold a secret, sorted. Links are not followed.
    QStringList pathsIn(const QString& folder) const;

private:
    struct Needle {
        QByteArrayMatcher matcher;
        QString form;
    };

    void addEncoded(const QString& secret, const QString& encoding, QStringConverter::Encoding converter);
    void add(const QByteArray& bytes, const QString& form);

    /// The characters of base64 that tell of these bytes alone, when so many others stand before them.
    static QByteArray base64Behind(qsizetype offset, const QByteArray& bytes);
    static QByteArray withoutBlanks(const QByteArray& bytes);
    static QByteArray contentOf(const QFileInfo& info);

    QList<Needle> m_needles;
};

} // namespace quorvane
