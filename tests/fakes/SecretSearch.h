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
    explicit SecretSearch(const QStringList& secrets) {
        for (const QString& secret : secrets) {
            addEncoded(secret, QStringLiteral("UTF-8"), QStringConverter::Utf8);
            addEncoded(secret, QStringLiteral("UTF-16LE"), QStringConverter::Utf16LE);
            addEncoded(secret, QStringLiteral("UTF-16BE"), QStringConverter::Utf16BE);
        }
    }

    /// What is in there, by secret and form: "gig-7431-door in UTF-8, base64".
    QStringList formsIn(const QByteArray& bytes) const {
        const QByteArray unwrapped = withoutBlanks(bytes);
        QStringList forms;
        for (const Needle& needle : m_needles) {
            if ((needle.matcher.indexIn(bytes) >= 0 || needle.matcher.indexIn(unwrapped) >= 0) &&
                !forms.contains(needle.form)) {
                forms.append(needle.form);
            }
        }
        return forms;
    }

    /// The paths in a folder whose names, link targets or contents hold a secret, sorted. Links are not followed.
    QStringList pathsIn(const QString& folder) const {
        QStringList paths;
        QDirIterator entries(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                             QDirIterator::Subdirectories);
        while (entries.hasNext()) {
            entries.next();
            const QString path = entries.filePath().mid(folder.size());
            if (!formsIn(path.toUtf8() + '\n' + contentOf(entries.fileInfo())).isEmpty()) {
                paths.append(path);
            }
        }
        paths.sort();
        return paths;
    }

private:
    struct Needle {
        QByteArrayMatcher matcher;
        QString form;
    };

    void addEncoded(const QString& secret, const QString& encoding, QStringConverter::Encoding converter) {
        QStringEncoder encoder(converter, QStringConverter::Flag::Stateless);
        const QByteArray bytes = encoder.encode(secret);
        const QString form = secret + QStringLiteral(" in ") + encoding;
        add(bytes, form);
        add(bytes.toHex(), form + QStringLiteral(", hexadecimal"));
        add(bytes.toHex().toUpper(), form + QStringLiteral(", hexadecimal"));
        for (qsizetype offset = 0; offset < 3; ++offset) {
            add(base64Behind(offset, bytes), form + QStringLiteral(", base64"));
        }
    }
    void add(const QByteArray& bytes, const QString& form) { m_needles.append({QByteArrayMatcher(bytes), form}); }

    /// The characters of base64 that tell of these bytes alone, when so many others stand before them.
    static QByteArray base64Behind(qsizetype offset, const QByteArray& bytes) {
        const qsizetype first = (offset * 8 + 5) / 6;
        const qsizetype end = (offset + bytes.size()) * 8 / 6;
        return (QByteArray(offset, '\0') + bytes).toBase64().mid(first, end - first);
    }

    static QByteArray withoutBlanks(const QByteArray& bytes) {
        QByteArray kept;
        kept.reserve(bytes.size());
        for (const char byte : bytes) {
            if (byte != ' ' && byte != '\t' && byte != '\r' && byte != '\n') {
                kept.append(byte);
            }
        }
        return kept;
    }

    static QByteArray contentOf(const QFileInfo& info) {
        if (info.isSymLink()) {
            return info.symLinkTarget().toUtf8();
        }
        if (!info.isFile()) {
            return {};
        }
        QFile file(info.filePath());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << info.filePath().toStdString();
        return file.readAll();
    }

    QList<Needle> m_needles;
};

} // namespace quorvane
