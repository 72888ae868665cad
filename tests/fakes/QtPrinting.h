#pragma once

#include <QByteArray>
#include <QString>

#include <ostream>

// Found by GoogleTest, which would print a text as a list of characters. Every test is compiled with this header first.

inline void PrintTo(const QString& text, std::ostream* stream) {
    *stream << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QByteArray& bytes, std::ostream* stream) {
    *stream << '"' << bytes.toStdString() << '"';
}
