#include "fakes/MacPicture.h"

namespace macsim {

QString MacDifference::line() const {
    if (!before) {
        return QStringLiteral("+ %1: %2\n").arg(key, *after);
    }
    return after ? QStringLiteral("~ %1: %2 → %3\n").arg(key, *before, *after)
                 : QStringLiteral("- %1: %2\n").arg(key, *before);
}

MacPicture::MacPicture(const QString& hostFolder)
    : m_folder(hostFolder) {
    QDirIterator entries(hostFolder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        entries.next();
        add(entries.fileInfo());
    }
}

QList<MacDifference> MacPicture::differencesSince(const MacPicture& before) const {
    QMap<QString, MacDifference> differences;
    for (auto entry = m_entries.begin(); entry != m_entries.end(); ++entry) {
        const auto old = before.m_entries.find(entry.key());
        if (old == before.m_entries.end()) {
            differences[entry.key()] = {entry.key(), std::nullopt, entry.value()};
        } else if (*old != entry.value()) {
            differences[entry.key()] = {entry.key(), *old, entry.value()};
        }
    }
    for (auto old = before.m_entries.begin(); old != before.m_entries.end(); ++old) {
        if (!m_entries.contains(old.key())) {
            differences[old.key()] = {old.key(), *old, std::nullopt};
        }
    }
    return differences.values();
}

QString MacPicture::changesSince(const MacPicture& before) const {
    QString lines;
    for (const MacDifference& difference : differencesSince(before)) {
        lines += difference.line();
    }
    return lines;
}

void MacPicture::add(const QFileInfo& info) {
    const QString path = info.filePath().mid(m_folder.size());
    if (path.contains(QStringLiteral("/Library/Logs/Quorvane")) || path.endsWith(QStringLiteral(".lock")) ||
        path.endsWith(QStringLiteral("/journal.jsonl")) || path.endsWith(QStringLiteral("/last-flow.json"))) {
        return;
    }
    if (hasOwnerMark(info.filePath())) {
        const Actor owner = Mac(m_folder).volume(Actor::Root).owner(path);
        m_entries[path + QStringLiteral(" owner")] =
            owner == Actor::Root ? QStringLiteral("root") : QStringLiteral("user");
    }
    if (info.isSymLink()) {
        m_entries[path] = QStringLiteral("link");
    } else if (info.isDir()) {
        m_entries[path] = QStringLiteral("folder");
    } else {
        addFile(path, info.filePath());
    }
}

void MacPicture::addFile(const QString& path, const QString& hostPath) {
    QFile file(hostPath);
    if (!file.open(QIODevice::ReadOnly)) {
        m_entries[path] = QStringLiteral("unreadable");
        return;
    }
    const QByteArray bytes = file.readAll();
    m_entries[path] = QStringLiteral("file");
    if (path.startsWith(kStateFolder.toString() + u'/')) {
        addState(QFileInfo(path).baseName(), Json::parse(bytes.cbegin(), bytes.cend()));
    } else if (path.endsWith(QStringLiteral(".plist"))) {
        addPropertyList(path, bytes);
    } else {
        m_entries[path] = QString::fromUtf8(bytes);
    }
}

void MacPicture::addPropertyList(const QString& path, const QByteArray& bytes) {
    const std::optional<PropertyList> list = parsePropertyList(bytes);
    const auto* values = list ? list->as<PropertyList::Dictionary>() : nullptr;
    if (!values) {
        m_entries[path] = QString::fromUtf8(bytes.toHex());
        return;
    }
    for (const auto& [key, value] : *values) {
        // As XML, so that the boolean true, the integer 1 and the text "1" are told apart.
        const QString xml = QString::fromUtf8(xmlPropertyList(value));
        m_entries[path + u' ' + key] =
            xml.section(QStringLiteral("<plist version=\"1.0\">\n"), 1).section(QStringLiteral("\n</plist>"), 0, 0);
    }
}

void MacPicture::addState(const QString& subject, const Json& state) {
    if (subject == QStringLiteral("loginItems") || subject == QStringLiteral("processes")) {
        addRecords(subject, state, "name");
    } else if (subject == QStringLiteral("backgroundTasks")) {
        addRecords(subject, state.value("records", Json::array()), "identifier");
    } else if (subject == u"permissions") {
        Json settings = state;
        settings.erase("automation");
        addValues(subject, settings);
    } else {
        addValues(subject, state);
    }
}

void MacPicture::addRecords(const QString& subject, const Json& records, const char* nameKey) {
    QHash<QString, int> counts;
    for (const Json& record : records) {
        QString name = QString::fromStdString(record.at(nameKey).get<std::string>());
        const int count = ++counts[name];
        if (count > 1) {
            name += QStringLiteral(" #%1").arg(count);
        }
        addValues(subject + QStringLiteral(" \"") + name + u'"', record);
    }
}

void MacPicture::addValues(const QString& subject, const Json& state) {
    const Json flat = state.flatten();
    for (const auto& [pointer, value] : flat.items()) {
        m_entries[QStringLiteral("state ") + subject + QString::fromStdString(pointer)] =
            QString::fromStdString(value.dump());
    }
}

} // namespace macsim
