#include <gtest/gtest.h>

#include "errors/Error.h"
#include "sources/DataSources.h"

namespace orv::sources {
namespace {

class DataSourcesTest : public ::testing::Test {
 protected:
  DataSources::Node add(DataSources& to, DataTypeCode type, const std::string& text = "source") {
    return to.AddDataSource(type, text, nullptr, "", "");
  }

  DataSources top_{std::make_shared<KeyCounter>()};
};

TEST_F(DataSourcesTest, NeverUsesAKeyAgain) {
  top_.RemoveDataSource(add(top_, DataType::igdb)->key());
  EXPECT_EQ(add(top_, DataType::igdb)->key(), "2key");
}

TEST_F(DataSourcesTest, DerivesTheRecordSetsFromTheType) {
  std::vector<std::tuple<DataTypeCode, std::string, std::string>> expected = {
      {6, "Pane", "Pane"},
      {7, "Frame", "Frame"},
      {8, "Pane", "qryPaneImport"},
      {9, "Frame", "qryFrameImport"},
      {10, "qryOptics5Grid", "qryOptics5Grid"},
      {16, "Shading", "Shading"},
      {17, "Shading", "qryShadingImport"}};
  for (const DataTypeCode none : {2, 3, 11, 12, 15, 18, 99}) expected.emplace_back(none, "", "");
  for (const auto& [type, recordSet, display] : expected) {
    const auto node = add(top_, type);
    EXPECT_EQ(node->RecordSetName(), recordSet) << type;
    EXPECT_EQ(node->DisplayRecordSetName(), display) << type;
  }
}

TEST_F(DataSourcesTest, FindsItemsByPositionAndKeyAndNodesInTheWholeTree) {
  const auto first = add(top_, DataType::orvDatabase3);
  const auto child = add(first->DataSources(), DataType::orv3Panes);
  const auto second = add(top_, DataType::igdb);

  EXPECT_EQ(top_.Item(2), second);
  EXPECT_EQ(top_.Item(first->key()), first);
  EXPECT_EQ(top_.findByKey(child->key()), child);
  EXPECT_EQ(top_.findByKey("99key"), nullptr);

  EXPECT_THROW(top_.Item(0), Error);
  EXPECT_THROW(top_.Item(3), Error);
  EXPECT_THROW(top_.Item(child->key()), Error);
  EXPECT_THROW(top_.RemoveDataSource(child->key()), Error);
}

TEST_F(DataSourcesTest, AConnectionGoesWithTheLastNodeThatHoldsIt) {
  // Stands for a connection: only its lifetime matters here.
  auto token = std::make_shared<int>(0);
  const std::weak_ptr<int> alive = token;
  std::shared_ptr<store::Connection> connection(token,
                                                reinterpret_cast<store::Connection*>(token.get()));
  token.reset();
  auto database = top_.AddDataSource(DataType::igdb, "a", connection, "", "");
  auto panes = database->DataSources().AddDataSource(DataType::optics5Panes, "Panes",
                                                     std::move(connection), "", "");
  panes->Parent(database);

  top_.RemoveDataSource(database->key());
  database.reset();
  EXPECT_FALSE(alive.expired());
  panes.reset();
  EXPECT_TRUE(alive.expired());
}

}  // namespace
}  // namespace orv::sources
