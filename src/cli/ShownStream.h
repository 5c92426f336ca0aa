// A stream of texts that end on a terminal.
#pragma once

#include <memory>
#include <ostream>
#include <streambuf>

namespace orv::cli {

/// While it lives, what is written to the stream is spelled out as orv::shown() does it.
class ShownStream {
 public:
  explicit ShownStream(std::ostream& stream);
  ~ShownStream();
  ShownStream(const ShownStream&) = delete;
  ShownStream& operator=(const ShownStream&) = delete;

 private:
  std::ostream& stream_;
  std::streambuf* before_;
  std::unique_ptr<std::streambuf> buffer_;
};

}  // namespace orv::cli
