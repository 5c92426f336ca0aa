#include "cli/ShownStream.h"

#include <string>

#include "model/ShownText.h"

namespace orv::cli {

namespace {

/// Passes on what it is given when the stream is flushed or much has come together.
class ShownBuffer : public std::streambuf {
 public:
  explicit ShownBuffer(std::streambuf& next) : next_(next) {}
  ~ShownBuffer() override { pass(pending_.size()); }
  ShownBuffer(const ShownBuffer&) = delete;
  ShownBuffer& operator=(const ShownBuffer&) = delete;

 protected:
  int_type overflow(int_type c) override {
    const char byte = traits_type::to_char_type(c);
    return xsputn(&byte, 1) == 1 ? c : traits_type::eof();
  }

  std::streamsize xsputn(const char* bytes, std::streamsize count) override {
    pending_.append(bytes, static_cast<std::size_t>(count));
    return pending_.size() <= kMostPending || pass(wholeCharacters()) ? count : 0;
  }

  int sync() override {
    const bool passed = pass(wholeCharacters());
    return next_.pubsync() == 0 && passed ? 0 : -1;
  }

 private:
  static constexpr std::size_t kMostPending = 8192;

  /// Bytes up to the beginning of a character whose rest may follow.
  std::size_t wholeCharacters() const {
    constexpr std::size_t kLongest = 4;
    for (std::size_t back = 1; back < kLongest && back <= pending_.size(); ++back) {
      const auto byte = static_cast<unsigned char>(pending_[pending_.size() - back]);
      if ((byte & 0xC0) == 0x80) continue;
      const std::size_t length = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
      return length > back ? pending_.size() - back : pending_.size();
    }
    return pending_.size();
  }

  bool pass(std::size_t size) {
    const std::string text = shown(std::string_view(pending_).substr(0, size));
    pending_.erase(0, size);
    const auto length = static_cast<std::streamsize>(text.size());
    return next_.sputn(text.data(), length) == length;
  }

  std::streambuf& next_;
  std::string pending_;
};

}  // namespace

ShownStream::ShownStream(std::ostream& stream)
    : stream_(stream),
      before_(stream.rdbuf()),
      buffer_(std::make_unique<ShownBuffer>(*stream.rdbuf())) {
  stream_.rdbuf(buffer_.get());
}

ShownStream::~ShownStream() {
  stream_.flush();
  stream_.rdbuf(before_);
}

}  // namespace orv::cli
