#include "kivtree/CommandLine.h"

#include <algorithm>

#include <CLI/CLI.hpp>

namespace KivTree {

Option Option::Required() const {
    option_->required();
    return *this;
}

Option Option::Named(const char* value) const {
    option_->type_name(value);
    return *this;
}

Option Option::OneOf(const std::vector<std::string>& values) const {
    option_->check(CLI::IsMember(values));
    return *this;
}

Option Option::Positive() const {
    option_->check(CLI::PositiveNumber);
    return *this;
}

Option Option::NotNegative() const {
    option_->check(CLI::NonNegativeNumber);
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
    : app_(std::make_unique<CLI::App>(summary, program)) {}

CommandLine::~CommandLine() = default;

Option CommandLine::Add(const char* names, std::string& value, const char* description) {
    return Option(app_->add_option(names, value, description));
}

Option CommandLine::Add(const char* names, int& value, const char* description) {
    return Option(app_->add_option(names, value, description));
}

Option CommandLine::Add(const char* names, std::optional<int>& value, const char* description) {
    return Option(app_->add_option(names, value, description));
}

Option CommandLine::Add(const char* names, std::uint64_t& value, const char* description) {
    return Option(app_->add_option(names, value, description));
}

Option CommandLine::Add(const char* names, std::optional<std::uint64_t>& value, const char* description) {
    return Option(app_->add_option(names, value, description));
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
