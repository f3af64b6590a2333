#include "kivtree/CommandLine.h"

#include <algorithm>

#include <CLI/CLI.hpp>

#include "kivtree/Suggest.h"

namespace KivTree {
namespace {

/// Lets nothing pass for which `problem` has a sentence. The help shows no trace of it.
template <class Problem>
void Check(CLI::Option* option, Problem problem) {
    option->check(CLI::Validator([problem](std::string& word) { return problem(word); }, ""));
}

template <class Number>
bool IsNumberFrom(const std::string& word, Number least) {
    Number number{};
    return CLI::detail::lexical_cast(word, number) && number >= least;
}

Option WholeNumber(CLI::Option* option) {
    Check(option, [](const std::string& word) {
        std::int64_t number = 0;
        return CLI::detail::lexical_cast(word, number) ? "" : "'" + word + "' is no whole number";
    });
    return Option(option);
}

std::string Listed(const std::vector<std::string>& values) {
    std::string list;
    for (const std::string& value : values) {
        list += (list.empty() ? "" : ",") + value;
    }
    return list;
}

}  // namespace

Option Option::Required() const {
    option_->required();
    return *this;
}

Option Option::Named(const char* value) const {
    option_->type_name(value);
    return *this;
}

Option Option::OneOf(const std::vector<std::string>& values) const {
    const auto problem = [values](const std::string& word) {
        const bool known = std::find(values.begin(), values.end(), word) != values.end();
        return known ? "" : "'" + word + "' is none of " + Listed(values) + "." + Suggestion(word, values);
    };
    option_->check(CLI::Validator(problem, "{" + Listed(values) + "}"));
    return *this;
}

Option Option::Positive() const {
    Check(option_, [](const std::string& word) {
        return IsNumberFrom(word, std::int64_t{1}) ? "" : "'" + word + "' is no whole number from 1 up";
    });
    return *this;
}

Option Option::NotNegative() const {
    Check(option_, [](const std::string& word) {
        return IsNumberFrom(word, 0.0) ? "" : "'" + word + "' is no number from 0 up";
    });
    return *this;
}

Option Option::Excludes(const Option& other) const {
    option_->excludes(other.option_);
    return *this;
}

Option Option::Group(const char* heading) const {
    option_->group(heading);
    return *this;
}

bool Option::IsGiven() const {
    return option_->count() > 0;
}

CommandLine::CommandLine(const std::string& program, const std::string& summary)
    : app_(std::make_unique<CLI::App>(summary, program)) {
    // A word that begins with a slash is a path, everywhere.
    app_->allow_windows_style_options(false);
}

CommandLine::~CommandLine() = default;

Option CommandLine::Add(const char* names, std::string& value, const char* description) {
    return Option(app_->add_option(names, value, description));
}

Option CommandLine::Add(const char* names, int& value, const char* description) {
    return WholeNumber(app_->add_option(names, value, description));
}

Option CommandLine::Add(const char* names, std::optional<int>& value, const char* description) {
    return WholeNumber(app_->add_option(names, value, description));
}

Option CommandLine::Add(const char* names, std::uint64_t& value, const char* description) {
    return WholeNumber(app_->add_option(names, value, description));
}

Option CommandLine::Add(const char* names, std::optional<std::uint64_t>& value, const char* description) {
    return WholeNumber(app_->add_option(names, value, description));
}

Option CommandLine::Add(const char* names, double& value, const char* description) {
    return Option(app_->add_option(names, value, description));
}

Option CommandLine::AddFlag(const char* names, bool& value, const char* description) {
    return Option(app_->add_flag(names, value, description));
}

Option CommandLine::AddHelp(const char* names, const char* description) {
    return Option(app_->set_help_flag(names, description));
}

void CommandLine::SetFooter(const char* text) {
    app_->footer(text);
}

CommandLine::Parsed CommandLine::Parse(const std::vector<std::string>& words) {
    Parsed parsed;
    std::vector<std::string> reversed(words.rbegin(), words.rend());
    try {
        app_->parse(reversed);
    } catch (const CLI::CallForHelp&) {
        parsed.wantsHelp = true;
    } catch (const CLI::ParseError& error) {
        parsed.problem = error.what();
        std::replace(parsed.problem.begin(), parsed.problem.end(), '\n', ' ');
        // A suggestion at its end is a sentence of its own.
        parsed.problem += parsed.problem.back() == '?' || parsed.problem.back() == '.' ? "" : ".";
    }
    return parsed;
}

std::string CommandLine::GetProgram() const {
    return app_->get_name();
}

std::string CommandLine::GetHelp() const {
    return app_->help();
}

std::vector<OptionWords> CommandLine::GetOptions() const {
    std::vector<OptionWords> options;
    for (const CLI::Option* option : app_->get_options()) {
        const bool takesValue = option->get_type_size() > 0;
        for (const std::string& name : option->get_snames()) {
            options.push_back({"-" + name, option->get_description(), takesValue});
        }
        for (const std::string& name : option->get_lnames()) {
            options.push_back({"--" + name, option->get_description(), takesValue});
        }
    }
    return options;
}

}  // namespace KivTree
