#include <gtest/gtest.h>

#include "model/Raised.h"
#include "textfile/Folder.h"
#include "textfile/ORV_TextFileInterface.h"

namespace orv {

namespace {

class FileReferences : public ::testing::Test {
 protected:
  /// A pane file with these header entries.
  void write(const std::string& name, const std::string& entries) {
    folder_.write(name, "SI Microns 3 1\n0.3 0.8 0.1 0.1\n" + entries);
  }

  std::shared_ptr<GlazingData> parse(const std::string& name) {
    return text_.ParseSpectralFile(folder_.path(), name);
  }

  void fill(const std::shared_ptr<GlazingData>& pane) {
    text_.FillFileReferences(folder_.path(), pane);
  }

  test::Folder folder_;
  ORV_TextFileInterface text_;
};

TEST_F(FileReferences, AreReadWithAllThatTheyReferTo) {
  write("laminate.txt", "{ Structure: Coated.TXT;4;False + clear.txt;6;True }");
  write("coated.txt", "{ Substrate Filename: CLEAR.txt }");
  write("clear.txt", "{ Product Name: Clear }{ Substrate Filename: N/A }");
  const auto pane = parse("laminate.txt");
  fill(pane);
  const auto coated = pane->structure(0)->FileGlazingData();
  ASSERT_NE(coated, nullptr);
  EXPECT_EQ(coated->filename(), "Coated.TXT");
  EXPECT_EQ(coated->Parent(), pane);
  ASSERT_TRUE(coated->HasSubstrate());
  EXPECT_EQ(coated->SubstrateReference()->productname(), "Clear");
  EXPECT_EQ(pane->structure(1)->FileGlazingData()->productname(), "Clear");
}

TEST_F(FileReferences, AreNotSoughtForMarkersAndTheFileItself) {
  for (const char* const substrate : {"", "N/A", "Unknown", "pane.txt"}) {
    write("pane.txt", std::string("{ Substrate Filename: ") + substrate + " }");
    const auto pane = parse("pane.txt");
    fill(pane);
    EXPECT_FALSE(pane->HasSubstrate()) << substrate;
  }
}

TEST_F(FileReferences, NameTheFileThatIsMissing) {
  write("pane.txt", "{ Structure: clear.txt;4;False + gone.txt;4;False }");
  write("clear.txt", "");
  const auto pane = parse("pane.txt");
  const auto raised = test::raisedBy([&] { fill(pane); });
  EXPECT_EQ(raised.number, kFileNotFound);
  EXPECT_EQ(raised.description, "There is no file 'gone.txt' in the folder '" +
                                    folder_.path().string() + "'. The file 'pane.txt' names it");
  EXPECT_TRUE(pane->structure(0)->HasReference());
  EXPECT_FALSE(pane->structure(1)->HasReference());
}

TEST_F(FileReferences, AreRefusedWhenTheyLeadBackToTheFile) {
  write("a.txt", "{ Substrate Filename: b.txt }");
  write("b.txt", "{ Structure: c.txt;4;False }");
  write("c.txt", "{ Substrate Filename: A.txt }");
  write("top.txt", "{ Substrate Filename: a.txt }");  // leads to the circle, and is not in it
  const auto pane = parse("top.txt");
  const auto raised = test::raisedBy([&] { fill(pane); });
  EXPECT_EQ(raised.number, kInvalidCall);
  EXPECT_EQ(raised.description,
            "These files refer to each other in a circle: a.txt, b.txt, c.txt, A.txt");
  EXPECT_FALSE(pane->HasSubstrate());
}

TEST_F(FileReferences, ComeToAnEndWhenFilesNameMoreAndMoreFiles) {
  write("leaf.txt", "");
  const auto namesMany = [&](int count) {
    const auto pane = parse("leaf.txt");
    pane->filename("pane.txt");
    for (int i = 0; i < count; ++i) {
      pane->AddStructure(std::make_shared<GlazingStructure>());
      pane->structure(i)->filename("leaf.txt");
    }
    return test::raisedBy([&] { fill(pane); });
  };
  EXPECT_EQ(namesMany(1000).number, 0);
  const auto raised = namesMany(1001);
  EXPECT_EQ(raised.number, kInvalidCall);
  EXPECT_EQ(raised.description, "A pane cannot refer to more than 1000 files");
}

}  // namespace

}  // namespace orv
