// What the preload library (FileCalls.cpp) notes of a program's calls, and what it can be told.
#pragma once

#include <cstdint>

namespace orv::test {

/// The library looks at files below one folder. Its environment:
inline constexpr const char* kFolderVariable = "ORV_CALLS_FOLDER";
/// a file of 8 bytes in which the calls are counted, over all processes;
inline constexpr const char* kCounterVariable = "ORV_CALLS_COUNTER";
/// a file to which each call is appended, as a CallHeader and the bytes that it announces;
inline constexpr const char* kRecordingVariable = "ORV_CALLS_RECORDING";
/// what happens at which calls: "WORD FIRST COUNT", with one of the words below;
inline constexpr const char* kPlanVariable = "ORV_CALLS_PLAN";
/// and, when set, that the program believes its error output to be a terminal, on which it shows
/// its progress.
inline constexpr const char* kTerminalVariable = "ORV_CALLS_TERMINAL";

inline constexpr const char* kKillBefore = "kill-before";
inline constexpr const char* kKillAfter = "kill-after";
inline constexpr const char* kInputOutputError = "eio";
inline constexpr const char* kNoSpace = "enospc";    ///< for what needs space
inline constexpr const char* kShortWrite = "short";  ///< half is written, then there is no space

enum class CallKind : std::uint32_t {
  create,
  write,
  resize,
  sync,
  syncFolder,
  rename,
  remove,
  report,  ///< a write to the standard output or error, which is not counted
};

struct CallHeader {
  CallKind kind;
  std::uint32_t nameLength;   ///< of the file's name in the folder
  std::uint32_t otherLength;  ///< of its new name
  std::uint32_t dataLength;   ///< of what is written
  std::uint64_t file;         ///< which file, by its number in the file system
  std::uint64_t offset;       ///< of what is written; a new size
};

}  // namespace orv::test
