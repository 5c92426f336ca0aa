// Operators and functions, from Access SQL to values.
#include <gtest/gtest.h>

#include "errors/Error.h"
#include "model/Raised.h"
#include "store/sql/TranslatedDatabase.h"

namespace orv::store::sql {
namespace {

struct Example {
  const char* expression;
  const char* value;
};

constexpr Example kExamples[] = {
    // Operators
    {"7/2", "3.5"},
    {"7\\2", "3"},
    {"-7\\2", "-3"},
    {"7.5\\2", "4"},
    {"7 Mod 4", "3"},
    {"10.6 Mod 4", "3"},
    {"1/0", "-"},
    {"2^3^2", "64"},
    {"-2^2", "-4"},
    {"2^-1", "0.5"},
    {"1+2*3 Mod 4", "3"},
    {"\"a\" & 1 & Null & 2.50 & 'it''s'", "a12.5it's"},
    {"Null & Null", "-"},
    {"'a' + 'b'", "ab"},
    {"'5' + 3", "8"},
    {"'a' + Null", "-"},
    {"1 & 2 + 3", "15"},
    {"True & ''", "-1"},
    {"#1/31/2020# & ''", "2020-01-31"},
    {"#1/31/2020 2:05 PM# + 1", "2020-02-01 14:05:00"},
    {"#2020-03-01# - #2020-02-01#", "29"},
    {"(1=1)*5", "-5"},
    {"1=1", "True"},
    {"Not 1=1", "False"},
    {"True And Null", "-"},
    {"False And Null", "False"},
    {"True Xor True", "False"},
    {"False Eqv False", "True"},
    {"True Imp False", "False"},
    {"Null Imp True", "True"},
    {"'ABC' = 'abc'", "True"},
    {"'Größe' = 'Grösse'", "True"},
    {"'resume' = 'résumé'", "False"},
    {"'a' < 'B'", "True"},
    {"3 Between 1 And 3", "True"},
    {"3 Not In (1, 2)", "True"},
    {"Null Is Not Null", "False"},
    {"'a1' = 'a' & 1", "True"},
    {"{guid {00112233-4455-6677-8899-AABBCCDDEEFF}}", "{00112233-4455-6677-8899-AABBCCDDEEFF}"},
    // Like
    {"'Clear 3' Like 'clear*'", "True"},
    {"'Clear 3' Like '*#'", "True"},
    {"'Clear' Like '?lea?'", "True"},
    {"'Clear' Like 'C[a-l]*[!a-d]'", "True"},
    {"'Clear' Not Like 'C[!l]*'", "True"},
    {"'a*b' Like 'a[*]b'", "True"},
    {"'aXb' Like 'a[*]b'", "False"},
    {"'ÄRGER' Like 'är*'", "True"},
    {"'ab' Like '*a*b*'", "True"},
    {"'' Like '*'", "True"},
    {"Null Like '*'", "-"},
    {"'10%' Like '10%'", "True"},
    {"'Clear' ALike 'c%_'", "True"},
    {"'abcabd' Like '*ab[d]'", "True"},
    {"'-' Like '[a-]' And 'b' Like '[!c-e]'", "True"},
    {"'b' Like '[a-]' Or 'd' Like '[!c-e]'", "False"},
    {"'axb' Like '*ab' Or 'ab' Like '*abc'", "False"},
    {"'aab' Like '*ab' And 'xabyab' Like '*ab'", "True"},
    // Functions of text
    {"Left('Größe', 3) & Right('Größe', 2) & Mid('Größe', 3, 2)", "Größeöß"},
    {"Mid$('abc', 5)", ""},
    {"Len('Größe')", "5"},
    {"InStr('abcABC', 'B')", "2"},
    {"InStr(3, 'abcABC', 'B')", "5"},
    {"InStr(1, 'abcABC', 'B', 0)", "5"},
    {"InStrRev('a.b.c', '.') & InStrRev('a.b.c', '.', 3) & InStrRev('abc', 'x')", "420"},
    {"UCase('größe') & LCase('ÄB')", "GRÖßEäb"},
    {"'[' & Trim('  a ') & LTrim('  b') & RTrim('c  ') & ']'", "[abc]"},
    {"Replace('aXbxc', 'x', '-')", "a-b-c"},
    {"Replace('aaa', 'a', 'b', 1, 2)", "bba"},
    {"StrComp('a', 'A') & StrComp('a', 'B') & StrComp('a', 'A', 0)", "0-11"},
    {"StrReverse('abc') & Space(2) & String(3, '*')", "cba  ***"},
    {"Asc('€') & ' ' & Chr(128) & ' ' & AscW('€')", "128 € 8364"},
    {"Val(' 12.5 kg') & ' ' & Val('x') & ' ' & Val('&HFF')", "12.5 0 255"},
    {"Str(5) & Str(-5)", " 5-5"},
    {"StrConv('low iron', 3)", "Low Iron"},
    {"Left(#2020-01-31#, 4)", "2020"},
    {"Left(Null, 2)", "-"},
    // of numbers and of any value
    {"Abs(-3) & Int(-2.5) & Fix(-2.5) & Sgn(-4)", "3-3-2-1"},
    {"Round(2.5) & Round(3.5) & ' ' & Round(2.345, 2)", "24 2.35"},
    {"Sqr(9) & ' ' & Exp(0) & ' ' & Log(1) & ' ' & Atn(0)", "3 1 0 0"},
    {"CInt(2.5) & CLng('3.5') & ' ' & CDbl('1e3') & ' ' & CByte(255)", "24 1000 255"},
    {"CCur(1.23456)", "1.2346"},
    {"CSng(0.1)=0.1", "False"},
    {"CBool(2) & CBool('False')", "-10"},
    {"CStr(1.50) & CStr(True)", "1.5-1"},
    {"Hex(255) & Oct(8)", "FF10"},
    {"IsNumeric('1.5e3') & IsNumeric('abc') & IsNumeric(Null) & IsNumeric(' 7 ')", "-100-1"},
    {"IIf(Null, 1, 2)", "2"},
    {"IIf(1 < 2, 'yes', 5)", "yes"},
    {"Nz(Null, 7) & '[' & Nz(Null) & ']'", "7[]"},
    {"Switch(1=2, 'a', 2=2, 'b')", "b"},
    {"Switch(1=2, 'a')", "-"},
    {"Choose(2, 'a', 'b')", "b"},
    {"IsNull(Null)", "True"},
    // of dates
    {"Year('2020-02-29') & Month(#2/29/2020#) & Day('29-Feb-2020')", "2020229"},
    {"Hour(#10:30:15 PM#) & ':' & Minute(0.5) & ':' & Second(#0:0:59#)", "22:0:59"},
    {"Weekday(#2020-02-29#) & Weekday(#2020-02-29#, 2)", "76"},
    {"DateAdd('m', 1, #2020-01-31#)", "2020-02-29"},
    {"DateAdd('yyyy', -1, #2020-02-29 12:00#)", "2019-02-28 12:00:00"},
    {"DateAdd('h', 25, #2020-01-31 12:00#)", "2020-02-01 13:00:00"},
    {"DateAdd('d', -1, #1899-12-30 06:00#)", "1899-12-29 06:00:00"},
    {"DateDiff('d', #2020-01-31 23:00#, #2020-02-01 01:00#)", "1"},
    {"DateDiff('m', #2020-01-31#, #2021-02-01#)", "13"},
    {"DateDiff('ww', #2020-02-29#, #2020-03-01#)", "1"},
    {"DateDiff('s', #1:00#, #0:59#)", "-60"},
    {"DatePart('q', #2020-05-01#) & DatePart('y', #2020-12-31#)", "2366"},
    {"DatePart('ww', #2021-01-01#, 2, 2) & ' ' & DatePart('ww', #2020-12-31#)", "53 53"},
    {"DateSerial(2020, 14, 0)", "2021-01-31"},
    {"TimeSerial(25, -30, 0) > 1", "True"},
    {"DateValue('January 31, 2020 10:00') + TimeValue('10:30')", "2020-01-31 10:30:00"},
    {"CDate('31/1/2020')", "2020-01-31"},
    {"Year('1/1/29') & Year('1/1/30') & IsDate('1/1/2000000') & IsDate('13/13/2020')",
     "2029193000"},
    {"Minute(#12:15 AM#) & Hour(#12:15 AM#) & Hour(#12:15 PM#)", "15012"},
    {"MonthName(2) & MonthName(2, True) & WeekdayName(1)", "FebruaryFebSunday"},
    {"DatePart('n', #10:31:15#) & DatePart('s', #10:31:15#) & DatePart('h', #10:31:15#)", "311510"},
    {"DatePart('w', #2020-02-29#) & DatePart('d', #2020-02-29#) & DatePart('m', #2020-02-29#)",
     "7292"},
    {"CDate('2020-01-31T10:30:15')", "2020-01-31 10:30:15"},
    {"IsDate('1/1/99999999999') & IsDate('1-Fe-2020') & IsDate('1-Febr-2020')", "00-1"},
    {"IsDate('13:00 PM') & IsDate('24:00') & IsDate('23:60') & IsDate('0:0:60')", "0000"},
    {"Hour('1/31/2020 10 PM') & ' ' & Second('12:00:07 AM')", "22 7"},
    {"IsDate('2/30/2020') & IsDate('2/29/2020') & IsDate(#1:00#)", "0-1-1"},
    {"Now() >= Date And Time() < 1", "True"},
    {"#12/31/1899#", "1899-12-31"},
    {"DateSerial(100, 1, 1)", "0100-01-01"},
    {"Year(DateSerial(9999, 12, 31))", "9999"},
    // Formats
    {"Format(1234567.891, '#,##0.00')", "1,234,567.89"},
    {"Format(0.5, '0%') & Format(2.5, '0') & Format(1.005, '0.00')", "50%31.01"},
    {"Format(-5, '0.0;(0.0)') & Format(0, '0;-0;zero') & Format(-3, '000')", "(5.0)zero-003"},
    {"Format(0.25, '#.##') & Format(3, '0.##') & Format(1234, '0,k')", ".253.1k"},
    {"Format(12345, '0.00E+00') & ' ' & Format(0.00012, 'Scientific')", "1.23E+04 1.20E-04"},
    {"Format(12.5, 'Currency') & Format(-1.5, 'Currency')", "$12.50($1.50)"},
    {"Format(1, 'Yes/No') & Format(0, 'Yes/No')", "YesNo"},
    {"Format(5551234, '000-0000')", "555-1234"},
    {"Format(#2020-01-05 14:03:09#, 'yyyy-mm-dd hh:nn:ss')", "2020-01-05 14:03:09"},
    {"Format(#2020-01-05 14:03:09#, 'd mmm yy h:mm AM/PM')", "5 Jan 20 2:03 PM"},
    {"Format(#2020-01-05#, 'dddd \"week\" ww, q')", "Sunday week 2, 1"},
    {"Format(#2020-01-05#, 'Long Date')", "Sunday, January 5, 2020"},
    {"Format('ab', '>@@@') & Format('abc', '<')", " ABabc"},
    {"Format(#2020-01-05#) & Format(1.50)", "2020-01-051.5"},
    {"FormatNumber(1234.5) & FormatPercent(0.123, 1)", "1,234.5012.3%"},
};

TEST(Expression, Gives) {
  TranslatedDatabase db;
  for (const auto& [expression, value] : kExamples) {
    EXPECT_EQ(db.value(expression), value) << expression;
  }
}

TEST(ExpressionFailure, RaisesWhatAFunctionCannotTake) {
  TranslatedDatabase db;
  const auto numberOf = [&](const std::string& expression) {
    return test::raisedBy([&] { db.value(expression); }).number;
  };
  const std::pair<const char*, std::int32_t> cases[] = {
      {"CInt('abc')", kTypeMismatch},
      {"'abc' * 2", kTypeMismatch},
      {"CInt(40000)", kOverflow},
      {"Left('a', -1)", kInvalidCall},
      {"Sqr(-1)", kInvalidCall},
      {"InStr(0, 'a', 'a')", kInvalidCall},
      {"Space(2000000000)", kInvalidCall},
      {"DateAdd('x', 1, Date())", kInvalidCall},
      {"DateAdd('yyyy', 9000, Date())", kOverflow},
      {"Year('soon')", kTypeMismatch},
      {"10 ^ 400", kOverflow},
  };
  for (const auto& [expression, number] : cases) {
    EXPECT_EQ(numberOf(expression), number) << expression;
  }
  const std::string percents(200, '%');
  EXPECT_EQ(numberOf("Format(1, '0.##" + percents + "')"), kOverflow);
}

}  // namespace
}  // namespace orv::store::sql
