#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <KivInspect/Annotate.h>
#include <KivInspect/Sink.h>

namespace KivInspect {

/// Puts the lines of an annotation in the order of the bytes: what is told of an item that goes on in the next block is known
/// only there, behind the end of this one.
class AnnotationLines {
public:
    AnnotationLines(Sink& sink, const AnnotateOptions& options);

    /// Bytes of the framing, with their meaning.
    void AddFraming(std::uint64_t offset, const std::uint8_t* bytes, std::size_t size, const std::string& meaning);
    /// Bytes of an item that goes on in the next block.
    void AddPiece(std::uint64_t offset, std::size_t size);
    /// An item as a whole; its last bytes, or all of them, end before `end`.
    void AddItem(std::uint64_t end, const std::uint8_t* bytes, std::size_t size, const std::string& meaning,
                 std::size_t indent);
    /// How many bytes of an item that goes on have been added.
    std::size_t GetPieceBytes() const noexcept;
    /// Hands over everything. An item that goes on must have been added.
    void Flush() { out_.Flush(); }

private:
    struct Piece {
        std::uint64_t offset;
        std::size_t size;
        std::string framing;  // the lines between this piece and the next
    };

    void Write(std::string& to, std::uint64_t offset, const std::uint8_t* bytes, std::size_t size,
               const std::string& meaning) const;

    BufferedSink out_;
    std::uint64_t from_;
    std::uint64_t to_;
    std::vector<Piece> pieces_;
};

}  // namespace KivInspect
