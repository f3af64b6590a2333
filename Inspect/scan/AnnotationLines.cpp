#include "scan/AnnotationLines.h"

#include <algorithm>

namespace KivInspect {
namespace {

constexpr std::size_t BytesInLine = 17;  // a GUID with its type
constexpr std::size_t MeaningColumn = 10 + 3 * BytesInLine;
constexpr std::size_t MaxIndent = 40;

void AppendHex(std::string& text, std::uint64_t value, int digits) {
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) {
        text += "0123456789ABCDEF"[(value >> shift) & 15U];
    }
}

}  // namespace

AnnotationLines::AnnotationLines(Sink& sink, const AnnotateOptions& options)
    : out_(sink), from_(options.from), to_(options.to) {}

/// The meaning stands in the first line of what takes several.
void AnnotationLines::Write(std::string& to, std::uint64_t offset, const std::uint8_t* bytes, std::size_t size,
                            const std::string& meaning) const {
    std::size_t at = 0;
    do {
        const std::size_t count = std::min(size - at, BytesInLine);
        if (offset + at + std::max<std::size_t>(count, 1) > from_ && offset + at < to_) {
            std::string line;
            AppendHex(line, offset + at, offset + at > 0xFFFFFFFF ? 12 : 8);
            line += ' ';
            for (std::size_t i = 0; i < count; ++i) {
                line += ' ';
                AppendHex(line, bytes[at + i], 2);
            }
            if (at == 0) {
                line.resize(std::max(line.size() + 2, MeaningColumn + 2), ' ');
                line += meaning;
            }
            to += line + '\n';
        }
        at += count;
    } while (at < size);
}

void AnnotationLines::AddFraming(std::uint64_t offset, const std::uint8_t* bytes, std::size_t size,
                                 const std::string& meaning) {
    Write(pieces_.empty() ? out_.GetText() : pieces_.back().framing, offset, bytes, size, meaning);
    out_.FlushWhenFull();
}

void AnnotationLines::AddPiece(std::uint64_t offset, std::size_t size) {
    pieces_.push_back({offset, size, {}});
}

std::size_t AnnotationLines::GetPieceBytes() const noexcept {
    std::size_t size = 0;
    for (const Piece& piece : pieces_) {
        size += piece.size;
    }
    return size;
}

void AnnotationLines::AddItem(std::uint64_t end, const std::uint8_t* bytes, std::size_t size,
                              const std::string& meaning, std::size_t indent) {
    const std::string words = std::string(std::min(2 * indent, MaxIndent), ' ') + meaning;
    std::size_t done = 0;
    for (const Piece& piece : pieces_) {
        Write(out_.GetText(), piece.offset, bytes + done, piece.size, done == 0 ? words : "  and on");
        out_.GetText() += piece.framing;
        done += piece.size;
    }
    if (done < size) {
        Write(out_.GetText(), end - (size - done), bytes + done, size - done, done == 0 ? words : "  and on");
    }
    pieces_.clear();
    out_.FlushWhenFull();
}

}  // namespace KivInspect
