#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>

#include <KivBase/NoCopy.h>
#include <KivBase/Utf.h>
#include <KivCOMShared/BlockReadStream.h>
#include <KivCOMShared/BlockWriteStream.h>
#include <KivCOMShared/COrvReadArchive.h>
#include <KivCOMShared/COrvSizeArchive.h>
#include <KivCOMShared/COrvWriteArchive.h>
#include <gtest/gtest.h>

namespace KivPlatform::Testing {
namespace {

class RecordingArchive final : public KivCOMShared::COrvWriteArchive {
public:
    explicit RecordingArchive(bool& gone) : gone_(gone) {}
    ~RecordingArchive() override { gone_ = true; }
    std::int32_t WriteShort(std::uint16_t) override { return 0; }
    std::int32_t WriteDouble(double) override { return 0; }
    std::int32_t WriteGUID(const GUID&) override { return 0; }
    std::int32_t WriteLong(std::int32_t) override { return 0; }
    std::int32_t WriteInt64(std::int64_t) override { return 0; }
    std::int32_t WriteWideString(const char16_t* units, std::uint32_t length) override {
        text = KivBase::ToUtf8(units, length);
        return -17;
    }
    std::int32_t WriteVariant(const VARIANT*) override { return 0; }
    std::int32_t BeginObject(std::uint16_t) override { return 0; }
    std::int32_t EndObject() override { return 0; }
    std::string text;

private:
    bool& gone_;
};

class SizeRecorder final : public KivCOMShared::COrvSizeArchive {
public:
    void AddSizes(std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t) override {}
};

TEST(WriteArchiveTest, WriteStringWritesTheWholeTextAndPassesTheResultOn) {
    bool gone = false;
    RecordingArchive archive(gone);
    EXPECT_EQ(-17, archive.WriteString(KivBase::WString(u"a\0b", 3)));
    EXPECT_EQ(std::string("a\0b", 3), archive.text);
}

TEST(WriteArchiveTest, GoesThroughItsBase) {
    bool gone = false;
    std::unique_ptr<KivCOMShared::COrvWriteArchive>(new RecordingArchive(gone)).reset();
    EXPECT_TRUE(gone);
}

TEST(SizeArchiveTest, CountsTextsAndTheirUnits) {
    SizeRecorder archive;
    EXPECT_EQ(0U, archive.GetStrings());
    EXPECT_EQ(0U, archive.GetStringUnits());
    archive.SizeString(u"four");
    archive.SizeString(u"");
    archive.SizeString(KivBase::WString(u"a\0b", 3));
    EXPECT_EQ(3U, archive.GetStrings());
    EXPECT_EQ(7U, archive.GetStringUnits());
}

TEST(ArchiveInterfacesTest, ArchivesGoThroughTheirBaseAndStreamsWithTheirLastReference) {
    EXPECT_TRUE(std::has_virtual_destructor_v<KivCOMShared::COrvWriteArchive>);
    EXPECT_TRUE(std::has_virtual_destructor_v<KivCOMShared::COrvReadArchive>);
    EXPECT_TRUE(std::has_virtual_destructor_v<KivCOMShared::COrvSizeArchive>);
    EXPECT_FALSE(std::is_destructible_v<KivCOMShared::BlockWriteStream>);
    EXPECT_FALSE(std::is_destructible_v<KivCOMShared::BlockReadStream>);
    // The virtual table's layout is the interface: a virtual destructor would take slots of its own.
    EXPECT_FALSE(std::has_virtual_destructor_v<KivCOMShared::BlockWriteStream>);
    EXPECT_FALSE(std::has_virtual_destructor_v<KivCOMShared::BlockReadStream>);
}

class Unique : private KivBase::NoCopy {};

TEST(NoCopyTest, ADerivedClassIsNeitherCopiedNorMoved) {
    EXPECT_TRUE(std::is_default_constructible_v<Unique>);
    EXPECT_FALSE(std::is_copy_constructible_v<Unique>);
    EXPECT_FALSE(std::is_copy_assignable_v<Unique>);
    EXPECT_FALSE(std::is_move_constructible_v<Unique>);
    EXPECT_FALSE(std::is_move_assignable_v<Unique>);
    EXPECT_EQ(1U, sizeof(Unique));
}

}  // namespace
}  // namespace KivPlatform::Testing
