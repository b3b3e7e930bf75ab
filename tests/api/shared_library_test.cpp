// The calls of the shared library, loaded at run time as a host does that knows only the public header.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "support/test_support.h"
#include "talix/talix.h"

namespace {

// The library in a name space of its own, so that its records are not those of the tests. The sanitizers cannot
// be loaded a second time: with them the library stands beside the tests, whose records it does not see.
void* load_library() {
#if defined(__SANITIZE_ADDRESS__)
  return ::dlopen(TALIX_TEST_LIBRARY, RTLD_NOW | RTLD_LOCAL);
#else
  return ::dlmopen(LM_ID_NEWLM, TALIX_TEST_LIBRARY, RTLD_NOW | RTLD_LOCAL);
#endif
}

class LoadedLibrary {
 public:
  LoadedLibrary() : handle_(load_library()) {}
  ~LoadedLibrary() {
    if (handle_ != nullptr) ::dlclose(handle_);
  }
  LoadedLibrary(const LoadedLibrary&) = delete;
  LoadedLibrary& operator=(const LoadedLibrary&) = delete;
  [[nodiscard]] bool loaded() const { return handle_ != nullptr; }

  template <class Call>
  Call* call(const char* name) const {
    return reinterpret_cast<Call*>(::dlsym(handle_, name));
  }

 private:
  void* handle_;
};

#define TALIX_CALL_OF(library, name) (library).call<decltype(name)>(#name)

class SharedLibraryCalls : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(library.loaded()) << ::dlerror();
    install(talix::test::install_directory());
    const std::int32_t zero = 0;
    const std::int32_t nowhere = -1;
    TALIX_CALL_OF(library, SETTALIXUSAGE)(&zero, &zero, &nowhere);
  }

  void install(const std::string& directory) const {
    const auto length = static_cast<std::int32_t>(directory.size());
    TALIX_CALL_OF(library, SETTALIXINSTALL)(directory.c_str(), length, &length);
  }

  LoadedLibrary library;
};

TEST_F(SharedLibraryCalls, CatalogueOfAllAndOfOneAgree) {
  constexpr std::size_t records = TALIX_CATALOGUE_RECORDS;
  std::vector<float> critt(records), critp(records), molwt(records), apbpt(records), frzpt(records),
      heatc(records);
  std::string names(records * TALIX_NAME_LENGTH, '?');
  std::int32_t count = 0;
  TALIX_CALL_OF(library, GETTALIXPROPS)
  (&count, critt.data(), critp.data(), molwt.data(), apbpt.data(), frzpt.data(), heatc.data(), names.data(),
   TALIX_NAME_LENGTH);
  EXPECT_GT(count, 100);
  const std::int32_t methane = 20;
  float T = 0, P = 0, M = 0, TB = 0, TF = 0, H = 0;
  std::string name(TALIX_NAME_LENGTH, '?');
  std::int32_t status = 7;
  TALIX_CALL_OF(library, GETTALIXPROPSID)
  (&methane, &T, &P, &M, &TB, &TF, &H, name.data(), TALIX_NAME_LENGTH, &status);
  EXPECT_EQ(status, 0);
  EXPECT_NEAR(T, 190.564F, 1e-3F);
  EXPECT_NEAR(M, 16.0425F, 1e-3F);
  EXPECT_EQ(critt[19], T);
  EXPECT_EQ(critp[19], P);
  EXPECT_EQ(molwt[19], M);
  EXPECT_EQ(names.substr(19 * TALIX_NAME_LENGTH, TALIX_NAME_LENGTH), name);
  const std::int32_t none = 2000;
  TALIX_CALL_OF(library, GETTALIXPROPSID)
  (&none, &T, &P, &M, &TB, &TF, &H, name.data(), TALIX_NAME_LENGTH, &status);
  EXPECT_EQ(status, -1);
  EXPECT_EQ(T, 0.0F);
}

TEST_F(SharedLibraryCalls, CorrelationsAndElementsAreThere) {
  constexpr std::size_t records = TALIX_CATALOGUE_RECORDS;
  std::vector<float> cpv(8 * records), hvap(17 * records), dliq(3 * records), wag(4 * records);
  std::int32_t count = 0;
  TALIX_CALL_OF(library, GETTALIXAPPROPS)(&count, cpv.data(), hvap.data(), dliq.data(), wag.data());
  EXPECT_GT(count, 100);
  bool any = false;
  for (std::size_t i = 0; i < 8; ++i) any = any || cpv[8 * 19 + i] != 0.0F;
  EXPECT_TRUE(any);
  std::vector<std::vector<float>> atoms(9, std::vector<float>(records));
  TALIX_CALL_OF(library, GETTALIXELEMENTS)
  (&count, atoms[0].data(), atoms[1].data(), atoms[2].data(), atoms[3].data(), atoms[4].data(),
   atoms[5].data(), atoms[6].data(), atoms[7].data(), atoms[8].data());
  EXPECT_EQ(atoms[0][19], 1.0F);
  EXPECT_EQ(atoms[1][19], 4.0F);
  EXPECT_EQ(atoms[3][19], 0.0F);
}

TEST_F(SharedLibraryCalls, TablesAreClearedAndFractionsConverted) {
  std::vector<float> scal(TALIX_SCAL_ROWS * TALIX_SCAL_COLUMNS, 1.0F);
  std::vector<float> tprops(TALIX_PROPERTY_ROWS * TALIX_PROPERTY_COLUMNS, 1.0F);
  TALIX_CALL_OF(library, CLEARSCAL)(scal.data());
  TALIX_CALL_OF(library, CLEARTPROPS)(tprops.data());
  EXPECT_EQ(scal, std::vector<float>(scal.size(), 0.0F));
  EXPECT_EQ(tprops, std::vector<float>(tprops.size(), 0.0F));
  const std::int32_t two = 2;
  std::vector<float> shares = {1.0F, 3.0F};
  TALIX_CALL_OF(library, NORMALISECOMPONENTS)(&two, shares.data());
  EXPECT_EQ(shares, (std::vector<float>{0.25F, 0.75F}));
  const std::vector<std::int32_t> numbers = {20, 21};
  std::vector<float> mass = {1.0F, 1.0F};
  std::vector<float> moles = {0.0F, 0.0F};
  TALIX_CALL_OF(library, WEIGHTTOMOLE)(numbers.data(), &two, mass.data(), moles.data());
  EXPECT_EQ(mass, (std::vector<float>{0.5F, 0.5F}));
  EXPECT_NEAR(moles[0] / moles[1], 30.069F / 16.0425F, 1e-3F);
}

TEST_F(SharedLibraryCalls, ErrorReportNamesTheRoutineThatFailed) {
  const talix::test::ScratchDirectory scratch;
  std::filesystem::copy(talix::test::install_directory(), scratch.path() / "bank",
                        std::filesystem::copy_options::recursive);
  const std::filesystem::path file = scratch.path() / "bank" / "talix.err";
  std::filesystem::remove(file);
  install((scratch.path() / "bank").string());
  TALIX_CALL_OF(library, TALIXERRORREPORT)();
  EXPECT_FALSE(std::filesystem::exists(file));

  std::int32_t nc = 1;
  std::int32_t code = 5;
  float T = 25.0F, P = 901.0F, fraction = 1.0F;
  char unit = 'M';
  std::vector<float> scal(TALIX_SCAL_ROWS * TALIX_SCAL_COLUMNS, 0.0F);
  std::vector<float> tprops(TALIX_PROPERTY_ROWS * TALIX_PROPERTY_COLUMNS, 0.0F);
  scal[0] = 20.0F;
  scal[TALIX_SCAL_ROWS] = 1.0F;
  std::string message(120, '?');
  TALIX_CALL_OF(library, TALIX)
  (&nc, &T, &P, &fraction, &unit, 1, &code, scal.data(), tprops.data(), message.data(),
   static_cast<std::int32_t>(message.size()));
  EXPECT_EQ(message.find(" Pressure not between 0 and  900 bar, no calculation (TALIX)"), 0U) << message;
  TALIX_CALL_OF(library, TALIXERRORREPORT)();
  std::ifstream in(file);
  const std::string report{std::istreambuf_iterator<char>(in), {}};
  EXPECT_NE(report.find("Time Routine   Error\n"), std::string::npos) << report;
  EXPECT_NE(report.find("   1 TALIX         3\n"), std::string::npos) << report;
}

// Two phases in a feed of 6E-8 mol: the smaller one lies below the least flow of the flashes, and only the check, which
// flashes the same feed as one of about 1, finds it.
TEST_F(SharedLibraryCalls, LevelOfTheCheckIsKeptAndOtherLevelsChangeNothing) {
  const auto fraction = [this] {
    std::int32_t nc = 2;
    std::int32_t code = 5;
    float T = -60.0F, P = 10.0F, FRV = 1.0F;
    char unit = 'M';
    std::vector<float> scal(TALIX_SCAL_ROWS * TALIX_SCAL_COLUMNS, 0.0F);
    std::vector<float> tprops(TALIX_PROPERTY_ROWS * TALIX_PROPERTY_COLUMNS, 0.0F);
    scal[0] = 20.0F;
    scal[1] = 22.0F;
    scal[TALIX_SCAL_ROWS] = 5.0E-8F;
    scal[TALIX_SCAL_ROWS + 1] = 1.0E-8F;
    std::string message(120, '?');
    TALIX_CALL_OF(library, TALIX)
    (&nc, &T, &P, &FRV, &unit, 1, &code, scal.data(), tprops.data(), message.data(),
     static_cast<std::int32_t>(message.size()));
    EXPECT_EQ(message, std::string(120, ' '));
    return FRV;
  };
  const auto set = TALIX_CALL_OF(library, SETTALIXVERIFY);
  ASSERT_NE(set, nullptr);
  const float checked = fraction();
  const std::int32_t zero = 0, one = 1;
  set(&zero);
  const float alone = fraction();
  EXPECT_TRUE(alone == 0.0F || alone == 1.0F) << alone;
  EXPECT_GT(checked, 0.5F);
  EXPECT_LT(checked, 0.99F);
  for (const std::int32_t other : {-1, 2, 98}) {
    set(&other);
    EXPECT_EQ(fraction(), alone) << other;
  }
  set(nullptr);
  EXPECT_EQ(fraction(), alone);
  set(&one);
  EXPECT_EQ(fraction(), checked);
  for (const std::int32_t other : {-1, 2, 98}) {
    set(&other);
    EXPECT_EQ(fraction(), checked) << other;
  }
}

}  // namespace
