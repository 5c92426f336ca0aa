// A pattern for numbers: "#,##0.00;(0.00);zero".
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orv::store::sql {

/// Sections for positive numbers, negative ones and zero, parted by ";". In a section 0 is a
/// digit, # a digit that is needed, "," between digits groups thousands and after them divides by
/// 1000, % multiplies by 100, E+00 gives an exponent; other characters, those in quotes and those
/// after a backslash stand for themselves.
class NumberPattern {
 public:
  explicit NumberPattern(std::string_view pattern);

  std::string format(double number) const;

 private:
  struct Token {
    enum class Kind { literal, digit, point, exponent };
    Kind kind = Kind::literal;
    std::string text{};  ///< a literal; "0" or "#"; "E+" or "E-"
  };
  struct Section {
    std::vector<Token> tokens;
    std::size_t wholeDigits = 0;
    std::size_t decimals = 0;
    std::size_t exponentDigits = 0;
    int percents = 0;
    int thousands = 0;
    bool grouped = false;
    bool hasExponent = false;
  };

  static std::vector<std::string> split(std::string_view pattern);
  static Section parse(std::string_view text);
  static std::string write(const Section& section, double magnitude);

  std::vector<Section> sections_;
};

}  // namespace orv::store::sql
