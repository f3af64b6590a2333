#include "kivtree/OutputFile.h"

#include <system_error>

namespace KivTree {
namespace {

namespace fs = std::filesystem;

constexpr const char* CheckFolder = "Check that its folder exists and that you may write there.";
constexpr const char* CheckDisk = "Check that there is room on the disk.";

}  // namespace

OutputFile::OutputFile(Context& context, const std::string& name, bool force) : context_(context), name_(name) {
    if (name == "-") {
        return;
    }
    target_ = fs::u8path(name);
    std::error_code error;
    const fs::file_status status = fs::status(target_, error);
    if (fs::is_directory(status)) {
        throw Trouble("file \"" + name + "\" is a folder. Name a file.");
    }
    if (fs::is_regular_file(status) && !force) {
        throw Trouble("file \"" + name + "\" exists. -f overwrites it.");
    }
    replaces_ = fs::exists(status);
    if (fs::is_symlink(fs::symlink_status(target_, error)) && replaces_) {
        target_ = fs::canonical(target_);  // the link stays, what it names is replaced
    }
    scratch_ = std::make_unique<ScratchFile>(target_);
    Check(scratch_->Open(), CheckFolder);
}

void OutputFile::Check(const std::string& problem, const char* advice) const {
    if (!problem.empty()) {
        throw Trouble("file \"" + name_ + "\" cannot be written: " + problem + ". " + advice);
    }
}

void OutputFile::Write(std::string_view bytes) {
    written_ += bytes.size();
    if (scratch_) {
        Check(scratch_->Write(bytes), CheckDisk);
    } else {
        context_.Out().Write(bytes);
    }
}

void OutputFile::Finish() {
    if (scratch_ && !finished_) {
        finished_ = true;
        Check(scratch_->Finish(), CheckDisk);
    }
}

ProgressBar OutputFile::NewBar(const std::string& step) const {
    return scratch_ ? context_.NewBar(step + " " + name_) : context_.NewBarBesideResults(step);
}

fs::path OutputFile::GetScratchPath() const {
    return scratch_ ? scratch_->GetPath() : fs::path();
}

void OutputFile::Commit() {
    Finish();
    if (scratch_) {
        Check(scratch_->Place(replaces_), CheckFolder);
        scratch_.reset();
    }
}

}  // namespace KivTree
