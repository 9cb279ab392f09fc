// The exported tables and images as they lie in the library's file.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <link.h>

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>

#include "kelvo.h"

namespace {

/// The library itself, whatever copies of its data a program may hold.
class Library {
 public:
  Library() {
    Dl_info info{};
    void* const function = dlsym(RTLD_DEFAULT, "SetLensType");
    if (function == nullptr || dladdr(function, &info) == 0) return;
    handle_ = dlopen(info.dli_fname, RTLD_LAZY | RTLD_NOLOAD);
  }
  ~Library() {
    if (handle_ != nullptr) dlclose(handle_);
  }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  const std::uint8_t* address(const char* name) const {
    return handle_ == nullptr ? nullptr : static_cast<const std::uint8_t*>(dlsym(handle_, name));
  }

  std::size_t size(const char* name) const {
    const std::uint8_t* const symbol_address = address(name);
    Dl_info info{};
    void* entry = nullptr;
    if (symbol_address == nullptr) return 0;
    if (dladdr1(symbol_address, &info, &entry, RTLD_DL_SYMENT) == 0 || entry == nullptr) return 0;
    if (info.dli_sname == nullptr || std::string(info.dli_sname) != name) return 0;
    return static_cast<const ElfW(Sym)*>(entry)->st_size;
  }

 private:
  void* handle_ = nullptr;
};

/// The access rights of the memory at this address ("rw-p"), as the kernel tells them.
std::string rights_at(const void* address) {
  const auto wanted = reinterpret_cast<std::uintptr_t>(address);
  std::ifstream maps("/proc/self/maps");
  std::string line;
  while (std::getline(maps, line)) {
    const std::size_t dash = line.find('-');
    const std::size_t blank = line.find(' ');
    const std::uintptr_t begin = std::stoull(line.substr(0, dash), nullptr, 16);
    const std::uintptr_t end = std::stoull(line.substr(dash + 1, blank - dash - 1), nullptr, 16);
    if (begin <= wanted && wanted < end) return line.substr(blank + 1, 4);
  }
  return "";
}

constexpr const char* rates[5] = {"PPS_512uStepPhase1320", "PPS_512uStepPhase", "PPS_1_2Phase",
                                  "PPS_2_2Phase", "PPS_1_2Phase_800"};

TEST(DataSymbols, OfTheFiveRatesLieOneAfterTheOther) {
  const Library library;
  const std::uint8_t* const first = library.address(rates[0]);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(library.address(rates[1]), first + 1024);
  EXPECT_EQ(library.address(rates[2]), first + 2048);
  EXPECT_EQ(library.address(rates[3]), first + 3072);
  EXPECT_EQ(library.address(rates[4]), first + 4096);
}

TEST(DataSymbols, OfTheFiveRatesHaveTheSizeOfOneArrayEach) {
  const Library library;
  for (const char* const rate : rates) EXPECT_EQ(library.size(rate), 1024U) << rate;
}

TEST(DataSymbols, OfTheFiveRatesAreWritable) {
  const Library library;
  for (const char* const rate : rates) {
    ASSERT_NE(library.address(rate), nullptr) << rate;
    EXPECT_EQ(rights_at(library.address(rate)).substr(0, 2), "rw") << rate;
    EXPECT_EQ(rights_at(library.address(rate) + 1023).substr(0, 2), "rw") << rate;
  }
}

TEST(DataSymbols, OfTheSpeedTableHaveRoomForItsLastRowAndAreReadOnly) {
  const Library library;
  EXPECT_EQ(library.size("SpeedTable"), 2048U);
  ASSERT_NE(library.address("SpeedTable"), nullptr);
  EXPECT_EQ(rights_at(library.address("SpeedTable")).substr(0, 2), "r-");
  EXPECT_EQ(rights_at(library.address("SpeedTable") + 2047).substr(0, 2), "r-");
}

TEST(DataSymbols, OfTheProgramImagesAreReadOnlyAndHaveTheirSizes) {
  struct Image {
    const char* name;
    std::size_t size;
  };
  constexpr Image images[9] = {
      {"CORVO_PROGRAM_DATA_DE015", 33276}, {"CORVO_PROGRAM3_DATA_DE015", 1228},
      {"CORVO_PROGRAM2_DATA_DE015", 944},  {"CORVO_PROGRAM_DATA_DF033", 35000},
      {"CORVO_PROGRAM3_DATA_DF033", 1160}, {"CORVO_PROGRAM2_DATA_DF033", 648},
      {"CORVO_PROGRAM_DATA_T5391", 33000}, {"CORVO_PROGRAM3_DATA_T5391", 1160},
      {"CORVO_PROGRAM2_DATA_T5391", 648},
  };
  const Library library;
  for (const Image& image : images) {
    ASSERT_NE(library.address(image.name), nullptr) << image.name;
    EXPECT_EQ(library.size(image.name), image.size) << image.name;
    EXPECT_EQ(rights_at(library.address(image.name)).substr(0, 2), "r-") << image.name;
  }
}

}  // namespace
