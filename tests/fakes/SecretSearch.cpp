#include "fakes/SecretSearch.h"

namespace quorvane {

SecretSearch::SecretSearch(const QStringList& secrets) {
    for (const QString& secret : secrets) {
        addEncoded(secret, QStringLiteral("UTF-8"), QStringConverter::Utf8);
        addEncoded(secret, QStringLiteral("UTF-16LE"), QStringConverter::Utf16LE);
        addEncoded(secret, QStringLiteral("UTF-16BE"), QStringConverter::Utf16BE);
    }
}

QStringList SecretSearch::formsIn(const QByteArray& bytes) const {
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

QStringList SecretSearch::pathsIn(const QString& folder) const {
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

void SecretSearch::addEncoded(const QString& secret, const QString& encoding, QStringConverter::Encoding converter) {
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

void SecretSearch::add(const QByteArray& bytes, const QString& form) {
    m_needles.append({QByteArrayMatcher(bytes), form});
}

QByteArray SecretSearch::base64Behind(qsizetype offset, const QByteArray& bytes) {
    const qsizetype first = (offset * 8 + 5) / 6;
    const qsizetype end = (offset + bytes.size()) * 8 / 6;
    return (QByteArray(offset, '\0') + bytes).toBase64().mid(first, end - first);
}

QByteArray SecretSearch::withoutBlanks(const QByteArray& bytes) {
    QByteArray kept;
    kept.reserve(bytes.size());
    for (const char byte : bytes) {
        if (byte != ' ' && byte != '\t' && byte != '\r' && byte != '\n') {
            kept.append(byte);
        }
    }
    return kept;
}

QByteArray SecretSearch::contentOf(const QFileInfo& info) {
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

} // namespace quorvane
