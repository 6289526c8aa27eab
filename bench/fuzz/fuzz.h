#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "support/temp_folder.h"

/// What every fuzzer calls: one input, any bytes. Whatever is wrong ends the process.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace velgrove::fuzz {

/// A promise that any input must keep.
inline void require(bool kept, const char* promise) {
  if (kept) return;
  std::fprintf(stderr, "broken promise: %s\n", promise);
  std::abort();
}

inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// A file of the process's own for what is only read by name; in memory where bench/fuzz.sh runs us.
inline std::filesystem::path fileOf(std::string_view bytes, const char* name) {
  static const TempFolder folder;
  const auto path = folder / name;
  std::ofstream(path, std::ios::binary) << bytes;
  return path;
}

/// Takes the text up to a line "@@" off the front, so that an input can hold several.
inline std::string_view nextPart(std::string_view& rest) {
  constexpr std::string_view Between = "\n@@\n";
  const auto end = rest.find(Between);
  const std::string_view part = rest.substr(0, end);
  rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + Between.size());
  return part;
}

}  // namespace velgrove::fuzz
