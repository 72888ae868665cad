#pragma once

// The syntax tree of a shell text: lists of pipelines of commands, and the words that these are made of.
// Quotes are gone from it; what they protected is marked instead.

#include <QString>

#include <memory>
#include <vector>

namespace macsim {

struct ShellList;

/// A stretch of a word that is expanded in one way.
struct ShellWordPart {
    enum class Kind {
        Text,
        Variable,     ///< `text` is the name; "?" is the last status, "$" the shell's process
        Substitution, ///< the output of `commands`
        Home,         ///< "~" and `text`, a user's name; empty for one's own home
    };
    Kind kind = Kind::Text;
    bool isQuoted = false; ///< neither split into fields nor taken for a pattern
    QString text;
    std::shared_ptr<const ShellList> commands;
};

using ShellWord = std::vector<ShellWordPart>;

struct ShellAssignment {
    QString name;
    ShellWord value;
};

struct ShellRedirection {
    enum class Kind { Read, Write, Append, Duplicate };
    Kind kind = Kind::Write;
    int descriptor = 1;
    int source = 1;   ///< Duplicate: the descriptor that is copied
    ShellWord target; ///< otherwise: the file
};

struct ShellCommand {
    enum class Kind { Simple, Subshell, Group };
    Kind kind = Kind::Simple;
    int line = 1;
    std::vector<ShellAssignment> assignments;
    std::vector<ShellWord> words;
    std::vector<ShellRedirection> redirections;
    std::shared_ptr<const ShellList> body; ///< of a subshell or group
};

struct ShellPipeline {
    enum class Condition { Always, AfterSuccess, AfterFailure }; ///< of what stands before it
    Condition condition = Condition::Always;
    bool isNegated = false;
    std::vector<ShellCommand> commands;
};

/// Pipelines joined by && and ||.
struct ShellAndOr {
    std::vector<ShellPipeline> pipelines;
    bool isInBackground = false;
};

struct ShellList {
    std::vector<ShellAndOr> items;
};

} // namespace macsim
