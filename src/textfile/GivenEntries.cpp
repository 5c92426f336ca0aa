#include "textfile/GivenEntries.h"

#include "model/Text.h"
#include "textfile/HeaderEntry.h"
#include "textfile/TextFile.h"
#include "textfile/Tokenizer.h"
#include "textfile/repairs/Repairs.h"

namespace orv::textfile {

std::set<std::string> givenEntries(const std::filesystem::path& path, bool isTolerant) {
  std::string text = readText(path);
  if (isTolerant) repair(text);
  Tokenizer tokenizer(text, path.filename().string());
  std::set<std::string> given;
  for (Token token = tokenizer.GetToken(); token.type != TokenType::EndOfText;
       token = tokenizer.GetToken()) {
    if (token.isWord() && equalIgnoringCase(token.text, kInfraredLine)) given.insert(kInfraredLine);
  }
  for (const HeaderEntry& entry : headerEntries(tokenizer)) {
    if (!entry.value.empty()) given.insert(lowerCase(entry.key));
  }
  return given;
}

}  // namespace orv::textfile
