// Uses the installed library that looks into trees: reads one from text, writes it as JSON, and compares.

#include <cstdio>

#include <KivInspect/Diff.h>
#include <KivInspect/JsonForm.h>
#include <KivInspect/LoadFile.h>

int main() {
    const auto loaded = KivInspect::LoadBytes("kivtext 1\nMap\n  0: Map\n    0: Integer 7\n", "the text");
    if (!loaded.result.Ok()) {
        std::puts(loaded.result.sentence.c_str());
        return 1;
    }
    KivInspect::StringSink json;
    KivInspect::WriteJson(loaded.tree.Get(), json);
    const auto again = KivInspect::LoadBytes(json.GetText(), "the JSON document");
    if (!again.result.Ok()) {
        std::puts(again.result.sentence.c_str());
        return 1;
    }
    const auto totals = KivInspect::Diff(loaded.tree.Get(), again.tree.Get(), {}, [](const auto&) { return true; });
    std::puts(totals.Any() ? "JSON gave another tree" : "KivInspect works");
    return totals.Any() ? 1 : 0;
}
