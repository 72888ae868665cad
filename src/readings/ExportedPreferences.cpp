#include "readings/ExportedPreferences.h"

#include <QXmlStreamReader>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// The reader stands in the dictionary. Values that nobody asked for are passed over, however large.
void readEntries(QXmlStreamReader& reader, QHash<QString, Reading<TypedValue>>& values) {
    while (reader.readNextStartElement()) {
        if (reader.name() != u"key") {
            reader.raiseError();
            return;
        }
        const QString key = reader.readElementText();
        if (!reader.readNextStartElement()) {
            reader.raiseError();
            return;
        }
        if (!values.contains(key)) {
            reader.skipCurrentElement();
            continue;
        }
        const std::optional<TypedValue> value = TypedValue::ofElement(reader);
        values[key] = value ? Reading<TypedValue>::answered(value) : Reading<TypedValue>::unanswered();
    }
}

} // namespace

std::optional<QHash<QString, Reading<TypedValue>>> exportedValues(const QString& xml, const QStringList& keys) {
    QHash<QString, Reading<TypedValue>> values;
    for (const QString& key : keys) {
        values.insert(key, Reading<TypedValue>::answered(std::nullopt));
    }
    QXmlStreamReader reader(QString(xml).replace(u'\r', u"&#13;"_s)); // which XML would take for another line's end
    reader.setNamespaceProcessing(false);
    const bool isList = reader.readNextStartElement() && reader.name() == u"plist" && reader.readNextStartElement() &&
                        reader.name() == u"dict";
    if (!isList) {
        return std::nullopt;
    }
    readEntries(reader, values);
    while (!reader.atEnd()) {
        reader.readNext();
    }
    return reader.hasError() ? std::nullopt : std::optional(values);
}

QString placeOf(const MacPreference& preference) {
    const QString host = preference.host == PreferenceHost::Current ? u"-currentHost "_s : QString();
    return host + preference.domain.toString() + u' ' + preference.key.toString();
}

TypedValues valuesIn(const TypedReadings& readings) {
    TypedValues values;
    for (auto reading = readings.cbegin(); reading != readings.cend(); ++reading) {
        if (reading->value) {
            values.insert(reading.key(), *reading->value);
        }
    }
    return values;
}

} // namespace quorvane
