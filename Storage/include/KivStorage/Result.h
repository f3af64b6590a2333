#pragma once

#include <cstdint>
#include <string>

#include <KivStorage/Export.h>

namespace KivStorage {

/// One code for each way to fail. All are negative, as every failure in the library is.
///
/// The numbers are kept: a host may log them.
enum StorageCode : std::int32_t {
    StorageSuccess = 0,
    /// What a read stream answers to GetObjectTag where no further object follows; no failure.
    StorageNoObject = 1,

    // The caller's use of a stream.
    StorageNullPointer = -0x5FACFFFF,         ///< 0xA0530001
    StorageOutOfMemory = -0x5FACFFFE,         ///< 0xA0530002
    StorageAlreadyFinished = -0x5FACFFFD,     ///< 0xA0530003, a call after Finish or Commit
    StorageNoOpenObject = -0x5FACFFFC,        ///< 0xA0530004, an object is ended where none is open
    StorageOpenObjects = -0x5FACFFFB,         ///< 0xA0530005, the end is reached with objects still open
    StorageUnsupportedVariant = -0x5FACFFFA,  ///< 0xA0530006, a variant that holds no plain number
    StorageTextPending = -0x5FACFFF9,  ///< 0xA0530007, something else is read between a text's length and its units
    StorageTextNotAnnounced = -0x5FACFFF8,  ///< 0xA0530008, units are read without their length, or in another number
    StorageItemsLeft = -0x5FACFFF7,  ///< 0xA0530009, Finish before everything was read

    // The framing.
    StorageNotASavedTree = -0x5FACFFF0,  ///< 0xA0530010, other data
    StorageUnknownVersion = -0x5FACFFEF,  ///< 0xA0530011
    StorageHeaderDamaged = -0x5FACFFEE,  ///< 0xA0530012
    StorageTruncated = -0x5FACFFED,  ///< 0xA0530013
    StorageBlockLength = -0x5FACFFEC,  ///< 0xA0530014, longer than a block can be
    StorageBlockDamaged = -0x5FACFFEB,  ///< 0xA0530015
    StorageTrailerDamaged = -0x5FACFFEA,  ///< 0xA0530016
    StorageTotalsDiffer = -0x5FACFFE9,  ///< 0xA0530017
    StorageTrailingBytes = -0x5FACFFE8,  ///< 0xA0530018

    // The items.
    StorageUnknownItem = -0x5FACFFE0,  ///< 0xA0530020
    StorageItemCutOff = -0x5FACFFDF,  ///< 0xA0530021
    StorageWrongItem = -0x5FACFFDE,  ///< 0xA0530022, a value of another type stands here
    StorageObjectOpens = -0x5FACFFDD,  ///< 0xA0530023, a value is read where an object opens
    StorageObjectEnds = -0x5FACFFDC,  ///< 0xA0530024, a value is read where an object ends
    StorageNoMoreItems = -0x5FACFFDB,  ///< 0xA0530025, a value is read after the last item
    StorageValueStands = -0x5FACFFDA,  ///< 0xA0530026, an object is asked for where a value stands
    StorageNestingTooDeep = -0x5FACFFD9,  ///< 0xA0530027
    StorageTooManyBytes = -0x5FACFFD8,  ///< 0xA0530028
    StorageTextTooLong = -0x5FACFFD7,  ///< 0xA0530029

    // The file.
    StorageFileNotFound = -0x5FACFFD0,  ///< 0xA0530030
    StorageNotAFile = -0x5FACFFCF,  ///< 0xA0530031, a folder, a device or the like
    StorageFileNotOpened = -0x5FACFFCE,  ///< 0xA0530032
    StorageFileNotRead = -0x5FACFFCD,  ///< 0xA0530033
    StorageFileNotCreated = -0x5FACFFCC,  ///< 0xA0530034
    StorageFileNotWritten = -0x5FACFFCB,  ///< 0xA0530035
    StorageFileNotSynced = -0x5FACFFCA,  ///< 0xA0530036
    StorageFileNotReplaced = -0x5FACFFC9,  ///< 0xA0530037
    StorageDirectoryNotSynced = -0x5FACFFC8,  ///< 0xA0530038

    // The tree.
    StorageNoTree = -0x5FACFFC0,  ///< 0xA0530040
    StorageUnsavedParts = -0x5FACFFBF,  ///< 0xA0530041
    StorageTreeTooDeep = -0x5FACFFBE,  ///< 0xA0530042, too deep for the stack of a save
    StorageTreeRefused = -0x5FACFFBD,  ///< 0xA0530043, the tree threw
};

/// How an operation ended: a code of StorageCode, of KivGenerics/ResultCode.h or of a stream, and a sentence for people, in
/// UTF-8, that names the place and what to do. The sentence is empty for a success, and when there was no memory for it.
struct Result {
    std::int32_t code = StorageSuccess;
    std::string sentence;

    bool Ok() const noexcept { return code >= 0; }
};

/// What a code means and what to do about it, without a place. Throws std::bad_alloc.
KIV_STORAGE_EXPORT std::string DescribeCode(std::int32_t code);

}  // namespace KivStorage
