#include <gtest/gtest.h>

#include "model/Raised.h"
#include "textfile/ORV_TextFileInterface.h"

namespace orv {

namespace {

void parse(std::string_view expression, GlazingData& pane) {
  ORV_TextFileInterface().ParseStructure(expression, pane);
}

TEST(Structure, ReplacesTheLayers) {
  GlazingData pane;
  parse("old.txt;1;True", pane);
  parse("a;6;False + lowe4.txt ; 4.5 ; not False but true", pane);
  ASSERT_EQ(pane.StructureCount(), 2);
  EXPECT_EQ(pane.structure(0)->filename(), "a");
  EXPECT_FALSE(pane.structure(0)->Flipped());
  EXPECT_EQ(pane.structure(1)->filename(), "lowe4.txt");
  EXPECT_EQ(pane.structure(1)->Thickness(), 4.5F);
  EXPECT_TRUE(pane.structure(1)->Flipped()) << "True is looked for first";
  parse("", pane);
  EXPECT_EQ(pane.StructureCount(), 0);
}

TEST(Structure, RefusesMalformedLayersAndKeepsThoseBefore) {
  struct Case {
    const char* expression;
    std::int32_t number;
    const char* source;
    std::int16_t layers;
  };
  const Case cases[] = {
      {"a.txt;4", kInvalidCall, "Mal-formed structure", 0},
      {" ", kInvalidCall, "Mal-formed structure", 0},
      {";;", kInvalidCall, "Mal-formed structure", 0},
      {"a;4;", kInvalidCall, "Mal-formed structure", 0},
      {"a.txt;4;False++b.txt;4;True", kInvalidCall, "Mal-formed structure", 1},
      {"a;4;x", kInvalidCall, "Bad 3rd argument in layer", 0},
      {"a.txt;4;maybe", kInvalidCall, "Bad 3rd argument in layer", 0},
      {"a.txt;thick;True", kTypeMismatch, "", 0},
      {"a.txt;4;5;True", kTypeMismatch, "", 0},
      {"a.txt;4;True+b.txt;-1;True", kInvalidCall, "Thickness cannot be -1", 1},
  };
  for (const Case& c : cases) {
    GlazingData pane;
    const auto raised = test::raisedBy([&] { parse(c.expression, pane); });
    EXPECT_EQ(raised.number, c.number) << c.expression;
    EXPECT_EQ(raised.source, c.source) << c.expression;
    EXPECT_EQ(pane.StructureCount(), c.layers) << c.expression;
  }
}

}  // namespace

}  // namespace orv
