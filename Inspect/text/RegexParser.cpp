#include "text/RegexParser.h"

#include <charconv>
#include <vector>

#include "files/Failure.h"
#include "text/Utf.h"

namespace KivInspect {
namespace {

// A pattern that multiplies its parts, or nests them, is stopped here: each step costs time for each character of a text.
constexpr std::size_t MaxSteps = 10000;
constexpr int MaxDepth = 100;
constexpr int MaxCount = 1000;
constexpr int Unbounded = -1;
constexpr char32_t LastCharacter = 0x10FFFF;

}  // namespace

void RegexParser::Refuse(const std::string& what) const {
    throw Failure(InspectMalformed, what);
}

bool RegexParser::Take(char c) noexcept {
    if (Peek() != c || rest_.empty()) {
        return false;
    }
    rest_.remove_prefix(1);
    return true;
}

std::string RegexParser::Parse() {
    try {
        Alternatives();
        if (!rest_.empty()) {
            Refuse("a ) has no ( before it");
        }
        Add({Step::Kind::Match});
        return {};
    } catch (const Failure& failure) {
        return failure.what();
    }
}

void RegexParser::Add(Step step) {
    if (regex_.steps_.size() >= MaxSteps) {
        Refuse("the expression is too large");
    }
    regex_.steps_.push_back(step);
}

void RegexParser::AddClass(Class group) {
    regex_.classes_.push_back(std::move(group));
    Add({Step::Kind::Class, regex_.classes_.size() - 1});
}

/// Puts a step before the last ones, which lead only to one another.
void RegexParser::Insert(std::size_t at, Step step) {
    Add(step);
    auto& steps = regex_.steps_;
    for (std::size_t i = steps.size() - 1; i > at; --i) {
        steps[i] = steps[i - 1];
        const bool leads = steps[i].kind == Step::Kind::Split || steps[i].kind == Step::Kind::Jump;
        steps[i].first += leads ? 1 : 0;
        steps[i].second += leads ? 1 : 0;
    }
    steps[at] = step;
}

void RegexParser::Alternatives() {
    if (++depth_ > MaxDepth) {
        Refuse("the expression is nested too deep");
    }
    std::vector<std::size_t> ends;
    std::size_t begin = regex_.steps_.size();
    Sequence();
    while (Take('|')) {
        // A split before the alternative that was read, and behind it a jump to where all of them end.
        Insert(begin, {Step::Kind::Split, begin + 1, regex_.steps_.size() + 2});
        ends.push_back(regex_.steps_.size());
        Add({Step::Kind::Jump});
        begin = regex_.steps_.size();
        Sequence();
    }
    for (const std::size_t end : ends) {
        regex_.steps_[end].first = regex_.steps_.size();
    }
    --depth_;
}

void RegexParser::Sequence() {
    while (!rest_.empty() && Peek() != '|' && Peek() != ')') {
        Repeated();
    }
}

void RegexParser::Repeated() {
    const std::size_t from = regex_.steps_.size();
    Single();
    while (true) {
        if (Take('*')) {
            Repeat(from, 0, Unbounded);
        } else if (Take('+')) {
            Repeat(from, 1, Unbounded);
        } else if (Take('?')) {
            Repeat(from, 0, 1);
        } else if (Take('{')) {
            int least = 0;
            int most = 0;
            TakeCounts(least, most);
            Repeat(from, least, most);
        } else {
            return;
        }
    }
}

void RegexParser::TakeCounts(int& least, int& most) {
    const auto number = [this](int otherwise) {
        int value = otherwise;
        const auto read = std::from_chars(rest_.data(), rest_.data() + rest_.size(), value);
        rest_.remove_prefix(static_cast<std::size_t>(read.ptr - rest_.data()));
        return read.ec == std::errc() || read.ec == std::errc::invalid_argument ? value : MaxCount + 1;
    };
    least = number(0);
    most = Take(',') ? number(Unbounded) : least;
    if (!Take('}') || least < 0 || least > MaxCount || most > MaxCount || most < Unbounded ||
        (most != Unbounded && most < least)) {
        Refuse("a { needs two numbers of at most " + std::to_string(MaxCount) + ", the smaller one first, and a }");
    }
}

/// Repeats the steps from `from` to the end: as often as it must be one after another, then as often as it may be.
void RegexParser::Repeat(std::size_t from, int least, int most) {
    std::vector<Step> once(regex_.steps_.begin() + static_cast<std::ptrdiff_t>(from), regex_.steps_.end());
    const std::size_t size = once.size();
    regex_.steps_.resize(from);
    const auto append = [&] {
        const std::size_t at = regex_.steps_.size();
        for (Step step : once) {
            if (step.kind == Step::Kind::Split || step.kind == Step::Kind::Jump) {
                step.first += at - from;
                step.second += at - from;
            }
            Add(step);
        }
    };
    for (int i = 0; i < least; ++i) {
        append();
    }
    if (most == Unbounded) {
        const std::size_t loop = regex_.steps_.size();
        Add({Step::Kind::Split, loop + 1, loop + size + 2});
        append();
        Add({Step::Kind::Jump, loop});
        return;
    }
    const std::size_t end = regex_.steps_.size() + static_cast<std::size_t>(most - least) * (size + 1);
    for (int i = least; i < most; ++i) {
        Add({Step::Kind::Split, regex_.steps_.size() + 1, end});
        append();
    }
}

void RegexParser::Single() {
    switch (Peek()) {
        case '(': Group(); return;
        case '[': Bracket(); return;
        case '\\': Escape(); return;
        case '.':
            rest_.remove_prefix(1);
            AddClass({{{U'\n', U'\n'}, {U'\r', U'\r'}}, true});
            return;
        case '^':
            rest_.remove_prefix(1);
            Add({Step::Kind::Begin});
            return;
        case '$':
            rest_.remove_prefix(1);
            Add({Step::Kind::End});
            return;
        case '*':
        case '+':
        case '?':
        case '{': Refuse(std::string("nothing stands before a ") + Peek());
        default: break;
    }
    const char32_t c = TakeCharacter();
    AddRange(c, c);
}

void RegexParser::Group() {
    Take('(');
    Alternatives();
    if (!Take(')')) {
        Refuse("a ( has no ) behind it");
    }
}

char32_t RegexParser::TakeCharacter() {
    if (rest_.empty()) {
        Refuse("the expression ends too early");
    }
    const char32_t c = TakeUtf8Character(rest_);
    if (c == NoCharacter) {
        Refuse("the expression is not UTF-8");
    }
    return c;
}

char32_t RegexParser::TakeEscaped() {
    const char32_t c = TakeCharacter();
    switch (c) {
        case U't': return U'\t';
        case U'n': return U'\n';
        case U'r': return U'\r';
        case U'u': break;
        default: return c;
    }
    unsigned value = 0;
    const auto read = std::from_chars(rest_.data(), rest_.data() + (rest_.size() < 4 ? rest_.size() : 4), value, 16);
    if (read.ec != std::errc() || read.ptr != rest_.data() + 4) {
        Refuse("\\u needs four hexadecimal digits");
    }
    rest_.remove_prefix(4);
    return value;
}

/// Makes a class of \d, \w or \s, or of one of their opposites; false for any other letter.
bool RegexParser::AddShorthand(char32_t letter, Class& group) {
    std::vector<Regex::Range> ranges;
    switch (letter | 0x20U) {
        case U'd': ranges = {{U'0', U'9'}}; break;
        case U'w': ranges = {{U'0', U'9'}, {U'A', U'Z'}, {U'_', U'_'}, {U'a', U'z'}}; break;
        case U's': ranges = {{U'\t', U'\r'}, {U' ', U' '}}; break;
        default: return false;
    }
    if ((letter & 0x20U) != 0) {
        group.ranges.insert(group.ranges.end(), ranges.begin(), ranges.end());
        return true;
    }
    char32_t next = 0;
    for (const Regex::Range& range : ranges) {
        group.ranges.push_back({next, range.first - 1});
        next = range.last + 1;
    }
    group.ranges.push_back({next, LastCharacter});
    return true;
}

void RegexParser::Escape() {
    Take('\\');
    Class group;
    if (!rest_.empty() && AddShorthand(static_cast<unsigned char>(Peek()), group)) {
        rest_.remove_prefix(1);
        AddClass(std::move(group));
        return;
    }
    const char32_t c = TakeEscaped();
    AddRange(c, c);
}

void RegexParser::Bracket() {
    Take('[');
    Class group;
    group.negated = Take('^');
    bool first = true;
    while (first || !Take(']')) {
        first = false;
        const bool escaped = Take('\\');
        if (escaped && !rest_.empty() && AddShorthand(static_cast<unsigned char>(Peek()), group)) {
            rest_.remove_prefix(1);
            continue;
        }
        const char32_t from = escaped ? TakeEscaped() : TakeCharacter();
        char32_t to = from;
        if (rest_.size() > 1 && rest_[0] == '-' && rest_[1] != ']') {
            Take('-');
            to = Take('\\') ? TakeEscaped() : TakeCharacter();
        }
        if (to < from) {
            Refuse("a range in [ ] ends before it begins");
        }
        group.ranges.push_back({from, to});
    }
    AddClass(std::move(group));
}

}  // namespace KivInspect
