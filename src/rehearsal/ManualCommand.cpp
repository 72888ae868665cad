#include "rehearsal/ManualCommand.h"

#include "core/Utf8.h"
#include "documentation/MarkdownToHTML.h"
#include "platform/FileManager.h"
#include "platform/portable/DiskFileManager.h"
#include "rehearsal/Terminal.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QString markdownIn(const QString& file) {
    try {
        const std::optional<QString> text = wholeUtf8(DiskFileManager().read(file));
        if (!text) {
            throw UnusableInput(file + u": not UTF-8"_s);
        }
        return *text;
    } catch (const FileError& error) {
        throw UnusableInput(error.message());
    }
}

} // namespace

int printManual(const Arguments& arguments) {
    return printReport(markdownToHTML(markdownIn(arguments.operands.first())).toUtf8() + '\n') ? kDone : kNotDone;
}

} // namespace quorvane
