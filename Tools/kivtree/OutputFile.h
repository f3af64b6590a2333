#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include <KivInspect/Sink.h>

#include "kivtree/Context.h"
#include "kivtree/system/ScratchFile.h"

namespace KivTree {

/// A file that a verb makes, in one step: until Commit nothing stands under its name but what stood there before. "-" is
/// standard output. An interrupted run leaves nothing behind.
class OutputFile final : public KivInspect::Sink {
public:
    /// Throws Trouble when the file exists, unless `force`, and when nothing can be made beside it.
    OutputFile(Context& context, const std::string& name, bool force);

    /// Throws Trouble.
    void Write(std::string_view bytes) override;
    /// Makes what was written durable but does not yet give it its name, so that it can be read back. Throws Trouble.
    void Finish();
    /// How many bytes have been written.
    std::uint64_t GetWritten() const noexcept { return written_; }
    /// A bar for a step, "writing" or "checking", of making this file.
    ProgressBar NewBar(const std::string& step) const;
    /// Where the bytes are until Commit; empty for standard output and for what is no regular file.
    std::filesystem::path GetScratchPath() const;
    /// Finishes, and puts the file in its place. Throws Trouble.
    void Commit();

private:
    void Check(const std::string& problem, const char* advice) const;

    Context& context_;
    std::string name_;
    std::filesystem::path target_;
    std::uint64_t written_ = 0;
    bool replaces_ = false;
    bool finished_ = false;
    std::unique_ptr<ScratchFile> scratch_;  // none for standard output
};

}  // namespace KivTree
