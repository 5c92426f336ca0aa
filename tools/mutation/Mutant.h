// Switches the faults of tools/mutate, of which one program holds many.
#pragma once

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <type_traits>

#pragma GCC diagnostic ignored "-Wnarrowing"

/// The fault that ORV_MUTANT names.
inline int orvMutantChosen() {
  static const int chosen = [] {
    const char* text = std::getenv("ORV_MUTANT");
    return text != nullptr ? std::atoi(text) : -1;
  }();
  return chosen;
}

/// The bytes of the file that ORV_MUTANTS_REACHED names, if it names one.
inline char* orvMutantsReached() {
  static char* const reached = []() -> char* {
    const char* path = std::getenv("ORV_MUTANTS_REACHED");
    const int file = path != nullptr ? ::open(path, O_RDWR | O_CLOEXEC) : -1;
    if (file < 0) return nullptr;
    void* bytes = ::mmap(nullptr, static_cast<std::size_t>(::lseek(file, 0, SEEK_END)),
                         PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    ::close(file);
    return bytes != MAP_FAILED ? static_cast<char*>(bytes) : nullptr;
  }();
  return reached;
}

/// That file is opened before main() begins: a site may be between a call of the system and the
/// look at its error, and a test may have said how calls of the system end.
inline const char* const orvMutantsReachedAtStart = orvMutantsReached();

/// Whether fault `site` is on. The byte of each site that is come by is set in that file, also by
/// processes that are killed later.
inline bool orvMutantNow(int site) {
  if (char* const reached = orvMutantsReached()) reached[site] = 1;
  return site == orvMutantChosen();
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
