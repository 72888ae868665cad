#pragma once

#include <QString>
#include <QStringList>

namespace quorvane {

/// One line for an argument list; an argument with a blank stands in quotes.
QString commandLine(const QStringList& arguments);

} // namespace quorvane
