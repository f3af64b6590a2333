#pragma once

#include <array>

/// What a thread does with forests of its own, for so many rounds.
struct ThreadWork {
    const char* name;
    void (*run)(int rounds);
    /// False of what uses no forest, and shows what the machine gives.
    bool isChecked;
};

extern const std::array<ThreadWork, 5> kThreadWorks;
