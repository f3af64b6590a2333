#include "Tables.h"

#include <cstdio>

namespace Peers {
namespace {

std::string FormatRatio(const std::optional<double>& ratio) {
    return ratio ? Format(*ratio, 2) : "–";
}

/// `| system | name | name |` and the line below it.
std::string MakeHead(int operations, const std::string& more) {
    std::string names = "| |";
    std::string line = "|---|";
    for (int i = 0; i < operations; ++i) {
        names += std::string(" ") + GetName(static_cast<Operation>(i)) + " |";
        line += "---:|";
    }
    for (const char unit : more) {
        line += unit == '|' ? "---:|" : "";
    }
    return names + more + "\n" + line + "\n";
}

std::string MakeRatioTable(const Request& request, const Cells& cells) {
    std::string table = MakeHead(kComparedOperations, " **all** |");
    const std::vector<Ratios> ratios = ComputeRatios(request, cells);
    for (std::size_t system = 0; system < ratios.size(); ++system) {
        table += std::string("| ") + request.systems[system].name + " |";
        for (std::size_t i = 0; i < kComparedOperations; ++i) {
            table += " " + FormatRatio(ratios[system].operations[i]) + " |";
        }
        table += " **" + FormatRatio(ratios[system].all) + "** |\n";
    }
    return table;
}

std::string FormatFigure(const Figure& figure) {
    if (figure.samples == 0) {
        return " – |";
    }
    return " " + Format(figure.median, 1) + (figure.disturbed ? " ~" : "") + " |";
}

}  // namespace

std::string Format(double value, int digits) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", digits, value);
    return text;
}

const char* GetName(Operation operation) {
    switch (operation) {
        case Operation::Build: return "build";
        case Operation::Walk: return "walk";
        case Operation::Lookup: return "lookup";
        case Operation::Path: return "path";
        case Operation::Set: return "set";
        case Operation::Copy: return "copy";
        case Operation::Compare: return "compare";
        case Operation::Save: return "save";
        case Operation::Load: return "load";
        case Operation::Release: return "release";
    }
    return "";
}

std::string MakeFigureTable(const Request& request, const std::vector<Cell>& row) {
    std::string table = MakeHead(kOperationCount, " bytes in memory | bytes saved |");
    for (std::size_t system = 0; system < row.size(); ++system) {
        table += std::string("| ") + request.systems[system].name + " |";
        for (std::size_t i = 0; i < kOperationCount; ++i) {
            table += FormatFigure(row[system].figures[i]);
        }
        table += " " + Format(row[system].heldBytes, 1) + " | " + Format(row[system].savedBytes, 1) + " |\n";
    }
    return table;
}

std::string MakeCsv(const Request& request, const Cells& cells) {
    std::string csv =
        "heap,workload,system,operation,median_ns,lower_quartile_ns,upper_quartile_ns,samples,disturbed\n";
    const char* const heap = request.heap == Heap::Warm ? "warm," : "fresh,";
    for (std::size_t work = 0; work < cells.size(); ++work) {
        for (std::size_t system = 0; system < cells[work].size(); ++system) {
            const Cell& cell = cells[work][system];
            const std::string start =
                std::string(heap) + request.workloads[work].name + "," + request.systems[system].name + ",";
            for (std::size_t i = 0; i < kOperationCount; ++i) {
                const Figure& figure = cell.figures[i];
                if (figure.samples > 0) {
                    csv += start + GetName(static_cast<Operation>(i)) + "," + Format(figure.median, 3) + "," +
                           Format(figure.lowerQuartile, 3) + "," + Format(figure.upperQuartile, 3) + "," +
                           std::to_string(figure.samples) + (figure.disturbed ? ",yes\n" : ",no\n");
                }
            }
            csv += start + "bytes_in_memory," + Format(cell.heldBytes, 2) + ",,,1,no\n";
            csv += start + "bytes_saved," + Format(cell.savedBytes, 2) + ",,,1,no\n";
        }
    }
    return csv;
}

std::string MakeMarkdown(const Request& request, const Cells& cells) {
    std::string text = "Ratio to the best peer of each cell, geometric means:\n\n" + MakeRatioTable(request, cells);
    for (std::size_t work = 0; work < cells.size(); ++work) {
        text += std::string("\n") + request.workloads[work].name + ", " + request.workloads[work].title +
                ", ns a node:\n\n" + MakeFigureTable(request, cells[work]);
    }
    return text;
}

}  // namespace Peers
