#pragma once

#include <QString>

namespace quorvane {

/// Converts the manual. Not all of Markdown: rules in a fixed order, first those within a line, then tables, lists, and last
/// what a line is by how it begins. What is HTML already stays as it is. Takes time in proportion to the text's length.
///
/// Within a line: ```text``` and `text` are code, ***text***, **text** and *text* are emphasis. A table's rows hold bars, and
/// the line under its header begins with dashes; items of a list begin with "- " or "* ", headings with "# ", "## " or "### ",
/// a rule with "---". Only "\n" ends a line.
QString markdownToHTML(const QString& markdown);

} // namespace quorvane
