#pragma once

#include <QStringList>
#include <QStringView>

namespace macsim {

struct ToolContext;

/// What is said about an expression that can't be read; "%1" stands for the word in question.
struct TestWording {
    QStringView notUnary = u"%1: unexpected operator";  ///< before the last of two words
    QStringView notBinary = u"%1: unexpected operator"; ///< between two words
    QStringView leftOver = u"%1: unexpected operator";  ///< the first word behind the expression
    QStringView notANumber = u"%1: bad number";
    QStringView unclosedGroup = u"closing paren expected";
};

/// Judges an expression of test(1): what stands between "[" and "]".
///
/// Up to four words are read by their number, as POSIX has it; others as -o below -a below ! below a primary
/// or a group in parentheses. Paths are taken from the working folder of the context and judged by its
/// actor's rights.
/// @return 0 true, 1 false, 2 an expression that can't be read or asks what isn't simulated: then `error` has
///         the message, without the tool's name and a line end
int evaluateTest(const QStringList& arguments, const ToolContext& context, QString& error,
                 const TestWording& wording = {});

} // namespace macsim
