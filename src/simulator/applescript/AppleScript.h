#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <variant>

namespace macsim {

/// Why a script did not compile or did not run to its end, as NSAppleScript and osascript report it.
/// A host throws it too, and leaves the place in the source to the interpreter.
struct ScriptError {
    int number = 0; ///< -2741 for syntax, -128 for a cancelled dialog, 1 to 255 from a shell line, …
    QString message;
    int start = 0; ///< character offsets into the source; both 0 while the place is not known
    int end = 0;
    bool isSyntaxError = false; ///< the script was not compiled, and nothing of it ran

    bool operator==(const ScriptError&) const = default;
};

/// The value of the last statement that a script ran.
struct ScriptResult {
    bool hasValue = false; ///< false when no statement gave one: osascript prints nothing then
    QString text;          ///< as osascript prints it: text bare, lists "a, b", records "name:x, path:y"
    QString sourceForm;    ///< as `osascript -s s` prints it: "a" in quotes, {1, 2}, {name:"x"}

    bool operator==(const ScriptResult&) const = default;
};

/// What `do shell script` asks for.
struct ShellScriptRequest {
    QString line;
    bool withAdministratorPrivileges = false;
    std::optional<QString> prompt; ///< the text of the authorization dialog
    std::optional<QString> userName;
    std::optional<QString> password;
};

/// How the line ended, in the bytes that /bin/sh gave.
struct ShellScriptOutcome {
    int status = 0;
    QByteArray output;
    QByteArray errors;
};

/// An application that a script can tell something. As yet it has a name and no objects.
///
/// Where the objects of an application join:
/// - Terms ("login item", "login items", "hidden") are known while compiling: this class gives its dictionary, the
///   statement parser keeps that of the innermost `tell` while it parses the block, and
///   ExpressionParser::parseTerm tries it after the language's own words. It makes the PropertyOf and
///   ElementOf nodes that exist for lists and records; `whose` is one more form of ElementSelection.
/// - An object is a value: ObjectReference, which holds the application and would hold its specifier too.
/// - propertyOf() and elementOf() in Elements.cpp find the type of what they are asked about there; a reference goes
///   to the application. A PropertyOf without an owner belongs to the target of the innermost `tell`.
/// - Commands (`make`, `delete`, `count`) are expression nodes as `do shell script` is; the evaluator hands them to
///   the application, which may throw ScriptError (-1743, -600).
class ScriptApplication {
public:
    ScriptApplication() = default;
    ScriptApplication(const ScriptApplication&) = delete;
    ScriptApplication& operator=(const ScriptApplication&) = delete;
    virtual ~ScriptApplication() = default;

    /// As the system spells it, whatever the script wrote: "System Events".
    virtual QString name() const = 0;
};

/// The world of a script.
class ScriptHost {
public:
    ScriptHost() = default;
    ScriptHost(const ScriptHost&) = delete;
    ScriptHost& operator=(const ScriptHost&) = delete;
    virtual ~ScriptHost() = default;

    /// Runs a shell line to its end. A status other than 0 becomes the script's error: the host needs not
    /// throw. Throws ScriptError when the line was not run: -128 for a cancelled prompt, -60007 for a wrong
    /// password.
    virtual ShellScriptOutcome doShellScript(const ShellScriptRequest& request) = 0;

    /// The application that a `tell` addresses, asked for when the statement runs; null where there is none.
    /// It outlives the script. Throws ScriptError when the script may not address it (-1743).
    virtual ScriptApplication* findApplication(const QString& name) = 0;
};

/// Compiles the whole source, then runs it. What is not in the subset that is known here does not compile.
std::variant<ScriptResult, ScriptError> runAppleScript(const QString& source, ScriptHost& host);

} // namespace macsim
