#pragma once

#include <string>

#include "Measurement.h"

namespace Peers {

struct Options {
    Request request;
    std::string csv;
    std::string markdown;
    std::string svg;
    bool check = false;
    bool growth = false;
};

/// Ends the process after explaining what is not understood, or when --help is asked for.
Options ReadOptions(int count, char** arguments);

}  // namespace Peers
