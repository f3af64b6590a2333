#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace KivInspect {

/// A regular expression over UTF-16 text. Searching takes time in proportion to the text and to the expression, and no stack,
/// whatever they are.
///
/// It knows . [a-z] [^a-z] \d \w \s \D \W \S ^ $ ( ) | * + ? {m,n} and \ before any other character, which then stands for itself;
/// also \t, \n, \r and \uXXXX. A dot is any character but a line's end; ^ and $ are the ends of the text.
class Regex {
public:
    /// What Compile answers: whether the expression is one, and if not, why.
    struct Compiled;

    static Compiled Compile(std::string_view utf8, bool ignoreCase = false);

    /// True when it matches somewhere in the text.
    bool Matches(const char16_t* units, std::size_t count) const;

private:
    friend class RegexParser;

    struct Range {
        char32_t first;
        char32_t last;
    };
    struct Step {
        enum class Kind { Class, Split, Jump, Begin, End, Match };

        Kind kind;
        std::size_t first = 0;  // the class, or where a jump goes
        std::size_t second = 0;  // where a split goes as well
    };
    struct Class {
        std::vector<Range> ranges;
        bool negated = false;
    };

    bool Holds(const Class& group, char32_t c) const noexcept;
    void Follow(std::size_t step, bool atBegin, bool atEnd, std::vector<std::size_t>& states,
                std::vector<bool>& seen) const;

    std::vector<Step> steps_;
    std::vector<Class> classes_;
    bool ignoreCase_ = false;
};

struct Regex::Compiled {
    Regex regex;
    std::string problem;  ///< empty when the expression is one
};

}  // namespace KivInspect
