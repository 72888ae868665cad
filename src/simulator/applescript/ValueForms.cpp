// How values are written: the source form, which a script could read again, and the form for people.

#include "simulator/applescript/AppleScript.h"
#include "simulator/applescript/Value.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace macsim::applescript {

namespace {

enum class Form { Source, Readable };

QString quoted(QString text) {
    return u'"' + text.replace(u'\\', u"\\\\"_s).replace(u'"', u"\\\""_s) + u'"';
}

class Writer {
public:
    explicit Writer(Form form)
        : m_form(form) {}

    QString take(const Value& value) {
        write(value);
        return m_out;
    }

    void operator()(MissingValue) { m_out += u"missing value"; }
    void operator()(bool truth) { m_out += truth ? u"true"_s : u"false"_s; }
    void operator()(int number) { m_out += QString::number(number); }
    void operator()(double number) { m_out += realText(number); }
    void operator()(const QString& text) { m_out += inForm(text); }

    void operator()(const List& list) {
        open();
        for (qsizetype i = 0; i < list.size(); ++i) {
            separate(i);
            write(list.at(i));
        }
        close();
    }

    void operator()(const Record& record) {
        open();
        for (qsizetype i = 0; i < record.names().size(); ++i) {
            separate(i);
            m_out += record.names().at(i) + u':';
            write(record.values().at(i));
        }
        close();
    }

    void operator()(const ItemReference& reference) {
        if (m_form == Form::Readable) {
            return write(reference.list.at(reference.index));
        }
        m_out += u"item %1 of "_s.arg(reference.index + 1);
        (*this)(reference.list);
    }

    void operator()(const ObjectReference& reference) {
        if (reference.application == nullptr) {
            m_out += u"«script»";
        } else if (reference.object == nullptr) {
            m_out += u"application "_s + inForm(reference.application->name());
        } else {
            writeObject(*reference.object, *reference.application);
        }
    }

    void operator()(const ClassName& className) { m_out += className.name; }

private:
    // For people an object goes without its application.
    void writeObject(const ScriptObject& object, const ScriptApplication& application) {
        m_out += object.name.isEmpty() ? object.className : object.className + u' ' + inForm(object.name);
        if (m_form == Form::Source) {
            m_out += u" of application "_s + inForm(application.name());
        }
    }

    void write(const Value& value) { std::visit(*this, value.data()); }
    QString inForm(const QString& text) const { return m_form == Form::Source ? quoted(text) : text; }
    void open() { m_out += m_form == Form::Source ? u"{"_s : QString(); }
    void close() { m_out += m_form == Form::Source ? u"}"_s : QString(); }
    void separate(qsizetype index) { m_out += index > 0 ? u", "_s : QString(); }

    Form m_form;
    QString m_out;
};

QString withoutTrailingZeros(const QString& digits) {
    qsizetype length = digits.size();
    while (digits.at(length - 1) == u'0' && digits.at(length - 2) != u'.') {
        --length;
    }
    return digits.first(length);
}

} // namespace

QString sourceForm(const Value& value) {
    return Writer(Form::Source).take(value);
}

QString readableForm(const Value& value) {
    return Writer(Form::Readable).take(value);
}

// Twelve digits; from 10,000.0 and down to 0.0001 with an exponent.
QString realText(double number) {
    constexpr int kDigitsAfterFirst = 11;
    const QStringList parts = QString::number(number, 'e', kDigitsAfterFirst).split(u'e');
    const int exponent = parts.at(1).toInt();
    const double size = std::abs(number);
    if (size >= 10000.0 || (size <= 0.0001 && size > 0.0)) {
        const QString sign = exponent < 0 ? u"-"_s : u"+"_s;
        return withoutTrailingZeros(parts.at(0)) + u'E' + sign + QString::number(std::abs(exponent));
    }
    return withoutTrailingZeros(QString::number(number, 'f', kDigitsAfterFirst - exponent));
}

} // namespace macsim::applescript
