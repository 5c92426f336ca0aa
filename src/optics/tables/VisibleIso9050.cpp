// ISO 9050, table 1, and EN 410, table 1: illuminant D65 times the luminous efficiency V(λ) times
// the interval of wavelengths. The weights add up to 100.
#include "optics/tables/Tables.h"

namespace orv::optics::tables {

namespace {

constexpr Point kVisibleIso9050Rows[] = {
    {380, 0},      {390, 0.0005}, {400, 0.003},  {410, 0.0103}, {420, 0.0352}, {430, 0.0948},
    {440, 0.2274}, {450, 0.4192}, {460, 0.6663}, {470, 0.985},  {480, 1.5189}, {490, 2.1336},
    {500, 3.3491}, {510, 5.1393}, {520, 7.0523}, {530, 8.799},  {540, 9.4427}, {550, 9.8077},
    {560, 9.4306}, {570, 8.6891}, {580, 7.8994}, {590, 6.3306}, {600, 5.3542}, {610, 4.2491},
    {620, 3.1502}, {630, 2.0812}, {640, 1.381},  {650, 0.807},  {660, 0.4612}, {670, 0.2485},
    {680, 0.1255}, {690, 0.0536}, {700, 0.0276}, {710, 0.0146}, {720, 0.0057}, {730, 0.0035},
    {740, 0.0021}, {750, 0.0008}, {760, 0.0001}, {770, 0},      {780, 0},
};

}  // namespace

const std::span<const Point> kVisibleIso9050 = kVisibleIso9050Rows;

}  // namespace orv::optics::tables
