#include "ChildPosix.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

#include "Failure.h"

namespace Peers {
namespace {

double GetMedian(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// The medians of several passes, one by one.
Sample Combine(const std::vector<Sample>& samples) {
    Sample combined = samples.front();
    for (std::size_t i = 0; i < kOperationCount; ++i) {
        std::vector<double> seconds;
        std::vector<double> calibration;
        for (const Sample& sample : samples) {
            seconds.push_back(sample.seconds[i]);
            calibration.push_back(sample.calibration[i]);
        }
        combined.seconds[i] = GetMedian(seconds);
        combined.calibration[i] = GetMedian(calibration);
    }
    return combined;
}

Sample RunInChild(const SystemEntry& entry, const Plan& plan, Heap heap) {
    SetUpHeap(heap);
    const auto system = entry.make();
    if (heap == Heap::Fresh) {
        return RunPass(*system, plan, true);
    }
    const Sample first = RunPass(*system, plan, true);
    std::vector<Sample> samples;
    for (int i = 0; i < plan.workload.passes; ++i) {
        samples.push_back(RunPass(*system, plan, false));
    }
    Sample combined = Combine(samples);
    combined.heldBytes = first.heldBytes;
    return combined;
}

}  // namespace

Sample TakeSample(const SystemEntry& system, const Plan& plan, Heap heap) {
    int ends[2] = {};
    if (pipe(ends) != 0) {
        Fail("the system has no pipe left");
    }
    const pid_t child = fork();
    if (child == 0) {
        const Sample sample = RunInChild(system, plan, heap);
        const bool written = write(ends[1], &sample, sizeof sample) == static_cast<ssize_t>(sizeof sample);
        _exit(written ? 0 : 1);
    }
    close(ends[1]);
    Sample sample;
    const bool received = child > 0 && read(ends[0], &sample, sizeof sample) == static_cast<ssize_t>(sizeof sample);
    close(ends[0]);
    int status = 0;
    if (child > 0) {
        waitpid(child, &status, 0);
    }
    if (!received || status != 0) {
        Fail(std::string(system.name) + " did not get through " + plan.workload.name);
    }
    return sample;
}

}  // namespace Peers
