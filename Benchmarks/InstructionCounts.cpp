// Repeats one operation on one input a given number of times, for a tool that counts instructions: the difference between
// two runs is what the repetitions cost that only one of them does. So both make the same inputs ready, and neither
// destroys anything at its end.

#include "InstructionCounts.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr const char* kUsage =
    "usage: InstructionCounts --list        every operation with its shape and how many nodes a repetition comes to\n"
    "       InstructionCounts --compiler    what the counts depend on beside the sources\n"
    "       InstructionCounts OPERATION SHAPE INPUTS REPETITIONS\n"
    "Makes that many inputs ready and does the operation on as many of them as it is to be repeated.\n";

std::vector<Count> ListCounts() {
    std::vector<Count> counts = ListTreeCounts();
    for (Count& count : ListSetCounts()) {
        counts.push_back(std::move(count));
    }
    return counts;
}

int PrintList() {
    for (const Count& count : ListCounts()) {
        std::printf("%s %s %zu\n", count.operation.c_str(), count.shape.c_str(), count.getUnits());
    }
    return 0;
}

int PrintCompiler() {
#if defined(__clang__)
    const char* const compiler = "clang++";
#elif defined(__GNUC__)
    const char* const compiler = "g++";
#else
    const char* const compiler = "compiler";
#endif
#if defined(__OPTIMIZE__) && defined(NDEBUG)
    const char* const optimised = "optimised";
#else
    const char* const optimised = "not optimised";
#endif
    std::printf("%s %s, %s\n", compiler, __VERSION__, optimised);
    return 0;
}

[[noreturn]] void Repeat(const Count& count, std::size_t inputCount, std::size_t repetitions) {
    std::vector<Input> inputs(inputCount);
    for (Input& input : inputs) {
        count.prepare(input);
    }
    for (std::size_t i = 0; i < repetitions; ++i) {
        count.run(inputs[i]);
    }
    std::_Exit(EXIT_SUCCESS);
}

int RepeatNamed(char** arguments) {
    const std::size_t inputCount = std::strtoul(arguments[2], nullptr, 10);
    const std::size_t repetitions = std::strtoul(arguments[3], nullptr, 10);
    for (const Count& count : ListCounts()) {
        if (count.operation == arguments[0] && count.shape == arguments[1] && repetitions <= inputCount) {
            Repeat(count, inputCount, repetitions);
        }
    }
    std::fprintf(stderr, "InstructionCounts: there is no %s of %s, or there are fewer inputs than repetitions.\n%s",
                 arguments[0], arguments[1], kUsage);
    return 2;
}

}  // namespace

TreeHandle NewTree() {
    return KivGenerics::CreateGenericTree(KivGenerics::EnumOrvObjectType(0));
}

void Require(bool holds) {
    if (!holds) {
        std::fputs("InstructionCounts: the operation failed.\n", stderr);
        std::_Exit(EXIT_FAILURE);
    }
}

void Keep(std::int64_t value) {
    [[maybe_unused]] static volatile std::int64_t kept;
    kept = value;
}

int main(int argc, char** argv) {
    if (argc == 2 && std::strcmp(argv[1], "--list") == 0) {
        return PrintList();
    }
    if (argc == 2 && std::strcmp(argv[1], "--compiler") == 0) {
        return PrintCompiler();
    }
    if (argc == 5) {
        return RepeatNamed(argv + 1);
    }
    std::fputs(kUsage, stderr);
    return 2;
}
