#include <KivInspect/Salvage.h>

namespace KivInspect {
namespace {

std::string Shown(const std::string& key) {
    return key.empty() ? "the root" : key;
}

std::string Hex(std::uint8_t byte) {
    constexpr char digits[] = "0123456789ABCDEF";
    return {digits[byte >> 4], digits[byte & 15]};
}

}  // namespace

void WriteSalvage(const SalvageResult& result, Sink& sink) {
    std::string text;
    for (const Repair& repair : result.repairs) {
        text += "repaired: byte " + std::to_string(repair.offset) + " was " + Hex(repair.was) + " and is " +
                Hex(repair.is) + ", as the checksum proves\n";
    }
    for (const LostNodes& lost : result.lost) {
        text += "lost: " + Shown(lost.first);
        if (lost.count > 1) {
            text += " to " + lost.last + ", " + std::to_string(lost.count) + " nodes and everything below them";
        }
        text += (lost.note.empty() ? "" : (lost.count > 1 ? "; " : " ") + lost.note) + "\n";
    }
    text += "read: " + std::to_string(result.nodes) + (result.nodes == 1 ? " node\n" : " nodes\n");
    sink.Write(text);
}

}  // namespace KivInspect
