#pragma once

#include "simulator/applescript/Value.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <chrono>
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

/// A class of objects that an application has. Its words are known while compiling.
struct ScriptClass {
    QString name;           ///< "login item"
    QString plural;         ///< "login items"
    QStringList properties; ///< single words ("hidden") that scripts read, and write where the application lets them
};

/// The words that an application adds to the language inside a `tell` of it, beside the commands that every such
/// application has: make, delete, exists.
struct ScriptDictionary {
    QList<ScriptClass> classes = {};
    QStringList properties = {}; ///< of the application itself, single words that scripts read: "trash"
    QStringList commands = {};   ///< single words, with an object behind them or nothing: "empty"
};

/// An application that a script can tell something. It has objects where the host knows a dictionary of it; without
/// one none of the functions about objects is ever called, and their words don't compile.
///
/// Each of these functions is an event: it may throw ScriptError (-1743, -600).
class ScriptApplication {
public:
    ScriptApplication() = default;
    ScriptApplication(const ScriptApplication&) = delete;
    ScriptApplication& operator=(const ScriptApplication&) = delete;
    virtual ~ScriptApplication() = default;

    /// As the system spells it, whatever the script wrote: "System Events".
    virtual QString name() const = 0;

    /// All objects of a class, in the application's order.
    virtual QList<applescript::ScriptObject> objects(const QString& className);
    /// @param position  counted from 0; nothing where there are fewer
    virtual std::optional<applescript::ScriptObject> objectAt(const QString& className, qsizetype position);
    /// The object as the application names it in an answer: so a script keeps it, and what is asked of it later is asked of
    /// whatever has that name then.
    virtual applescript::ScriptObject asKept(const applescript::ScriptObject& object);
    /// @param property  one of the dictionary, or "properties": the record of them all
    /// @return nothing where the object is gone or there is no such property
    virtual std::optional<applescript::Value> property(const applescript::ScriptObject& object,
                                                       const QString& property);
    /// @return false where the object is gone or the property is not to be written
    virtual bool setProperty(const applescript::ScriptObject& object, const QString& property,
                             const applescript::Value& value);
    virtual applescript::ScriptObject make(const QString& className, const applescript::Record& properties);
    /// @return false where the object is gone
    virtual bool remove(const applescript::ScriptObject& object);

    /// A property of the application itself, one of the dictionary.
    virtual applescript::Value ownProperty(const QString& property);
    /// What is in an object: `items of trash`. @return nothing where the object is gone or never holds any
    virtual std::optional<QList<applescript::ScriptObject>> itemsIn(const applescript::ScriptObject& container);
    /// Carries out a command of the dictionary. @param object  null where the script names none
    /// @return false where it isn't meant for that object
    virtual bool perform(const QString& command, const applescript::ScriptObject* object);
};

/// How long an event may take where the script says nothing of it.
constexpr std::chrono::seconds kEventLimit(120);

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

    /// What a `tell` of an application adds to the language, asked for while compiling; null where it adds nothing.
    /// It outlives the script.
    virtual const ScriptDictionary* findDictionary(const QString& application) = 0;

    /// The application that a `tell` addresses, asked for when the statement runs; null where there is none.
    /// It outlives the script.
    virtual ScriptApplication* findApplication(const QString& name) = 0;

    /// From now on an event that takes longer is an error of the script's (-1712).
    virtual void limitEvents(std::chrono::seconds limit) = 0;
};

/// Compiles the whole source, then runs it. What is not in the subset that is known here does not compile.
std::variant<ScriptResult, ScriptError> runAppleScript(const QString& source, ScriptHost& host);

} // namespace macsim
