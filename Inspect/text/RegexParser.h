#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <KivInspect/Regex.h>

namespace KivInspect {

/// Makes the steps of a Regex from its text.
class RegexParser {
public:
    RegexParser(std::string_view utf8, Regex& regex) noexcept : rest_(utf8), regex_(regex) {}

    /// Returns what is wrong with the expression, or nothing.
    std::string Parse();

private:
    using Step = Regex::Step;
    using Class = Regex::Class;

    void Alternatives();
    void Sequence();
    void Repeated();
    void Single();
    void Group();
    void Bracket();
    void Escape();
    void Repeat(std::size_t from, int least, int most);
    void TakeCounts(int& least, int& most);

    char32_t TakeCharacter();
    char32_t TakeEscaped();
    bool AddShorthand(char32_t letter, Class& group);
    void AddClass(Class group);
    void AddRange(char32_t first, char32_t last) { AddClass({{{first, last}}, false}); }
    void Add(Step step);
    void Insert(std::size_t at, Step step);
    [[noreturn]] void Refuse(const std::string& what) const;
    char Peek() const noexcept { return rest_.empty() ? '\0' : rest_.front(); }
    bool Take(char c) noexcept;

    std::string_view rest_;
    Regex& regex_;
    int depth_ = 0;
};

}  // namespace KivInspect
