#pragma once

#include <random>

#include "model/Steps.h"

namespace Model {

/// Does so many random steps in a world that may already hold something.
inline void DoRandomSteps(World& world, std::mt19937& random, int count) {
    for (int i = 0; i < count; ++i) {
        Step step;
        for (std::uint16_t& number : step.numbers) {
            number = static_cast<std::uint16_t>(random());
        }
        Choices choices(world, step);
        OperationOf(step).run(world, choices);
        world.CheckAll();
    }
}

}  // namespace Model
