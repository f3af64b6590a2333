#pragma once

#include <stdexcept>
#include <string>

#include <KivBase/ReturnPtrI.h>
#include <KivGenerics/Tree.h>
#include <KivInspect/LoadFile.h>
#include <KivInspect/Names.h>

#include "kivtree/ProgressBar.h"
#include "kivtree/StandardOutput.h"

namespace KivTree {

// How a run ends.
constexpr int ExitSuccess = 0;
constexpr int ExitNo = 1;  ///< nothing found, a difference, a conflict, a finding: each verb says which
constexpr int ExitTrouble = 2;

/// What ends a run with ExitTrouble: a sentence for people, with the place and what to do.
class Trouble : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The options that every verb has.
struct CommonOptions {
    std::string color = "auto";
    std::string names;
    bool noNames = false;
    bool noProgress = false;
};

/// A tree that was named on the command line.
struct Input {
    std::string name;  ///< as it was given
    KivInspect::Form form = KivInspect::Form::Binary;
    KivBase::ReturnPtrI<KivGenerics::Tree> tree;  ///< never empty, but may have no root
    KivInspect::Names names;  ///< empty without a dictionary
};

/// What a verb works with.
class Context {
public:
    explicit Context(const CommonOptions& options);
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;

    /// Where results go. Buffered; flushed at the end of the run.
    StandardOutput& Out() noexcept { return out_; }
    /// True when results may be coloured.
    bool HasColors() const noexcept { return colors_; }
    /// Prints "kivtree: SENTENCE" on standard error, for what is not a result.
    static void Note(const std::string& sentence);

    /// A bar for a long step, such as "reading tree.kiv".
    ProgressBar NewBar(const std::string& what) const { return {!options_.noProgress, what}; }
    /// A bar for a step that prints its results meanwhile: on the same terminal it would stand between them.
    ProgressBar NewBarBesideResults(const std::string& what) const;

    /// Loads a tree of any form, "-" from standard input, with the dictionary that belongs to it. Throws Trouble.
    Input Load(const std::string& file) const;
    /// The bytes of standard input, for verbs that look at bytes. Throws Trouble.
    std::string ReadStandardInput() const;
    /// The dictionary that belongs to a file; empty without one. Throws Trouble.
    KivInspect::Names LoadNames(const std::string& file) const;

private:
    const CommonOptions& options_;
    bool colors_;
    mutable bool inputIsRead_ = false;
    StandardOutput out_;
};

/// Ends the run because a file did not load; of a damaged one with the advice to salvage what is left.
[[noreturn]] void ThrowLoadFailure(const std::string& file, const KivStorage::Result& result);

}  // namespace KivTree
