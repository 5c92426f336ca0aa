// ISO 9050, table 4, and EN 410, table 3: the ultraviolet part of global solar radiation times the
// interval of wavelengths. The weights add up to 1.
#include "optics/tables/Tables.h"

namespace orv::optics::tables {

namespace {

constexpr Point kUltravioletIso9050Rows[] = {
    {282.5, 0},       {287.5, 0},       {292.5, 0},       {297.5, 0.00082}, {302.5, 0.00461},
    {307.5, 0.01373}, {312.5, 0.02746}, {317.5, 0.0412},  {322.5, 0.05591}, {327.5, 0.06572},
    {332.5, 0.07062}, {337.5, 0.07258}, {342.5, 0.07454}, {347.5, 0.07601}, {352.5, 0.077},
    {357.5, 0.07896}, {362.5, 0.08043}, {367.5, 0.08337}, {372.5, 0.08631}, {377.5, 0.09073},
};

}  // namespace

const std::span<const Point> kUltravioletIso9050 = kUltravioletIso9050Rows;

}  // namespace orv::optics::tables
