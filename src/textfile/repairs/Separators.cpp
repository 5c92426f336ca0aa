#include <algorithm>

#include "textfile/Number.h"
#include "textfile/repairs/Repair.h"

namespace orv::textfile {

namespace {

using Pieces = std::vector<SpectralText::Piece*>;

/// What a comma inside a word of the data is.
enum class Comma { none, decimal, separator, ambiguous };

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

/// Whether digits stand on both sides of the one comma of a word, or behind it.
bool hasDecimalComma(std::string_view word) {
  const auto comma = word.find(',');
  return comma != std::string_view::npos && comma + 1 < word.size() && isDigit(word[comma + 1]) &&
         word.find(',', comma + 1) == std::string_view::npos &&
         word.find('.') == std::string_view::npos;
}

/// "Emis=0,84" is one word, too.
std::string withPoint(std::string_view word) {
  std::string result(word);
  if (hasDecimalComma(word)) std::ranges::replace(result, ',', '.');
  return result;
}

/// A comma behind a word parts columns, whatever the others are.
std::string_view withoutLastComma(std::string_view word) {
  if (word.ends_with(',')) word.remove_suffix(1);
  return word;
}

std::string withBlanks(std::string text, char separator) {
  std::ranges::replace(text, separator, ' ');
  return text;
}

/// Whether a line makes sense when each comma in it parts two columns: four columns at most, and
/// behind the wavelength no value above 1.
bool canBeSeparators(const std::string& line) {
  constexpr std::size_t kColumns = 4;
  const std::string parted = withBlanks(line, ',');
  const auto words = wordsOf(parted);
  if (words.size() > kColumns) return false;
  return std::all_of(words.begin() + 1, words.end(), [](std::string_view word) {
    const auto value = parseDouble(word);
    return value && *value >= 0 && *value <= 1;
  });
}

/// One answer for all lines of the data.
Comma commaOf(const Pieces& data) {
  bool inner = false;
  bool severalInWord = false;
  bool besidePoint = false;
  bool aloneInLine = true;
  bool separatorsPossible = true;
  for (const SpectralText::Piece* line : data) {
    const auto words = wordsOf(line->text);
    for (const std::string_view each : words) {
      const auto word = withoutLastComma(each);
      const auto commas = std::ranges::count(word, ',');
      inner = inner || commas > 0;
      severalInWord = severalInWord || commas > 1;
      besidePoint = besidePoint || (commas > 0 && word.find('.') != std::string_view::npos);
    }
    aloneInLine = aloneInLine && words.size() == 1;
    separatorsPossible = separatorsPossible && canBeSeparators(line->text);
  }
  if (!inner) return Comma::none;
  if (besidePoint) return Comma::separator;
  if (severalInWord) return Comma::ambiguous;
  if (aloneInLine) return Comma::separator;  // as decimals, lines would have a wavelength only
  return separatorsPossible ? Comma::ambiguous : Comma::decimal;
}

class Separators : public Repair {
 public:
  std::string mend(SpectralText& text) const override {
    const Pieces data = text.pieces(SpectralText::Part::data);
    std::string done;
    if (change(data, [](const std::string& line) { return withBlanks(line, ';'); })) {
      done = "semicolons part columns";
    }
    const Comma comma = commaOf(data);
    if (comma == Comma::ambiguous) return done;
    const auto lastCommas = [](const std::string& line) {
      std::string result = line;
      changeWords(result,
                  [](std::string_view word) { return std::string(withoutLastComma(word)); });
      return result;
    };
    const auto allCommas = [](const std::string& line) { return withBlanks(line, ','); };
    if (comma == Comma::separator ? change(data, allCommas) : change(data, lastCommas)) {
      add(done, "commas part columns");
    }
    if (mendDecimals(text, comma == Comma::decimal)) add(done, "commas are decimal points");
    return done;
  }

 private:
  static void add(std::string& done, const char* what) {
    done += (done.empty() ? "" : ", ") + std::string(what);
  }

  template <class Change>
  static bool change(const Pieces& pieces, const Change& change) {
    bool changed = false;
    for (SpectralText::Piece* piece : pieces) {
      std::string result = change(piece->text);
      changed = changed || result != piece->text;
      piece->text = std::move(result);
    }
    return changed;
  }

  /// Before the data a comma within a number has no other meaning.
  static bool mendDecimals(SpectralText& text, bool withData) {
    using Part = SpectralText::Part;
    bool changed = false;
    for (const Part part : {Part::scalars, Part::infrared, Part::data}) {
      if (part == Part::data && !withData) continue;
      for (SpectralText::Piece* piece : text.pieces(part)) {
        changed = changeWords(piece->text, withPoint) || changed;
      }
    }
    return changed;
  }
};

}  // namespace

RepairPtr makeSeparators() {
  return std::make_unique<Separators>();
}

}  // namespace orv::textfile
