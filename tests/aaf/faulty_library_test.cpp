// Imports through a library of another make: one that throws, and one that says of its
// files what is not so.
#include "tests/aaf/faulty_library.h"

#include <filesystem>
#include <limits>
#include <new>

#include "aaf/aaf_dll.h"
#include "host/dynamic_libraries.h"
#include "tests/aaf/import_fixture.h"

using namespace support;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Thrown = FaultyLibrary::Thrown;

class FaultyLibraryTest : public AafImportTest {
 protected:
  FaultyLibraryTest() {
    host.libraries.redirected["libAAFCOAPI.so"] = EDL_FAULTY_LIBRARY;
    std::uint32_t error = 0;
    loaded_ = system_.load(text_from_utf8(EDL_FAULTY_LIBRARY).c_str(), error);
    void* const entry =
        loaded_ == nullptr ? nullptr : system_.entry(loaded_, "faulty_library", error);
    if (entry == nullptr) throw std::runtime_error("no library of faults");
    library = reinterpret_cast<FaultyLibrary* (*)()>(entry)();
    start({});
  }
  ~FaultyLibraryTest() override {
    importer.reset();
    EXPECT_EQ(unload_aaf_library(), 0);
    EXPECT_EQ(library->objects(), 0);
    std::uint32_t error = 0;
    EXPECT_TRUE(system_.unload(loaded_, error));
  }

  // A new import of a library that has done nothing yet.
  void start(FaultyLibrary anew) {
    anew.objects = library->objects;
    *library = std::move(anew);
    importer = std::make_unique<CAAFEdlFile>(&edl);
    delete_all(*edl.get_locator_list());
    std::filesystem::remove(report_path());
  }
  [[nodiscard]] std::string report_path() const { return folder.file("AAFImportlog_x.htm"); }
  [[nodiscard]] std::string copied(int item) const {
    return read_file(audio_folder->path + "/" + std::to_string(item) + "_0_0.wav");
  }
  void expect_nothing_open() const {
    EXPECT_EQ(library->closed, library->opened);
    EXPECT_EQ(library->objects(), 0);
    for (const auto& window : host.windows.windows)
      EXPECT_TRUE(window->closed);
  }

  FaultyLibrary* library = nullptr;

 private:
  SystemLibraries system_;
  void* loaded_ = nullptr;
};

// Eight bytes of 1.
constexpr const char* left_mark = "LEFT_LOCATOR\t\t\t 72340172838076673";
constexpr const char* right_mark = "RIGHT_LOCATOR\t\t 72340172838076673";

TEST_F(FaultyLibraryTest, WithoutAFaultItIsRead) {
  start({.audio = {{10, 10}, {20, 20}}});
  ASSERT_EQ(import_path(path), 100);
  EXPECT_THAT(locators(), ElementsAre(left_mark, right_mark));
  EXPECT_EQ(aaf().frame_rate(), 1);
  EXPECT_EQ(copied(0), std::string(10, 'a'));
  EXPECT_EQ(copied(1), std::string(20, 'b'));
  EXPECT_EQ(library->opened, 1);
  expect_nothing_open();
}

class ThrowingLibraryTest : public FaultyLibraryTest, public testing::WithParamInterface<Thrown> {};
INSTANTIATE_TEST_SUITE_P(, ThrowingLibraryTest,
                         testing::Values(Thrown::standard, Thrown::number, Thrown::own));

// Each call in its turn, from the one that opens the file to the one that closes it.
TEST_P(ThrowingLibraryTest, AnyCallThatThrowsEndsTheImport) {
  const FaultyLibrary sound{.audio = {{10, 10}, {20, 20}}};
  start(sound);
  ASSERT_EQ(import_path(path), 100);
  const long calls = library->calls;
  EXPECT_GT(calls, 100);
  for (long call = 1; call <= calls; ++call) {
    start(sound);
    library->throw_at = call;
    library->thrown = GetParam();
    result_code code = result::import_complete;
    ASSERT_NO_THROW(code = import_path(path)) << call;
    EXPECT_EQ(code, 11) << call;
    EXPECT_GE(library->calls, call);
    EXPECT_EQ(library->opened, call == 1 ? 0 : 1);
    EXPECT_THAT(locators(), IsEmpty()) << call;
    EXPECT_TRUE(file_exists(report_path())) << call;
    expect_nothing_open();
  }
}

// That memory ran out is told to the program, but the file does not stay open.
TEST_F(FaultyLibraryTest, WithoutMemoryTheFileIsClosed) {
  const FaultyLibrary sound{.audio = {{10, 10}}};
  start(sound);
  ASSERT_EQ(import_path(path), 100);
  // All but the call that opens the file and the one that closes it.
  const long last = library->calls - 1;
  for (long call = 2; call <= last; ++call) {
    start(sound);
    library->throw_at = call;
    library->thrown = Thrown::memory;
    EXPECT_THROW(static_cast<void>(import_path(path)), std::bad_alloc) << call;
    EXPECT_THAT(locators(), IsEmpty());
    expect_nothing_open();
  }
}

// The first ends where its bytes do, and the second is copied all the same.
TEST_F(FaultyLibraryTest, AudioOfFewerBytesThanAreSaid) {
  constexpr std::int64_t block = 0x200000;
  constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
  const FaultyLibrary::Audio rows[] = {{100, 40},          {1, 0},     {block, block - 1},
                                       {3 * block, block}, {most, 40}, {most, 0}};
  for (const FaultyLibrary::Audio& row : rows) {
    start({.audio = {row, {50, 50}}});
    EXPECT_EQ(import_path(path), 100) << row.size;
    EXPECT_TRUE(copied(0) == std::string(static_cast<std::size_t>(row.held), 'a')) << row.size;
    EXPECT_EQ(copied(1), std::string(50, 'b')) << row.size;
    EXPECT_THAT(locators(), ElementsAre(left_mark, right_mark));
    expect_nothing_open();
  }
}

TEST_F(FaultyLibraryTest, AudioOfLessThanNoBytes) {
  start({.audio = {{-1, 40}, {std::numeric_limits<std::int64_t>::min(), 40}, {50, 50}}});
  EXPECT_EQ(import_path(path), 100);
  EXPECT_EQ(copied(0), "");
  EXPECT_EQ(copied(1), "");
  EXPECT_EQ(copied(2), std::string(50, 'c'));
}

TEST_F(FaultyLibraryTest, AudioWhoseFormIsNotToldEndsTheImport) {
  start({.audio = {{50, 50}}, .described = false});
  EXPECT_EQ(import_path(path), 11);
  EXPECT_THAT(locators(), IsEmpty());
  expect_nothing_open();
}

// Slots are walked as long as there are any, and no memory is taken for their number.
TEST_F(FaultyLibraryTest, SlotsThatAreCountedButNotThere) {
  start({.slot_count = 0xFFFFFFFF});
  EXPECT_EQ(import_path(path), 100);
  EXPECT_THAT(locators(), ElementsAre(left_mark, right_mark));
  EXPECT_LT(library->calls, 1000);
  expect_nothing_open();
}

// Read up to a mebibyte, in which nothing ends them.
TEST_F(FaultyLibraryTest, TextsOfAnyLength) {
  struct Row {
    std::uint32_t bytes;
    std::intptr_t characters;
  };
  constexpr Row rows[] = {{0, 0},        {3, 0},         {4, 1},
                          {7, 1},        {400, 100},     {0x100000, 0x40000},
                          {0x100001, 0}, {0xFFFFFFFF, 0}};
  for (const Row& row : rows) {
    start({.text_bytes = row.bytes});
    EXPECT_EQ(import_path(path), 100) << row.bytes;
    ASSERT_NE(aaf().report(), nullptr);
    EXPECT_EQ(aaf().report()->company_name.GetLength(), row.characters) << row.bytes;
    EXPECT_EQ(aaf().report()->product_name.GetLength(), row.characters) << row.bytes;
    expect_nothing_open();
  }
}

TEST_F(FaultyLibraryTest, MarksOfAnotherTypeAreNone) {
  for (const std::uint32_t size : {0U, 1U, 2U, 4U, 7U, 9U, 16U, 0xFFFFFFFFU}) {
    start({.mark_size = size});
    EXPECT_EQ(import_path(path), 100);
    EXPECT_THAT(locators(), IsEmpty()) << size;
    expect_nothing_open();
  }
}

}  // namespace
