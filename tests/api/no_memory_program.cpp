// A host whose memory is used up while a component list is loaded. Prints the text of the call, then that of the
// same call with memory and another list; the test reads both.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "talix/talix.h"

namespace {

bool memory_is_used_up = false;

void* take(std::size_t size) {
  if (memory_is_used_up) throw std::bad_alloc();
  void* memory = std::malloc(size != 0 ? size : 1);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

float SCAL[TALIX_SCAL_ROWS * TALIX_SCAL_COLUMNS];
float TPROPS[TALIX_PROPERTY_ROWS * TALIX_PROPERTY_COLUMNS];

void flash_and_print(float second_component) {
  constexpr std::int32_t kText = 120;
  char STR[kText + 1] = {};
  char UNIT = 'M';
  std::int32_t NC = 2;
  std::int32_t IFLASH = 5;
  float T = 25.0F;
  float P = 10.0F;
  float FRV = 1.0F;
  SCAL[0] = 20.0F;
  SCAL[1] = second_component;
  SCAL[TALIX_SCAL_ROWS] = SCAL[TALIX_SCAL_ROWS + 1] = 0.5F;
  TALIX(&NC, &T, &P, &FRV, &UNIT, 1, &IFLASH, SCAL, TPROPS, STR, kText);
  std::size_t length = kText;
  while (length > 0 && STR[length - 1] == ' ') --length;
  std::printf("[%.*s]\n", static_cast<int>(length), STR);
}

}  // namespace

void* operator new(std::size_t size) { return take(size); }
void* operator new[](std::size_t size) { return take(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

int main(int argc, char** argv) {
  if (argc != 2) return EXIT_FAILURE;
  const auto length = static_cast<std::int32_t>(std::strlen(argv[1]));
  SETTALIXINSTALL(argv[1], length, &length);
  memory_is_used_up = true;
  flash_and_print(21.0F);
  memory_is_used_up = false;
  flash_and_print(22.0F);
  return EXIT_SUCCESS;
}
