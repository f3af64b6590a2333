#include "format/Failure.h"

#include <KivGenerics/ResultCode.h>

namespace KivStorage {
namespace {

constexpr const char* kRestore = "The data are damaged: take them from a copy.";
constexpr const char* kOtherProgram = "Load the data with the program that saved them.";
constexpr const char* kFixCaller = "This is a mistake of the calling program.";
constexpr const char* kRaiseLimit = "If the data can be trusted, raise the limit.";

struct Sentence {
    std::int32_t code;
    const char* what;
    const char* todo;
};

constexpr Sentence kSentences[] = {
    {StorageNullPointer, "A null pointer was passed", kFixCaller},
    {StorageOutOfMemory, "There is not enough memory", "Free memory and try again."},
    {StorageAlreadyFinished, "The stream is finished", kFixCaller},
    {StorageNoOpenObject, "An object is ended, but none is open", kFixCaller},
    {StorageOpenObjects, "The data end while objects are open", "Whoever wrote them must end every object."},
    {StorageUnsupportedVariant, "The variant holds something else than a plain number",
     "Save its value in another way."},
    {StorageTextPending, "The units of a text must be read before anything else", kFixCaller},
    {StorageTextNotAnnounced, "The units of a text are read without its length, or not as many", kFixCaller},
    {StorageItemsLeft, "More data stand here than were read", kOtherProgram},

    {StorageNotASavedTree, "These data do not begin as saved trees do", "Check that it is the right file."},
    {StorageUnknownVersion, "The version of the format is not known", "Load the data with a newer release."},
    {StorageHeaderDamaged, "The header does not match its checksum", kRestore},
    {StorageTruncated, "The data end too early", "They are incomplete: take them from a copy."},
    {StorageBlockLength, "A block's length is out of range", kRestore},
    {StorageBlockDamaged, "A block does not match its checksum", kRestore},
    {StorageTrailerDamaged, "The trailer does not match its checksum", kRestore},
    {StorageTotalsDiffer, "The totals in the trailer are not those of the data", kRestore},
    {StorageTrailingBytes, "More bytes follow the end of the saved data",
     "Something was appended: take the data from a copy."},

    {StorageUnknownItem, "An item of unknown type stands here", "Load the data with a newer release."},
    {StorageItemCutOff, "The data end within an item", "Whoever wrote them must write whole items."},
    {StorageWrongItem, "A value of another type stands here", kOtherProgram},
    {StorageObjectOpens, "An object opens where a value was expected", kOtherProgram},
    {StorageObjectEnds, "The object ends where a value was expected", kOtherProgram},
    {StorageNoMoreItems, "The data end where a value was expected", kOtherProgram},
    {StorageValueStands, "A value stands where an object was expected", kOtherProgram},
    {StorageNestingTooDeep, "Objects are nested deeper than the limit", kRaiseLimit},
    {StorageTooManyBytes, "The data are longer than the limit", kRaiseLimit},
    {StorageTextTooLong, "A text is longer than the limit", kRaiseLimit},

    {StorageFileNotFound, "There is no such file", "Check its name."},
    {StorageNotAFile, "This is not a regular file", "Name a file."},
    {StorageFileNotOpened, "The file cannot be opened", "Check that you may read it."},
    {StorageFileNotRead, "The file cannot be read", "Check the disk it lies on."},
    {StorageFileNotCreated, "No temporary file can be made beside the file",
     "Check that its folder exists and that you may write there. The old file stands."},
    {StorageFileNotWritten, "The file cannot be written", "Check that there is room on the disk. The old file stands."},
    {StorageFileNotSynced, "The file cannot be made durable", "Check the disk. The old file stands."},
    {StorageFileNotReplaced, "The file cannot be put in the old one's place",
     "Check that you may write to its folder. The old file stands."},
    {StorageDirectoryNotSynced, "The file is saved, but its folder cannot be made durable",
     "Check the disk, and save again."},

    {StorageNoTree, "There is no tree to save", kFixCaller},
    {StorageUnsavedParts, "A save would lose or alter parts of this tree", "Change them, or save despite the losses."},
    {StorageTreeTooDeep, "The tree is nested too deep to be saved", "Make it flatter."},
    {StorageTreeRefused, "The tree refused what it was given", kOtherProgram},

    {KivGenerics::ResultNotImplemented, "Only a map can be saved as the root of a tree", "Put the root into a map."},
    {KivGenerics::ResultUnexpected, "A value was read where an object stands", kOtherProgram},
    {KivGenerics::ResultOutOfMemory, "There is not enough memory for a text", "Free memory and try again."},
    {KivGenerics::ArchiveTypeMismatch, "An object is missing, or is not the expected one", kOtherProgram},
    {KivGenerics::ArchiveStringTooLong, "A text has more than 256,000 units", kOtherProgram},
    {KivGenerics::ArchiveNestingTooDeep, "Vectors and maps are nested more than 1,000 levels deep", kOtherProgram},
};

std::string Compose(std::int32_t code, const std::string& place) {
    const auto text = [&place](const char* what, const char* todo) {
        return std::string(what) + (place.empty() ? "" : " (" + place + ")") + ". " + todo;
    };
    for (const Sentence& sentence : kSentences) {
        if (sentence.code == code) {
            return text(sentence.what, sentence.todo);
        }
    }
    if (code >= 0) {
        return "Nothing went wrong.";
    }
    constexpr char digits[] = "0123456789ABCDEF";
    std::string what = "The operation failed with code 0x";
    for (int shift = 28; shift >= 0; shift -= 4) {
        what += digits[(static_cast<std::uint32_t>(code) >> shift) & 15];
    }
    return text(what.c_str(), "Ask whoever answers this code.");
}

}  // namespace

Result Fail(std::int32_t code, const std::string& place) {
    return {code, Compose(code, place)};
}

Result FailQuietly(std::int32_t code, const char* place) noexcept {
    Result result{code, {}};
    try {
        result.sentence = Compose(code, place);
    } catch (...) {
        // The code alone must do.
    }
    return result;
}

std::string DescribeCode(std::int32_t code) {
    return Compose(code, {});
}

}  // namespace KivStorage
