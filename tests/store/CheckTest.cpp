#include <gtest/gtest.h>

#include <fstream>

#include "store/Check.h"
#include "support/Corpus.h"

namespace orv::store {
namespace {
namespace fs = std::filesystem;
TEST(Check, FindsNoFaultInForeignFiles) {
  ORV_NEEDS_CORPUS();
  for (const char* folder : {"access", "sources"}) {
    for (const auto& file : fs::directory_iterator(test::corpusFolder() / folder)) {
      if (file.path().extension() != ".mdb") continue;
      const std::string name = file.path().filename().string();
      const std::string password = name.starts_with("password")  ? "password"
                                   : name.starts_with("glazing") ? "tekzil"
                                                                 : "";
      const CheckReport report = checkFile(file.path().string(), password);
      for (const CheckFault& fault : report.faults) {
        ADD_FAILURE() << name << ": " << fault.toText();
      }
      for (const CheckFault& note : report.notes) {
        std::cout << "NOTE " << name << ": " << note.toText() << "\n";
      }
    }
  }
}
}  // namespace
}  // namespace orv::store
