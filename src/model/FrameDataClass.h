#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/Property.h"

namespace orv {

/// A window frame while it travels between databases.
class FrameDataClass {
 public:
  Property<std::int32_t> id{-1};  ///< identifier in the data source; -1 while not stored
  Property<std::string> name;
  Property<std::string> productname;
  Property<std::string> group;
  Property<std::string> supplier;
  Property<std::string> frametype;              ///< name of the frame's type
  Property<double> u_value;                     ///< thermal transmittance, W/(m²·K)
  Property<double> width;                       ///< width of the profile
  Property<std::vector<std::uint8_t>> picture;  ///< as the database holds it; may be empty
  Property<std::string> pictureText;            ///< what stands in its place, such as a file's path
  Property<std::string> Info;
};

}  // namespace orv
