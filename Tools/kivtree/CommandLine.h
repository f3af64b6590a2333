#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace KivTree {

/// What may stand on the command line of a verb: an option, or a word without dashes. A handle on what the CommandLine holds.
class Option {
public:
    explicit Option(CLI::Option* option) noexcept : option_(option) {}

    Option Required() const;
    /// What stands for the value in the help.
    Option Named(const char* value) const;
    /// Refuses every other value.
    Option OneOf(const std::vector<std::string>& values) const;
    Option Positive() const;
    Option NotNegative() const;
    Option Excludes(const Option& other) const;
    /// The heading that the help lists it under.
    Option Group(const char* heading) const;
    /// Whether it was on the command line that has been parsed.
    bool IsGiven() const;

private:
    CLI::Option* option_;
};

/// An option as a shell has to know it.
struct OptionWords {
    std::string name;  ///< with its dashes
    std::string description;
    bool takesValue = false;
};

/// The words that a verb takes. The parser behind it takes seconds to compile, so that nobody but CommandLine.cpp sees it.
class CommandLine {
public:
    CommandLine(const std::string& program, const std::string& summary);
    ~CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;

    /// Adds an option with a value, as in "-o,--output", or a word that stands for itself, as in "FILE". Without being given it
    /// leaves `value` as it is; `value` must live until all is parsed.
    Option Add(const char* names, std::string& value, const char* description);
    Option Add(const char* names, int& value, const char* description);
    Option Add(const char* names, std::optional<int>& value, const char* description);
    Option Add(const char* names, std::uint64_t& value, const char* description);
    Option Add(const char* names, std::optional<std::uint64_t>& value, const char* description);
    Option Add(const char* names, double& value, const char* description);
    /// Adds an option without a value.
    Option AddFlag(const char* names, bool& value, const char* description);
    Option AddHelp(const char* names, const char* description);
    /// What stands at the end of the help.
    void SetFooter(const char* text);

    /// How parsing ended.
    struct Parsed {
        bool wantsHelp = false;
        std::string problem;  ///< one line; empty when all was understood
    };
    Parsed Parse(const std::vector<std::string>& words);

    std::string GetProgram() const;
    std::string GetHelp() const;
    /// The short names first.
    std::vector<OptionWords> GetOptions() const;

private:
    std::unique_ptr<CLI::App> app_;
};

}  // namespace KivTree
