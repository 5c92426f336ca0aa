#include <fmt/format.h>

#include "database/OrvSchema.h"
#include "database/TestDatabase.h"
#include "model/Raised.h"
#include "store/Check.h"

namespace orv::test {
namespace {

using OrvSchemaTest = DatabaseTest;

/// Other programs know the tables by these names, and their columns by these.
TEST_F(OrvSchemaTest, TablesHaveTheseColumnsAndIndexes) {
  std::string text;
  for (const std::string& name : dc->tableNames()) {
    text += name + ":";
    for (const store::ColumnInfo& column : dc->table(name).columns) {
      text += fmt::format(" {} {}{}{}{}", column.name, static_cast<int>(column.type),
                          column.size > 0 ? "/" + std::to_string(column.size) : "",
                          column.autoNumber ? "+" : "",
                          column.defaultValue ? "=" + *column.defaultValue : "");
    }
    for (const store::IndexInfo& index : dc->table(name).indexes) {
      text += fmt::format("; {}{}{}{}", index.name, index.primary ? " primary" : "",
                          index.unique ? " unique" : "", index.required ? " required" : "");
      for (const auto& column : index.columns) text += "," + column.name;
    }
    text += '\n';
  }
  EXPECT_EQ(
      text,
      R"(Frame: FrameID 4+ name 10/255 product_name 10/255 groupID 4 supplierID 4 u_value 7 FrameTypeID 4 picture 11 width 7 Info 12; NameGroup,name,groupID; PrimaryKey primary unique required,FrameID
FrameTypes: FrameTypeID 4+ FrameTypeName 10/255; FrameTypeName,FrameTypeName; PrimaryKey primary unique required,FrameTypeID
Groups: GroupID 4+ GroupName 10/255; GroupName,GroupName; PrimaryKey primary unique required,GroupID
ORVdata_version: version 10/20
Pane: PaneID 4+ name 10/255 product_name 10/255 supplierID 4 groupID 4 thickness 6 conduction 6 emission_IR_outdoor 7 emission_IR_indoor 7 transmission_IR_outdoor 6 transmission_IR_indoor 6 single_layer 1=0 use_estimation 1=0 0_30_60 1=0 spectral_pane 1=0 film_outdoor_side 1=0 with_and_without_film 1=0 Ra 3=0 info 12 freeze 1=0 coatingcode 10/50 acceptance 10/20; NameGroup,name,groupID; PrimaryKey primary unique required,PaneID
Pane_integrated_data: PaneID 4 angle 3 reflection_solar_outdoor 6 reflection_solar_indoor 6 transmission_solar_outdoor 6 transmission_solar_indoor 6 reflection_visual_outdoor 6 reflection_visual_indoor 6 transmission_visual_outdoor 6 transmission_visual_indoor 6 reflection_UV_outdoor 6 reflection_UV_indoor 6 transmission_UV_outdoor 6 transmission_UV_indoor 6; PaneAngle,PaneID,angle
Pane_spectral_data: PaneID 4 angle 3 direction 3=0 wavelength 6 transmission_outdoor 6 reflection_outdoor 6 reflection_indoor 6 transmission_sub 6 reflection_sub 6; PaneAngle,PaneID,angle
Shading: Shading_id 4+ name 10/255 groupnameID 4 typeID 4 productname 10/255 thickness 7 appearance 10/255 conduction 7 emission_IR_outdoor 7 emission_IR_indoor 7 transmission_IR_outdoor 7 transmission_IR_indoor 7 emissivity_slat_surf_outd 7 emissivity_slat_surf_ind 7 transmissivity_slat_surf 7 measured 1=0 single_layer 1=0 spectral 1=0 permeability 7 horizontal 1=0 vertical 1=0 homogenious 1=0 3D 1=0 supplierID 4 Supplier_dataID 4 window_slat_distance 7 slat_curvature 7 slat_length 7 slat_distance 7 angle 7 Sol_refl_slat_surf_outd 7 Sol_refl_slat_surf_ind 7 Sol_transm_slat_surf 7 Vis_refl_slat_surf_outd 7 Vis_refl_slat_surf_ind 7 Vis_transm_slat_surf 7 Uv_refl_slat_surf_outd 7 Uv_refl_slat_surf_ind 7 Uv_transm_slat_surf 7 Info 12 freeze 1=0 Sol_refl_slat_surf_outd_BB 7 Sol_refl_slat_surf_ind_BB 7 Sol_transm_slat_surf_BB 7 Vis_refl_slat_surf_outd_BB 7 Vis_refl_slat_surf_ind_BB 7 Vis_transm_slat_surf_BB 7 Uv_refl_slat_surf_outd_BB 7 Uv_refl_slat_surf_ind_BB 7 Uv_transm_slat_surf_BB 7 reference 10/255; NameGroup,name,groupnameID; PrimaryKey primary unique required,Shading_id
Shading_integrated_data_temp: Shading_id 4 angle 7 reflection_solar_outdoor 7 reflection_solar_indoor 7 transmission_solar_outdoor 7 transmission_solar_indoor 7 reflection_visual_outdoor 7 reflection_visual_indoor 7 transmission_visual_outdoor 7 transmission_visual_indoor 7 reflection_UV_outdoor 7 reflection_UV_indoor 7 transmission_UV_outdoor 7 transmission_UV_indoor 7; Shading_id,Shading_id
Shading_spectral_data: Shading_ID 4 wavelength 7 T_out_BB 7 T_in_BB 7 R_out_BB 7 R_in_BB 7 T_out_BD 7 T_in_BD 7 R_out_BD 7 R_in_BD 7; Shading_ID,Shading_ID
Suppliers: supplierID 4+ SupplierName 10/255; PrimaryKey primary unique required,supplierID; SupplierName,SupplierName
)");
}

TEST_F(OrvSchemaTest, TheSavedQueriesShowAlsoRecordsWithoutGroupAndSupplier) {
  addRow("Pane", {{"name", "pane"}, {"groupID", 77}});
  addRow("Frame", {{"name", "frame"}});
  addRow("Shading", {{"name", "shading"}});
  for (const auto& [query, key] : {std::pair{"qryPaneImport", "PaneID"},
                                   {"qryFrameImport", "FrameID"},
                                   {"qryShadingImport", "Shading_id"}}) {
    auto rows = dc->openRecordset(query, store::CursorType::static_);
    ASSERT_EQ(rows->recordCount(), 1) << query;
    EXPECT_EQ(rows->fields().front().name, key);
    EXPECT_EQ(rows->value(key), store::Value(1));
    EXPECT_TRUE(rows->value("GroupName").isNull());
  }
}

TEST_F(OrvSchemaTest, AFileThatIsThereIsNeverReplaced) {
  EXPECT_NE(raisedBy([&] { database::CreateEmptyDatabase(path); }).number, 0);
  EXPECT_EQ(database.LookupDatabaseVersion(*dc), "3.0.0");
}

}  // namespace
}  // namespace orv::test
