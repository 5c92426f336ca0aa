// Switches the faults of tools/mutate, of which one program holds many.
#pragma once

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <type_traits>

#pragma GCC diagnostic ignored "-Wnarrowing"

/// Whether fault `site` is on: that which ORV_MUTANT names. Where ORV_MUTANTS_REACHED names a file,
/// the byte of each site that is come by is set there, also by processes that are killed later.
inline bool orvMutantNow(int site) {
  static const int chosen = [] {
    const char* text = std::getenv("ORV_MUTANT");
    return text != nullptr ? std::atoi(text) : -1;
  }();
  static char* const reached = []() -> char* {
    const char* path = std::getenv("ORV_MUTANTS_REACHED");
    const int file = path != nullptr ? ::open(path, O_RDWR | O_CLOEXEC) : -1;
    if (file < 0) return nullptr;
    void* bytes = ::mmap(nullptr, static_cast<std::size_t>(::lseek(file, 0, SEEK_END)),
                         PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    ::close(file);
    return bytes != MAP_FAILED ? static_cast<char*>(bytes) : nullptr;
  }();
  if (reached != nullptr) reached[site] = 1;
  return site == chosen;
}

/// The same where the compiler may evaluate the expression, which is then without fault.
constexpr bool orvMutant(int site) {
  if (std::is_constant_evaluated()) return false;
  return orvMutantNow(site);
}

template <typename T>
constexpr T orvShifted(const T& value) {
  return static_cast<T>(value + 1);
}
