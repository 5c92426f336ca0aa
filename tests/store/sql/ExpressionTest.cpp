// Operators and functions, from Access SQL to values.
#include <gtest/gtest.h>

#include "errors/Error.h"
#include "model/Raised.h"
#include "store/StoreError.h"
#include "store/sql/TranslatedDatabase.h"

namespace orv::store::sql {
namespace {

/// Expressions and their values; $ stands for an empty text.
constexpr const char* kOperators = R"(
7/2 -> 3.5 ; 7\2 -> 3 ; -7\2 -> -3 ; 7.5\2 -> 4 ; 7\0 -> - ; 1/0 -> - ; 7/-2 -> -3.5 ; 7 Mod 4 -> 3
10.6 Mod 4 -> 3 ; -7 Mod 3 -> -1 ; 7 Mod -3 -> 1 ; 7 Mod 0 -> - ; 2^3^2 -> 64 ; -2^2 -> -4
2^-1 -> 0.5 ; 2^+3 -> 8 ; 0^0 -> 1 ; 9^0.5 -> 3 ; 1+2*3 Mod 4 -> 3 ; 7-2-1 -> 4 ; 8/4/2 -> 1
8\4*2 -> 1 ; 9 Mod 5\2 -> 1 ; 2+3 Mod 2 -> 3 ; +-3 -> -3 ; -True -> 1 ; -'3' -> -3
-#1900-01-01# -> 1899-12-28 ; '3' * '4' -> 12 ; 3 - '1' -> 2
"a" & 1 & Null & 2.50 & 'it''s' -> a12.5it's ; "a""b" -> a"b ; Null & Null -> - ; 1 & 2 + 3 -> 15
'a' + 'b' -> ab ; '5' + 3 -> 8 ; 3 + '5' -> 8 ; 'a' + Null -> - ; Nz(Null, '5') + 1 -> 6
IIf(1=1, '5', 1) + '6' -> 56 ; IIf(1=1, 5, 'x') + 6 -> 11 ; True & '' -> -1 ; 1e3 & '' -> 1000
#1/31/2020# & '' -> 2020-01-31 ; #1/31/2020 2:05 PM# + 1 -> 2020-02-01 14:05:00
#2020-03-01# - #2020-02-01# -> 29 ; 1 + #2020-01-31# -> 2020-02-01 ; #2020-01-02# * 1 -> 43832
(1=1)*5 -> -5 ; 1=1 -> True ; Not 1=1 -> False ; Not Not True -> True ; Yes -> True ; No -> False
True And Null -> - ; False And Null -> False ; True Or Null -> True ; Not Null -> -
False Or 2 -> True ; True And False Or True -> True ; True Or True And False -> True
True Xor True -> False ; True Xor 2 -> False ; False Xor 2 -> True ; False Eqv False -> True
True Eqv 2 -> True ; True Eqv 0 -> False ; True Imp False -> False ; False Imp False -> True
Null Imp True -> True ; True Imp True -> True ; 1 Imp 0 Eqv 0 -> True ; 'ABC' = 'abc' -> True
'Größe' = 'Grösse' -> True ; 'resume' = 'résumé' -> False ; 'a' < 'B' -> True ; 1 < 1 -> False
1 <= 1 -> True ; 1 > 1 -> False ; 1 >= 1 -> True ; 1 <> 1 -> False ; 2 <> 1 -> True
3 Between 1 And 3 -> True ; 1 Between 1 And 3 -> True ; 0 Between 1 And 3 -> False
4 Not Between 1 And 3 -> True ; 'b' Between 'A' And 'C' -> True ; 3 Not In (1, 2) -> True
2 In (1, 2) -> True ; 'B' In ('a', 'b') -> True ; Null Is Not Null -> False ; Null Is Null -> True
'a1' = 'a' & 1 -> True ; 'A' & 'b' = 'aB' -> True ; 3 = '3' -> True ; 3 < '20' -> True
'3' = 3 -> True ; #2020-01-02# > '1/1/2020' -> True ; '1/1/2020' > #2020-01-02# -> False
.5 + 1. -> 1.5 ; 1E-2 -> 0.01
{guid {00112233-4455-6677-8899-AABBCCDDEEFF}} -> {00112233-4455-6677-8899-AABBCCDDEEFF}
{guid {0011223Z-4455-6677-8899-aabbccddeeff}} -> {0011223Z-4455-6677-8899-aabbccddeeff}
{guid {00112233-4455-6677-8899-aabbccddeeff}} -> {00112233-4455-6677-8899-AABBCCDDEEFF}
{guid {00112233-4455-6677-8899-AABBCCDDEE-F}} -> {00112233-4455-6677-8899-AABBCCDDEE-F}
CCur(12345678901.2345) -> 12345678901.2345 ; CCur(9E14)*10 -> 9000000000000000
999999999999999999 -> 999999999999999999 ; 9999999999999999999 -> 1e+19
)";

constexpr const char* kLike = R"(
'Clear 3' Like 'clear*' -> True ; 'Clear 3' Like '*#' -> True ; 'Clear' Like '?lea?' -> True
'Clear' Like 'C[a-l]*[!a-d]' -> True ; 'Clear' Not Like 'C[!l]*' -> True
'Clear' Like 'CLEA' -> False ; 'a*b' Like 'a[*]b' -> True ; 'aXb' Like 'a[*]b' -> False
'ÄRGER' Like 'är*' -> True ; 'ab' Like '*a*b*' -> True ; '' Like '*' -> True ; '' Like '?' -> False
'a' Like '' -> False ; Null Like '*' -> - ; 'a' Like Null -> - ; '10%' Like '10%' -> True
'100' Like '10%' -> False ; 'Clear' ALike 'c%_' -> True ; 'a' ALike '?' -> False
'5' ALike '#' -> False ; '*x' ALike '*_' -> True ; 'b' ALike '[a-c]' -> True
'a_' Like 'a_' -> True ; 'ab' Like 'a_' -> False ; 'ab' ALike '*' -> False
'abcabd' Like '*ab[d]' -> True ; 'aab' Like '*ab' -> True ; 'xabyab' Like '*ab' -> True
'-' Like '[a-]' -> True ; 'a' Like '[a-]' -> True ; 'b' Like '[a-]' -> False
'-' Like '[-a]' -> True ; 'b' Like '[!c-e]' -> True ; 'c' Like '[!c-e]' -> False
'e' Like '[!c-e]' -> False ; 'F' Like '[!c-e]' -> True ; 'B' Like '[b-d]' -> True
'd' Like '[B-D]' -> True ; 'e' Like '[b-d]' -> False ; 'a' Like '[b-d]' -> False
'f' Like '[b-df]' -> True ; 'a' Like '[]' -> False ; 'a' Like '[!]' -> True
'axb' Like '*ab' -> False ; 'ab' Like '*abc' -> False ; '0' Like '#' -> True ; '9' Like '#' -> True
'/' Like '#' -> False ; ':' Like '#' -> False ; 'aXbXc' Like 'a*b*d' -> False ; 5 Like '5' -> True
#2020-01-31# Like '2020*' -> True
)";

constexpr const char* kText = R"(
Left('Größe', 3) & Right('Größe', 2) & Mid('Größe', 3, 2) -> Größeöß ; Left('abc', 3) -> abc
Left('abc', 4) -> abc ; Left('abc', 0) -> $ ; Right('abc', 3) -> abc ; Right('abc', 4) -> abc
Right('abc', 0) -> $ ; Mid$('abc', 5) -> $ ; Mid('abc', 4) -> $ ; Mid('abc', 3) -> c
Mid('abc', 1) -> abc ; Mid('abc', 2, 0) -> $ ; Mid('abc', 2, 1) -> b ; Left(#2020-01-31#, 4) -> 2020
Left(Null, 2) -> - ; Len('Größe') -> 5 ; Len('') -> 0 ; Len(12.50) -> 4 ; Len(#2020-01-31#) -> 10
InStr('abcABC', 'B') -> 2 ; InStr(3, 'abcABC', 'B') -> 5 ; InStr(1, 'abcABC', 'B', 0) -> 5
InStr(5, 'abcABC', 'B') -> 5 ; InStr(6, 'abcABC', 'B') -> 0 ; InStr(1, 'aB', 'b', 1) -> 2
InStr('abc', '') -> 1 ; InStr(3, 'abc', '') -> 3 ; InStr(4, 'abc', '') -> 0 ; InStr('', '') -> 0
InStrRev('a.b.c', '.') -> 4 ; InStrRev('a.b.c', '.', 4) -> 4 ; InStrRev('a.b.c', '.', 3) -> 2
InStrRev('abc', 'x') -> 0 ; InStrRev('abc', 'abc') -> 1 ; InStrRev('abc', 'abcd') -> 0
InStrRev('abc', 'c', 4) -> 0 ; InStrRev('abc', 'C', 3) -> 3 ; InStrRev('abc', 'C', -1, 0) -> 0
InStrRev('abc', 'A', 1) -> 1 ; InStrRev('abc', '', 2) -> 2 ; InStrRev('abc', '') -> 3
InStrRev('', '') -> 0 ; UCase('größe') -> GRÖßE ; LCase('ÄB') -> äb
'[' & Trim('  a ') & ']' -> [a] ; Trim('  ') -> $ ; '[' & LTrim(' b ') & ']' -> [b ]
'[' & RTrim(' c ') & ']' -> [ c] ; Replace('aXbxc', 'x', '-') -> a-b-c
Replace('aXbxc', 'x', '-', 1, -1, 0) -> aXb-c ; Replace('aaa', 'a', 'b', 1, 2) -> bba
Replace('aaa', 'a', 'b', 1, 0) -> aaa ; Replace('aaa', '', 'b') -> aaa
Replace('abcb', 'b', 'x', 2) -> xcx ; Replace('abcb', 'b', 'x', 3) -> cx
Replace('ab', 'b', 'x', 3) -> $ ; Replace('aaaa', 'aa', 'a') -> aa
Replace('abab', 'AB', 'b') -> bb ; StrComp('a', 'A') -> 0 ; StrComp('a', 'B') -> -1
StrComp('b', 'A') -> 1 ; StrComp('a', 'A', 0) -> 1 ; StrComp('A', 'a', 0) -> -1
StrComp('a', 'a', 0) -> 0 ; StrComp('a', 'A', 1) -> 0
StrReverse('abc') & Space(2) & String(3, '*') -> cba  *** ; String(2, 'xy') -> xx
String(2, 298) -> ** ; String(0, 'x') -> $ ; Space(0) -> $ ; String(2, 65) -> AA ; Asc('€') -> 128
Asc('Ÿ') -> 159 ; Asc('a') -> 97 ; Asc('ÿ') -> 255 ; Asc('Ā') -> 63 ; AscW('€') -> 8364
Chr(128) -> € ; Chr(159) -> Ÿ ; Chr(65) -> A ; Chr(255) -> ÿ ; AscW(Chr(160)) -> 160
AscW(Chr(127)) -> 127 ; AscW(Chr(0)) -> 0 ; ChrW(8364) -> € ; AscW(ChrW(1114111)) -> 1114111
AscW(ChrW(0)) -> 0
Chr(130) & Chr(131) & Chr(132) & Chr(133) & Chr(134) & Chr(135) & Chr(136) & Chr(137) -> ‚ƒ„…†‡ˆ‰
Chr(138) & Chr(139) & Chr(140) & Chr(142) & Chr(145) & Chr(146) & Chr(147) & Chr(148) -> Š‹ŒŽ‘’“”
Chr(149) & Chr(150) & Chr(151) & Chr(152) & Chr(153) & Chr(154) & Chr(155) & Chr(156) -> •–—˜™š›œ
Str(5) & Str(-5) & Str(0) ->  5-5 0 ; StrConv('low\iron', 1) -> LOW\IRON
StrConv('LOW Iron', 2) -> low iron ; StrConv('low IRON', 3) -> Low Iron
StrConv('a' & Chr(9) & 'b', 3) = 'A' & Chr(9) & 'B' -> True ; Val(' 12.5 kg') -> 12.5
Val('x') -> 0 ; Val('&HFF') -> 255 ; Val('&o17') -> 15 ; Val('1 2 3') -> 123
Val('-1.5e2x') -> -150 ; Val('+5') -> 5 ; Val('.5') -> 0.5 ; Val('-') -> 0 ; Val('e5') -> 0
Val('inf') -> 0 ; Val('') -> 0 ; Val('1e999') -> 0
Val('1' & Chr(9) & '2' & Chr(10) & '3' & Chr(13) & '4') -> 1234
)";

constexpr const char* kNumbers = R"(
Abs(-3) -> 3 ; Abs(-2.5) -> 2.5 ; Abs('-4') -> 4 ; Int(2.5) -> 2 ; Int(-2.5) -> -3 ; Fix(-2.5) -> -2
Sgn(-4) -> -1 ; Sgn(0) -> 0 ; Sgn(0.5) -> 1 ; Sqr(9) -> 3 ; Sqr(0) -> 0 ; Exp(0) -> 1 ; Log(1) -> 0
Exp(1) -> 2.718281828459045 ; Log(10) -> 2.302585092994046 ; Atn(1) -> 0.7853981633974483
Sin(1) -> 0.8414709848078965 ; Cos(0) -> 1 ; Cos(1) -> 0.5403023058681398
Tan(1) -> 1.5574077246549023 ; Round(2.5) -> 2 ; Round(3.5) -> 4 ; Round(-2.5) -> -2
Round(2.345, 2) -> 2.35 ; Round(2.5, 0) -> 2 ; Round(2.25, 1) -> 2.2 ; Round(0.5, 22) -> 0.5
Round(1e300, 2) -> 1e+300 ; Round(7) -> 7 ; CInt(2.5) -> 2 ; CLng('3.5') -> 4 ; CDbl('1e3') -> 1000
CByte(255) -> 255 ; CByte(0) -> 0 ; CInt(32767) -> 32767 ; CInt(-32768) -> -32768
CLng(2147483647) -> 2147483647 ; CDec('1.5') -> 1.5 ; CCur(1.23456) -> 1.2346
CCur(-0.001) -> -0.0010 ; CCur('12') -> 12.0000 ; CSng(0.1)=0.1 -> False
CSng(0.1) -> 0.10000000149011612 ; CSng(0.5)=0.5 -> True ; CStr(1.50) -> 1.5 ; CStr(True) -> -1
CBool(2) -> True ; CBool(0) -> False ; CBool('False') -> False ; CBool('true') -> True
CBool('0') -> False ; Hex(255) -> FF ; Hex(-1) -> FFFFFFFF ; Oct(8) -> 10 ; Oct(-1) -> 37777777777
IsNumeric('1.5e3') -> True ; IsNumeric('abc') -> False ; IsNumeric(Null) -> False
IsNumeric(' 7 ') -> True ; IsNumeric('+7') -> True ; IsNumeric('7 x') -> False
IsNumeric('') -> False ; IsNumeric(5) -> True ; IsNumeric(0.5) -> True ; IsNumeric('inf') -> False
IsNumeric('-') -> False ; IIf(Null, 1, 2) -> 2 ; IIf(1 < 2, 'yes', 5) -> yes ; IIf(2, 'a', 'b') -> a
IsNull(Null) -> True ; IsNull(0) -> False ; Nz(Null, 7) -> 7 ; Nz(3, 7) -> 3
'[' & Nz(Null) & ']' -> [] ; Nz(Null + 1) -> 0 ; Switch(1=2, 'a', 2=2, 'b') -> b
Switch(1=2, 'a') -> - ; Switch(1=1, 1, 1=1, 2) -> 1 ; Choose(1, 'a', 'b') -> a
Choose(2.9, 'a', 'b') -> b ; Choose(3, 'a', 'b') -> - ; Choose('2', 'a', 'b') -> b
)";

constexpr const char* kDates = R"(
Year('2020-02-29') & Month(#2/29/2020#) & Day('29-Feb-2020') -> 2020229 ; Day(43831.999999) -> 2
Hour(#10:30:15 PM#) & ':' & Minute(0.5) & ':' & Second(#0:0:59#) -> 22:0:59
Weekday(#2020-02-29#) -> 7 ; Weekday(#2020-02-29#, 2) -> 6 ; Weekday(#2020-02-29#, 7) -> 1
Weekday(#2020-02-29#, 0) -> 7 ; Weekday(#2020-03-01#, 2) -> 7 ; Weekday(#1899-12-29 18:00#) -> 6
Weekday(DateSerial(100, 1, 1)) -> 6 ; Weekday(#9999-12-31#) -> 6 ; Weekday(#1899-12-30#) -> 7
Year(-657434) -> 100 ; Year(2958465.9) -> 9999 ; Year(DateSerial(9999, 12, 31)) -> 9999
DateAdd('m', 1, #2020-01-31#) -> 2020-02-29 ; DateAdd('q', 1, #2020-11-30#) -> 2021-02-28
DateAdd('yyyy', -1, #2020-02-29 12:00#) -> 2019-02-28 12:00:00
DateAdd('m', -1, #2020-03-31#) -> 2020-02-29
DateAdd('m', 1, #1899-11-30 06:00#) -> 1899-12-30 06:00:00
DateAdd('yyyy', -1900, #2000-01-01#) -> 0100-01-01
DateAdd('h', 25, #2020-01-31 12:00#) -> 2020-02-01 13:00:00
DateAdd('s', -1, #2020-01-01#) -> 2019-12-31 23:59:59
DateAdd('n', 90, #1899-12-29 23:00#) -> 1899-12-30 00:30:00
DateAdd('h', 1, #1899-12-29 06:00#) -> 1899-12-29 07:00:00
DateAdd('d', -1, #1899-12-30 06:00#) -> 1899-12-29 06:00:00
DateAdd('d', 1.9, #2020-01-01#) -> 2020-01-02 ; DateAdd('d', -1.9, #2020-01-02#) -> 2020-01-01
DateAdd('ww', 2, #2020-01-01 1:00#) -> 2020-01-15 01:00:00
DateAdd('y', 3, #2020-01-01#) -> 2020-01-04 ; DateAdd('W', 3, #2020-01-01#) -> 2020-01-04
DateDiff('d', #2020-01-31 23:00#, #2020-02-01 01:00#) -> 1
DateDiff('y', #2020-03-01#, #2020-02-28#) -> -2 ; DateDiff('m', #2020-01-31#, #2021-02-01#) -> 13
DateDiff('m', #2020-02-01#, #2020-02-29#) -> 0 ; DateDiff('q', #2020-03-31#, #2020-04-01#) -> 1
DateDiff('q', #2019-12-31#, #2020-01-01#) -> 1 ; DateDiff('q', #2020-04-01#, #2021-06-30#) -> 4
DateDiff('yyyy', #2019-12-31#, #2021-01-01#) -> 2 ; DateDiff('ww', #2020-02-29#, #2020-03-01#) -> 1
DateDiff('ww', #2020-03-01#, #2020-03-02#) -> 0 ; DateDiff('ww', #2020-03-01#, #2020-03-02#, 2) -> 1
DateDiff('w', #2020-01-01#, #2020-01-14#) -> 1 ; DateDiff('w', #2020-01-01#, #2020-01-15#) -> 2
DateDiff('w', #2020-01-15#, #2020-01-02#) -> -1 ; DateDiff('s', #1:00#, #0:59#) -> -60
DateDiff('h', #10:59#, #11:01#) -> 1 ; DateDiff('n', #10:00:59#, #10:01:00#) -> 1
DateDiff('h', #1899-12-29 23:00#, #1899-12-30 1:00#) -> 2
DateDiff('n', #10:00:01#, #10:00:59#) -> 0 ; DatePart('yyyy', #2020-05-01#) -> 2020
DatePart('q', #2020-03-31#) -> 1 ; DatePart('q', #2020-04-01#) -> 2
DatePart('q', #2020-12-31#) -> 4 ; DatePart('y', #2020-12-31#) -> 366
DatePart('y', #1900-12-31#) -> 365 ; DatePart('y', #2000-12-31#) -> 366
DatePart('y', #2020-01-01#) -> 1 ; DatePart('y', #2020-03-01#) -> 61
DatePart('n', #10:31:15#) & DatePart('s', #10:31:15#) & DatePart('h', #10:31:15#) -> 311510
DatePart('w', #2020-02-29#) & DatePart('d', #2020-02-29#) & DatePart('m', #2020-02-29#) -> 7292
DatePart('w', #2020-02-29#, 2) -> 6 ; DatePart('ww', #2020-12-31#) -> 53
DatePart('ww', #2020-12-31#, 1, 0) -> 53 ; DatePart('ww', #2020-01-04#) -> 1
DatePart('ww', #2020-01-05#) -> 2 ; DatePart('ww', #2021-01-01#, 2, 2) -> 53
DatePart('ww', #2021-01-04#, 2, 2) -> 1 ; DatePart('ww', #2024-12-30#, 2, 2) -> 1
DatePart('ww', #2024-12-29#, 2, 2) -> 52 ; DatePart('ww', #2015-01-01#, 2, 2) -> 1
DatePart('ww', #2020-01-04#, 1, 3) -> 52 ; DatePart('ww', #2020-01-05#, 1, 3) -> 1
DatePart('ww', #2023-01-01#, 1, 3) -> 1 ; DatePart('ww', #2019-12-31#, 1, 3) -> 52
DatePart('ww', #2020-01-06#, 2) -> 2 ; DateSerial(2020, 14, 0) -> 2021-01-31
DateSerial(1900, 2, 29) -> 1900-03-01 ; DateSerial(2000, 2, 29) -> 2000-02-29
DateSerial(0, 1, 2) -> 2000-01-02 ; DateSerial(29, 1, 2) -> 2029-01-02
DateSerial(30, 1, 2) -> 1930-01-02 ; DateSerial(99, 1, 2) -> 1999-01-02
DateSerial(100, 1, 1) -> 0100-01-01 ; DateSerial(100, -1187, 36525) -> 0101-01-01
DateSerial(2020, -1, 1) -> 2019-11-01 ; DateSerial(2020, 12, 32) -> 2021-01-01
#12/31/1899# -> 1899-12-31 ; TimeSerial(1, 2, 3) -> 1899-12-30 01:02:03
TimeSerial(25, -30, 0) -> 1899-12-31 00:30:00
DateValue('January 31, 2020 10:00') + TimeValue('10:30') -> 2020-01-31 10:30:00
Abs(Now() - Date - Time()) < 0.001 -> True ; Date() > #2020-01-01# And Time() >= 0 -> True
DateValue(Now()) = Date -> True ; MonthName(1) -> January ; MonthName(12) -> December
MonthName(2, True) -> Feb ; MonthName(2, False) -> February ; WeekdayName(1) -> Sunday
WeekdayName(7) -> Saturday ; WeekdayName(1, True, 2) -> Mon ; WeekdayName(7, False, 7) -> Friday
WeekdayName(2, 0, 0) -> Monday ; CDate('31/1/2020') -> 2020-01-31 ; CDate('1/31/2020') -> 2020-01-31
CDate('2/1/2020') -> 2020-02-01 ; CDate('13/12/20') -> 2020-12-13 ; CDate('12/12/29') -> 2029-12-12
CDate('1/1/30') -> 1930-01-01 ; CDate('2020/1/31') -> 2020-01-31 ; CDate('100-1-31') -> 0100-01-31
CDate('1/31/100') -> 0100-01-31 ; CDate(2) -> 1900-01-01 ; CDate('31 jan 2020') -> 2020-01-31
CDate('2020 Feb 5') -> 2020-02-05 ; CDate('5 Sept 30') -> 1930-09-05
CDate('May, 5, 29') -> 2029-05-05 ; CDate('Feb 5') = DateSerial(Year(Date()), 2, 5) -> True
CDate('5-Dec-1999') -> 1999-12-05 ; CDate('2/5') = DateSerial(Year(Date()), 2, 5) -> True
CDate('2020-01-31T10:30:15') -> 2020-01-31 10:30:15
CDate('1/31/2020 10 PM') -> 2020-01-31 22:00:00 ; CDate('12:00:07 AM') -> 1899-12-30 00:00:07
CDate('12:15 pm') -> 1899-12-30 12:15:00 ; CDate('1AM') -> 1899-12-30 01:00:00
CDate('23:59:59') -> 1899-12-30 23:59:59 ; CDate('29 Dec 1899 6:00') -> 1899-12-29 06:00:00
IsDate('24:00') -> False ; IsDate('23:60') -> False ; IsDate('0:0:60') -> False
IsDate('0:59:59') -> True ; IsDate('13:00 PM') -> False ; IsDate('0 AM') -> False
IsDate('13 AM') -> False ; IsDate('10:') -> False ; IsDate('1:2:3:4') -> False
IsDate('10:30 11:30') -> False ; IsDate('2020-01-31 X10:30') -> False
IsDate('9999999:00') -> False ; IsDate('2/30/2020') -> False ; IsDate('2/29/2020') -> True
IsDate('2/29/2019') -> False ; IsDate('4/31/2020') -> False ; IsDate('13/13/2020') -> False
IsDate('0/1/2020') -> False ; IsDate('1/0/2020') -> False ; IsDate('12/31/9999') -> True
IsDate('1/1/10000') -> False ; IsDate('1/1/099') -> False ; IsDate('1/1/2000000') -> False
IsDate('1/2/3/4') -> False ; IsDate('5') -> False ; IsDate('1-Fe-2020') -> False
IsDate('1-Febr-2020') -> True ; IsDate('1-Febx-2020') -> False ; IsDate('Feb') -> False
IsDate('Feb Feb 5') -> False ; IsDate('5 6 7 Feb') -> False ; IsDate('1.2.2020') -> False
IsDate('') -> False ; IsDate(5) -> False ; IsDate(#1:00#) -> True ; IsDate(Null) -> False
IsDate('1/1/99999999999') -> False
)";

constexpr const char* kFormats = R"(
Format(1234567.891, '#,##0.00') -> 1,234,567.89 ; Format(999, '#,##0') -> 999
Format(1000, '#,##0') -> 1,000 ; Format(0.5, '0%') -> 50% ; Format(0.5, '0%%') -> 5000%%
Format(2.5, '0') -> 3 ; Format(1.005, '0.00') -> 1.01 ; Format(-5, '0.0;(0.0)') -> (5.0)
Format(5, '0.0;(0.0)') -> 5.0 ; Format(0, '0;-0;zero') -> zero ; Format(-5, '0;;zero') -> -5
Format(0, '0;(0)') -> 0 ; Format(-3, '000') -> -003 ; Format(-0.4, '0') -> 0
Format(-0.5, '0') -> -1 ; Format(0.25, '#.##') -> .25 ; Format(3, '0.##') -> 3.
Format(0, '#.#') -> . ; Format(0, '#') -> $ ; Format(0, '0.0') -> 0.0 ; Format(12, '0.0#') -> 12.0
Format(12.34, '0.0#') -> 12.34 ; Format(12.345, '0.0##0') -> 12.3450 ; Format(7, '#0#') -> 07
Format(1234, '0,k') -> 1k ; Format(1234567, '0,,.00') -> 1.23 ; Format(1234567, '#,##0,') -> 1,235
Format(1234.5, '0.0,') -> 1234.5, ; Format(12345, '0.00E+00') -> 1.23E+04
Format(0.00012, 'Scientific') -> 1.20E-04 ; Format(0, '0.0E+0') -> 0.0E+0
Format(1234, '0.0E-0') -> 1.2E3 ; Format(0.0123, '0.0e-00') -> 1.2e-02
Format(9.99, '0.0E+0') -> 1.0E+1 ; Format(12345, '##0.0E+0') -> 123.5E+2
Format(12345, '.00E+0') -> 1.23E+4 ; Format(5, '0E0') -> 0E5 ; Format(12.5, 'Currency') -> $12.50
Format(-1.5, 'Currency') -> ($1.50) ; Format(1234.5, 'standard') -> 1,234.50
Format(1234.5, 'Fixed') -> 1234.50 ; Format(0.125, 'Percent') -> 12.50%
Format(1234.5, 'General Number') -> 1234.5
Format(1, 'Yes/No') & Format(-1, 'yes/no') & Format(0, 'Yes/No') -> YesYesNo
Format(-1, 'True/False') & Format(0, 'True/False') -> TrueFalse
Format(1, 'On/Off') & Format(-2, 'On/Off') & Format(0, 'On/Off') -> OnOnOff
Format(5551234, '000-0000') -> 555-1234 ; Format(5, '\#0') -> #5 ; Format(5, '"a;b"0') -> a;b5
Format(5, '0"x') -> 5x ; Format(5, '0\;0') -> 0;5 ; Format(5, '0\') -> 5
Format(123456789012345678, '0') -> 123456789012345680 ; Format(1.5, '0.0.0') -> 1.5.0
Format('1.5', '0.00') -> 1.50
Format(#2020-01-05 14:03:09#, 'yyyy-mm-dd hh:nn:ss') -> 2020-01-05 14:03:09
Format(#2020-01-05 14:03:09#, 'd mmm yy h:mm AM/PM') -> 5 Jan 20 2:03 PM
Format(#2020-03-05 14:07:09#, 'y w ww q m mm mmmm') -> 65 5 10 1 3 03 March
Format(#2020-03-05 4:07:09#, 'h hh n nn s ss') -> 4 04 7 07 9 09
Format(#2020-03-05#, 'd dd ddd dddd ddddd') -> 5 05 Thu Thursday 2020-03-05
Format(#2020-03-05#, 'dddddd') -> Thursday, March 5, 2020
Format(#2020-03-05 14:07:09#, 'c') -> 2020-03-05 14:07:09
Format(#1999-12-31#, 'yyy yy q') -> 1999 99 4 ; Format(#2020-04-01#, 'q') -> 2
Format(#14:07#, 'h:m h:mmm') -> 14:7 14:Dec ; Format(#0:07#, 'h AM/PM') -> 12 AM
Format(#12:00#, 'hhampm') -> 12pm ; Format(#11:59#, 'h a/p') -> 11 a
Format(#13:00#, 'h A/P') -> 1 P ; Format(#23:00#, 'h AMPM') -> 11 PM
Format(#2020-01-05#, '"day" d \d') -> day 5 d ; Format(#2020-01-05#, 'd"x') -> 5x
Format(#2020-01-05#, 'dddd \w\e\e\k ww, q') -> Sunday week 2, 1 ; Format(#2020-01-04#, 'ww') -> 1
Format(#2020-01-05#, 'd\') -> 5
Format(#2020-01-05 14:03:09#, 'Long Date') -> Sunday, January 5, 2020
Format(#2020-01-05 14:03:09#, 'medium date') -> 05-Jan-20
Format(#2020-01-05 14:03:09#, 'Short Date') -> 2020-01-05
Format(#2020-01-05 14:03:09#, 'General Date') -> 2020-01-05 14:03:09
Format(#2020-01-05 14:03:09#, 'Long Time') -> 2:03:09 PM
Format(#2020-01-05 4:03:09#, 'Medium Time') -> 04:03 AM ; Format(#14:03:09#, 'Short Time') -> 14:03
Format(5, 'd') -> 4 ; Format(5, '\d0') -> d5 ; Format(5, '"d"0') -> d5 ; Format(5, 'd0') -> d5
Format('2020-01-05', 'd') -> 5 ; Format('x', 'd') -> x ; Format('ab', '>@@@') ->  AB
Format('aBc', '<') -> abc ; Format('äb', '>') -> ÄB ; Format('abc', '@@') -> abc
Format('ab', '@-@-@') ->  -a-b ; Format('ab', '&-&-&') -> -a-b ; Format('AB', '<&&&!') -> ab
Format(#2020-01-05#) -> 2020-01-05 ; Format(1.50) -> 1.5 ; Format('ab', '0') -> ab
FormatNumber(1234.5) -> 1,234.50 ; FormatNumber(1234.5, 0) -> 1,235 ; FormatNumber(1, -1) -> 1.00
FormatNumber(0.5, 1) -> 0.5 ; Len(FormatNumber(1, 30)) -> 32 ; FormatPercent(0.123, 1) -> 12.3%
FormatPercent(0.5) -> 50.00% ; FormatDateTime(#2020-03-05 14:07:09#) -> 2020-03-05 14:07:09
FormatDateTime(#2020-03-05 14:07:09#, 1) -> Thursday, March 5, 2020
FormatDateTime(#2020-03-05 14:07:09#, 2) & FormatDateTime(#14:07:09#, 3) & FormatDateTime(#14:07:09#, 4) -> 2020-03-052:07:09 PM14:07
)";

TEST(Expression, Gives) {
  TranslatedDatabase db;
  for (const char* text : {kOperators, kLike, kText, kNumbers, kDates, kFormats}) {
    for (const std::string& example : parted(text)) {
      const std::size_t arrow = example.find(" -> ");
      const std::string value = example.substr(arrow + 4);
      EXPECT_EQ(db.value(example.substr(0, arrow)), value == "$" ? "" : value) << example;
    }
  }
}

TEST(ExpressionFailure, RaisesWhatAFunctionCannotTake) {
  TranslatedDatabase db;
  const std::tuple<int, const char*, const char*> cases[] = {
      {13, "Type mismatch", "CInt('abc') ; 'abc' * 2 ; 'abc' + 2 ; -'abc' ; CBool('maybe')"},
      {13, "Type mismatch: \"soon\" is no date", "Year('soon') ; CDate('soon')"},
      {6, "Overflow",
       "CInt(32768) ; CInt(-32769) ; CByte(256) ; CByte(-1) ; CLng(2147483648) ; CLng(-2147483649) "
       "; "
       "CSng(1e39) ; CCur(1e15) ; CCur(-1e15) ; 10^400 ; Exp(710) ; 2147483648\\1"},
      {6, "A date is not within the years 100 to 9999",
       "DateAdd('yyyy', 9000, Date()) ; DateAdd('d', 1, #9999-12-31#) ; Year(-657435) ; "
       "DateAdd('yyyy', -1901, #2000-01-01#) ; Year(2958466) ; DateSerial(10000, 1, 1) ; "
       "DateSerial(100, 1, 0) ; DateSerial(100, -1188, 40000)"},
      {5, "the date is not within the years 100 to 9999", "DateAdd('m', 200001, Date())"},
      {5, "an interval is one of yyyy, q, m, y, d, w, ww, h, n and s",
       "DateAdd('x', 1, Date()) ; DatePart('yy', Date()) ; DateDiff('', Date(), Date())"},
      {5, "a first day of the week is a number from 1 (Sunday) to 7",
       "Weekday(Date(), -1) ; Weekday(Date(), 8)"},
      {5, "MonthName takes 1 to 12", "MonthName(0) ; MonthName(13)"},
      {5, "WeekdayName takes 1 to 7", "WeekdayName(0) ; WeekdayName(8) ; WeekdayName(1, False, 8)"},
      {5, "a length is negative", "Left('a', -1) ; Right('a', -1) ; Mid('a', 1, -1) ; Space(-1)"},
      {5, "Mid starts before the first character", "Mid('abc', 0)"},
      {5, "InStr starts before the first character", "InStr(0, 'a', 'a')"},
      {5, "Replace starts before the first character", "Replace('a', 'a', 'b', 0)"},
      {5, "the text becomes too long", "Space(100000001) ; String(2000000000, 'x')"},
      {5, "StrConv takes the forms 1, 2 and 3", "StrConv('a', 0) ; StrConv('a', 4)"},
      {5, "String has no character to repeat", "String(2, '')"},
      {5, "there is no character", "Asc('') ; AscW('')"},
      {5, "Chr takes codes from 0 to 255", "Chr(-1) ; Chr(256)"},
      {5, "ChrW takes codes of Unicode", "ChrW(-1) ; ChrW(1114112)"},
      {5, "Sqr takes no negative number", "Sqr(-1)"},
      {5, "Log takes a number above 0", "Log(0)"},
      {5, "Round takes 0 to 22 digits", "Round(1, -1) ; Round(1, 23)"},
      {5, "there are too many decimals", "FormatNumber(1, 31) ; FormatPercent(1, 31)"},
      {5, "FormatDateTime takes forms from 0 to 4",
       "FormatDateTime(Date(), -1) ; FormatDateTime(Date(), 5)"},
      {kSyntaxError, "A pattern of Like has a [ without its ]", "'a' Like '[a' ; 'a' Like '[!'"},
  };
  for (const auto& [number, description, expressions] : cases) {
    const std::string whole =
        std::string(number == kInvalidCall ? "Invalid procedure call: " : "") + description;
    for (const std::string& expression : parted(expressions)) {
      const test::Raised raised = test::raisedBy([&] { db.value(expression); });
      EXPECT_EQ(raised.number, number) << expression;
      EXPECT_EQ(raised.description, whole) << expression;
    }
  }
  const std::string percents(200, '%');
  const test::Raised raised =
      test::raisedBy([&] { db.value("Format(1, '0.##" + percents + "')"); });
  EXPECT_EQ(raised.number, kOverflow);
  EXPECT_EQ(raised.description, "A number is too large for the pattern that it is to be shown by.");
}

}  // namespace
}  // namespace orv::store::sql
