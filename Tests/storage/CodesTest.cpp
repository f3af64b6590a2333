#include <set>

#include <KivStorage/Result.h>
#include <gtest/gtest.h>

using namespace KivStorage;

namespace {

struct CodeRow {
    std::int32_t code;
    std::uint32_t number;
    const char* sentence;
};

const CodeRow kRows[] = {
    {StorageNullPointer, 0xA0530001, "A null pointer was passed. This is a mistake of the calling program."},
    {StorageOutOfMemory, 0xA0530002, "There is not enough memory. Free memory and try again."},
    {StorageAlreadyFinished, 0xA0530003, "The stream is finished. This is a mistake of the calling program."},
    {StorageNoOpenObject, 0xA0530004,
     "An object is ended, but none is open. This is a mistake of the calling program."},
    {StorageOpenObjects, 0xA0530005, "The data end while objects are open. Whoever wrote them must end every object."},
    {StorageUnsupportedVariant, 0xA0530006,
     "The variant holds something else than a plain number. Save its value in another way."},
    {StorageTextPending, 0xA0530007,
     "The units of a text must be read before anything else. This is a mistake of the calling program."},
    {StorageTextNotAnnounced, 0xA0530008,
     "The units of a text are read without its length, or not as many. This is a mistake of the calling program."},
    {StorageItemsLeft, 0xA0530009,
     "More data stand here than were read. Load the data with the program that saved them."},
    {StorageNotASavedTree, 0xA0530010, "These data do not begin as saved trees do. Check that it is the right file."},
    {StorageUnknownVersion, 0xA0530011, "The version of the format is not known. Load the data with a newer release."},
    {StorageHeaderDamaged, 0xA0530012,
     "The header does not match its checksum. The data are damaged: take them from a copy."},
    {StorageTruncated, 0xA0530013, "The data end too early. They are incomplete: take them from a copy."},
    {StorageBlockLength, 0xA0530014, "A block's length is out of range. The data are damaged: take them from a copy."},
    {StorageBlockDamaged, 0xA0530015,
     "A block does not match its checksum. The data are damaged: take them from a copy."},
    {StorageTrailerDamaged, 0xA0530016,
     "The trailer does not match its checksum. The data are damaged: take them from a copy."},
    {StorageTotalsDiffer, 0xA0530017,
     "The totals in the trailer are not those of the data. The data are damaged: take them from a copy."},
    {StorageTrailingBytes, 0xA0530018,
     "More bytes follow the end of the saved data. Something was appended: take the data from a copy."},
    {StorageUnknownItem, 0xA0530020, "An item of unknown type stands here. Load the data with a newer release."},
    {StorageItemCutOff, 0xA0530021, "The data end within an item. Whoever wrote them must write whole items."},
    {StorageWrongItem, 0xA0530022,
     "A value of another type stands here. Load the data with the program that saved them."},
    {StorageObjectOpens, 0xA0530023,
     "An object opens where a value was expected. Load the data with the program that saved them."},
    {StorageObjectEnds, 0xA0530024,
     "The object ends where a value was expected. Load the data with the program that saved them."},
    {StorageNoMoreItems, 0xA0530025,
     "The data end where a value was expected. Load the data with the program that saved them."},
    {StorageValueStands, 0xA0530026,
     "A value stands where an object was expected. Load the data with the program that saved them."},
    {StorageNestingTooDeep, 0xA0530027,
     "Objects are nested deeper than the limit. If the data can be trusted, raise the limit."},
    {StorageTooManyBytes, 0xA0530028,
     "The data are longer than the limit. If the data can be trusted, raise the limit."},
    {StorageTextTooLong, 0xA0530029, "A text is longer than the limit. If the data can be trusted, raise the limit."},
    {StorageFileNotFound, 0xA0530030, "There is no such file. Check its name."},
    {StorageNotAFile, 0xA0530031, "This is not a regular file. Name a file."},
    {StorageFileNotOpened, 0xA0530032, "The file cannot be opened. Check that you may read it."},
    {StorageFileNotRead, 0xA0530033, "The file cannot be read. Check the disk it lies on."},
    {StorageFileNotCreated, 0xA0530034,
     "No temporary file can be made beside the file. Check that its folder exists and that you may write there. "
     "The old file stands."},
    {StorageFileNotWritten, 0xA0530035,
     "The file cannot be written. Check that there is room on the disk. The old file stands."},
    {StorageFileNotSynced, 0xA0530036, "The file cannot be made durable. Check the disk. The old file stands."},
    {StorageFileNotReplaced, 0xA0530037,
     "The file cannot be put in the old one's place. Check that you may write to its folder. The old file stands."},
    {StorageDirectoryNotSynced, 0xA0530038,
     "The file is saved, but its folder cannot be made durable. Check the disk, and save again."},
    {StorageNoTree, 0xA0530040, "There is no tree to save. This is a mistake of the calling program."},
    {StorageUnsavedParts, 0xA0530041,
     "A save would lose or alter parts of this tree. Change them, or save despite the losses."},
    {StorageTreeTooDeep, 0xA0530042, "The tree is nested too deep to be saved. Make it flatter."},
    {StorageTreeRefused, 0xA0530043,
     "The tree refused what it was given. Load the data with the program that saved them."},
    {static_cast<std::int32_t>(0x80004001), 0x80004001,
     "Only a map can be saved as the root of a tree. Put the root into a map."},
    {static_cast<std::int32_t>(0x8000FFFF), 0x8000FFFF,
     "A value was read where an object stands. Load the data with the program that saved them."},
    {static_cast<std::int32_t>(0x8007000E), 0x8007000E,
     "There is not enough memory for a text. Free memory and try again."},
    {static_cast<std::int32_t>(0x8004119A), 0x8004119A,
     "An object is missing, or is not the expected one. Load the data with the program that saved them."},
    {static_cast<std::int32_t>(0x80044AEA), 0x80044AEA,
     "A text has more than 256,000 units. Load the data with the program that saved them."},
    {static_cast<std::int32_t>(0x800703E9), 0x800703E9,
     "Vectors and maps are nested more than 1,000 levels deep. Load the data with the program that saved them."},
};

TEST(CodesTest, EveryCodeHasItsNumberAndItsSentence) {
    for (const CodeRow& row : kRows) {
        EXPECT_EQ(row.number, static_cast<std::uint32_t>(row.code)) << row.sentence;
        EXPECT_EQ(row.sentence, DescribeCode(row.code));
        EXPECT_LT(row.code, 0);
    }
    EXPECT_EQ(47u, std::size(kRows));
}

TEST(CodesTest, NoTwoCodesShareASentence) {
    std::set<std::string> sentences;
    for (const CodeRow& row : kRows) {
        EXPECT_TRUE(sentences.insert(DescribeCode(row.code)).second) << row.sentence;
    }
}

TEST(CodesTest, AnUnknownFailureIsNamedByItsNumber) {
    EXPECT_EQ("The operation failed with code 0x80070005. Ask whoever answers this code.",
              DescribeCode(static_cast<std::int32_t>(0x80070005)));
}

TEST(CodesTest, ASuccessIsNamedAsOne) {
    EXPECT_EQ("Nothing went wrong.", DescribeCode(StorageSuccess));
    EXPECT_EQ("Nothing went wrong.", DescribeCode(StorageNoObject));
    EXPECT_TRUE(Result{}.Ok());
    EXPECT_TRUE((Result{StorageNoObject, {}}.Ok()));
    EXPECT_FALSE((Result{StorageTruncated, {}}.Ok()));
}

}  // namespace
