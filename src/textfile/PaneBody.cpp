#include "textfile/PaneBody.h"

#include <fmt/format.h>

#include <limits>
#include <vector>

#include "errors/Error.h"
#include "model/ErrorCatalogue.h"
#include "model/Text.h"
#include "textfile/Number.h"
#include "textfile/Remedy.h"

namespace orv::textfile {

namespace {

constexpr std::string_view kStar = "*";  // the value of the line before
constexpr std::string_view kSpectralData = "Spectral Data";
constexpr std::string_view kEmissivity = "Emissivity";

/// The values of one data line. They are carried from line to line, for "*" and for columns that
/// a line leaves out.
struct Row {
  float wavelength = 0;
  float transmittance = 0;
  float frontReflectance = 0;
  float backReflectance = 0;
};

class BodyReader {
 public:
  BodyReader(Tokenizer& tokenizer, GlazingData& pane) : tokenizer_(tokenizer), pane_(pane) {}

  void ReadBody();

 private:
  void readScalars();
  std::int32_t readUnit(const Token& token) const;
  std::int32_t readWavelengthUnit(const Token& token) const;
  float readScalar(std::string_view context, std::string_view refusal);

  Token readInfraredLines();
  void ReadTirLine();
  void ReadEmissivityLine();
  float readBackEmissivity(float front);
  void expectEqualSign(std::string_view context);

  void readDataLines(Token first);
  Row readRow(const Token& wavelength, Row before);
  void readStarOrNumber(const Token& token, std::int32_t number, float& value) const;
  void setSpectrum(const std::vector<Row>& rows);

  Token nextWord();
  Token expectWord(std::string_view context);
  Token requireWord(const Token& token, std::string_view context) const;
  float toNumber(const Token& token, std::int32_t number, std::string_view context) const;
  float notNegative(const Token& token, float value) const;
  using FindRemedy = Remedy (*)(std::string_view word);
  void require(bool condition, std::int32_t number, const Token& token, std::string_view context,
               FindRemedy remedy) const;
  [[noreturn]] void refuse(const Token& token, std::string_view description,
                           const std::string& remedy) const;

  Tokenizer& tokenizer_;
  GlazingData& pane_;
};

void BodyReader::ReadBody() {
  readScalars();
  readDataLines(readInfraredLines());
}

// --- Units, thickness, conductivity ---

void BodyReader::readScalars() {
  Token token = nextWord();
  require(token.isWord(), kNotAToken, token, "Beginning of file", remedyForBeginning);
  if (equalIgnoringCase(token.text, "NFRC")) {
    tokenizer_.SkipLine();
    expectWord("NFRC acceptance string");
    pane_.Acceptance("#");
    token = expectWord("Units");
  }
  pane_.unit(readUnit(token));
  pane_.WavelengthUnit(readWavelengthUnit(expectWord("Wavelength units")));
  pane_.Thickness(readScalar("Thickness", "Invalid thickness"));
  pane_.Conductivity(readScalar("Conductivity", "Invalid conductivity"));
}

std::int32_t BodyReader::readUnit(const Token& token) const {
  if (equalIgnoringCase(token.text, "SI")) {
    return kSI;
  }
  if (equalIgnoringCase(token.text, "IP")) {
    return kIP;
  }
  refuse(token, "Invalid unit", remedyForBeginning(token.text).forPanes());
}

std::int32_t BodyReader::readWavelengthUnit(const Token& token) const {
  const std::string unit = lowerCase(token.text);
  if (unit == "micron" || unit == "microns") {
    return kMicrons;
  }
  if (unit == "nanometer" || unit == "nanometers") {
    return kNanometers;
  }
  refuse(token, "Invalid wavelength", remedyForWavelengthUnit(token.text).forPanes());
}

float BodyReader::readScalar(std::string_view context, std::string_view refusal) {
  const Token token = expectWord(context);
  const auto value = parseSingle(token.text);
  if (!value) {
    refuse(token, refusal, remedyForNumber(token.text).forPanes());
  }
  return notNegative(token, *value);
}

// --- Infrared lines ---

/// Reads the lines that are there, in either order, and returns the first token after them.
Token BodyReader::readInfraredLines() {
  constexpr int kInfraredLines = 2;
  Token token = nextWord();
  for (int i = 0; i < kInfraredLines; ++i) {
    const std::string word = lowerCase(token.text);
    const bool isNumber = parseSingle(word).has_value();  // a wavelength such as "3E-01"
    if (word == "tir") {
      ReadTirLine();
    } else if (!isNumber && word.find('e') != std::string::npos) {
      ReadEmissivityLine();
    } else {
      break;
    }
    token = nextWord();
  }
  return token;
}

void BodyReader::ReadTirLine() {
  expectEqualSign("TIR");
  const Token token = requireWord(tokenizer_.GetToken(), "TIR");
  pane_.TfIR(notNegative(token, toNumber(token, kNotANumber, "TIR")));
}

void BodyReader::ReadEmissivityLine() {
  expectEqualSign(kEmissivity);
  const Token token = requireWord(tokenizer_.GetToken(), kEmissivity);
  const float front = notNegative(token, toNumber(token, kNotANumber, kEmissivity));
  pane_.ef(front);
  pane_.ef_source(kTextFileSource);
  pane_.eb(readBackEmissivity(front));
  pane_.eb_source(kTextFileSource);
  pane_.ORV_Emissivity_back(pane_.eb());
  pane_.ORV_Emissivity_front(pane_.ef());
}

/// A line with one emissivity means it for both sides.
float BodyReader::readBackEmissivity(float front) {
  Token token = tokenizer_.GetToken();
  if (token.type == TokenType::EndOfLine) {
    return front;
  }
  if (!token.isWord()) {
    raiseAt(tokenizer_.placeOf(token), kBackEmissivity,
            "Backward emissivity:  Invalid token sequence", "The file ends here.");
  }
  if (token.text == ",") {
    token = tokenizer_.GetToken();
  }
  return notNegative(token, toNumber(token, kNotANumber, "Backward Emissivity"));
}

void BodyReader::expectEqualSign(std::string_view context) {
  const Token token = tokenizer_.GetToken();
  require(token.text == "=", kNotAnEqualSign, token, context,
          [](std::string_view) { return Remedy{"The lines are: TIR= 0.0 and Emis= 0.84 0.84."}; });
}

// --- Data lines ---

void BodyReader::readDataLines(Token first) {
  std::vector<Row> rows;
  for (Token token = first; token.isWord(); token = nextWord()) {
    rows.push_back(readRow(token, rows.empty() ? Row{} : rows.back()));
  }
  if (rows.empty()) {
    raiseAt(tokenizer_.place(), kSubscriptOutOfRange, "The file holds no spectral data",
            "Lines of a wavelength, a transmittance and two reflectances end a pane file.");
  }
  setSpectrum(rows);
}

Row BodyReader::readRow(const Token& wavelength, Row row) {
  row.wavelength = notNegative(wavelength, toNumber(wavelength, kNotANumber, kSpectralData));
  readStarOrNumber(requireWord(tokenizer_.GetToken(), kSpectralData), kNotANumber,
                   row.transmittance);
  Token token = tokenizer_.GetToken();
  if (token.isWord()) {
    readStarOrNumber(token, kNotANumberOrStar, row.frontReflectance);
    token = tokenizer_.GetToken();
  }
  if (!token.isWord()) {
    row.backReflectance = row.frontReflectance;
    return row;
  }
  readStarOrNumber(token, kNotANumber, row.backReflectance);
  tokenizer_.SkipLine();
  return row;
}

void BodyReader::readStarOrNumber(const Token& token, std::int32_t number, float& value) const {
  if (token.text != kStar) {
    value = notNegative(token, toNumber(token, number, kSpectralData));
  }
}

void BodyReader::setSpectrum(const std::vector<Row>& rows) {
  auto spectrum = std::make_shared<SpectralData>();
  spectrum->Allocate(static_cast<std::int32_t>(rows.size()) - 1);
  for (std::int32_t i = 0; i < spectrum->count(); ++i) {
    const Row& row = rows[static_cast<std::size_t>(i)];
    spectrum->wl(i, row.wavelength);
    spectrum->Tf(i, row.transmittance);
    spectrum->Tb(i, row.transmittance);
    spectrum->Rf(i, row.frontReflectance);
    spectrum->Rb(i, row.backReflectance);
  }
  pane_.SpectralData(std::move(spectrum));
}

// --- Tokens and refusals ---

/// The next word, past line ends; or the end of the text.
Token BodyReader::nextWord() {
  Token token = tokenizer_.GetToken();
  while (token.type == TokenType::EndOfLine) {
    token = tokenizer_.GetToken();
  }
  return token;
}

Token BodyReader::expectWord(std::string_view context) {
  return requireWord(nextWord(), context);
}

Token BodyReader::requireWord(const Token& token, std::string_view context) const {
  require(token.isWord(), kNotAToken, token, context, remedyForNumber);
  return token;
}

float BodyReader::toNumber(const Token& token, std::int32_t number,
                           std::string_view context) const {
  const auto value = parseSingle(token.text);
  require(value.has_value(), number, token, context, remedyForNumber);
  return *value;
}

float BodyReader::notNegative(const Token& token, float value) const {
  if (!isNotNegative(value)) {
    raiseAt(tokenizer_.placeOf(token), kInvalidCall,
            fmt::format("'{}' is negative. No value of a pane is below 0", token.text));
  }
  return value;
}

void BodyReader::require(bool condition, std::int32_t number, const Token& token,
                         std::string_view context, FindRemedy remedy) const {
  if (condition) return;
  raiseAt(tokenizer_.placeOf(token), number,
          DescribeError(number, std::string(token.text), context), remedy(token.text).forPanes());
}

void BodyReader::refuse(const Token& token, std::string_view description,
                        const std::string& remedy) const {
  throw Error(kInvalidCall, std::string(description), "",
              tokenizer_.placeOf(token).told(token.text, remedy));
}

}  // namespace

void ReadBody(Tokenizer& tokenizer, GlazingData& pane) {
  BodyReader(tokenizer, pane).ReadBody();
}

}  // namespace orv::textfile
