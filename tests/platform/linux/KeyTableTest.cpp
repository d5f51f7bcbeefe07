#include <gtest/gtest.h>

#include <map>

#include "platform/linux/KeyTable.h"

namespace seldial::platform::linux_port {
namespace {

/// X key codes by virtual key code.
const std::map<unsigned, unsigned> kKeys{
    {0, 38},    {1, 39},    {2, 40},    {3, 41},    {4, 43},    {5, 42},    {6, 52},   {7, 53},
    {8, 54},    {9, 55},    {10, 94},   {11, 56},   {12, 24},   {13, 25},   {14, 26},  {15, 27},
    {16, 29},   {17, 28},   {18, 10},   {19, 11},   {20, 12},   {21, 13},   {22, 15},  {23, 14},
    {24, 21},   {25, 18},   {26, 16},   {27, 20},   {28, 17},   {29, 19},   {30, 35},  {31, 32},
    {32, 30},   {33, 34},   {34, 31},   {35, 33},   {36, 36},   {37, 46},   {38, 44},  {39, 48},
    {40, 45},   {41, 47},   {42, 51},   {43, 59},   {44, 61},   {45, 57},   {46, 58},  {47, 60},
    {48, 23},   {49, 65},   {50, 49},   {51, 22},   {53, 9},    {54, 134},  {55, 133}, {56, 50},
    {57, 66},   {58, 64},   {59, 37},   {60, 62},   {61, 108},  {62, 105},  {64, 195}, {65, 91},
    {67, 63},   {69, 86},   {71, 77},   {72, 123},  {73, 122},  {74, 121},  {75, 106}, {76, 104},
    {78, 82},   {79, 196},  {80, 197},  {81, 125},  {82, 90},   {83, 87},   {84, 88},  {85, 89},
    {86, 83},   {87, 84},   {88, 85},   {89, 79},   {90, 198},  {91, 80},   {92, 81},  {93, 132},
    {94, 97},   {95, 129},  {96, 71},   {97, 72},   {98, 73},   {99, 69},   {100, 74}, {101, 75},
    {102, 131}, {103, 95},  {104, 130}, {105, 191}, {106, 194}, {107, 192}, {109, 76}, {110, 135},
    {111, 96},  {113, 193}, {114, 118}, {115, 110}, {116, 112}, {117, 119}, {118, 70}, {119, 115},
    {120, 68},  {121, 117}, {122, 67},  {123, 113}, {124, 114}, {125, 116}, {126, 111}};

TEST(KeyTable, EveryVirtualKeyCodeHasItsPosition) {
  for (unsigned code = 0; code <= 0x200; ++code) {
    const auto expected = kKeys.find(code);
    const auto key = keyAtPosition(code);
    if (expected == kKeys.end()) {
      EXPECT_FALSE(key) << code;
    } else {
      ASSERT_TRUE(key) << code;
      EXPECT_EQ(*key, expected->second) << code;
    }
  }
}

TEST(KeyTable, EveryKeyHasItsVirtualKeyCode) {
  std::map<unsigned, unsigned> codes{{472, 63}};
  for (const auto& [code, key] : kKeys) codes[key] = code;
  for (unsigned key = 0; key <= 0x400; ++key) {
    const auto expected = codes.find(key);
    const auto code = virtualKeyAtPosition(key);
    if (expected == codes.end()) {
      EXPECT_FALSE(code) << key;
    } else {
      ASSERT_TRUE(code) << key;
      EXPECT_EQ(*code, expected->second) << key;
    }
  }
}

TEST(KeyTable, TheFunctionKeyHasNoKeyCodeOfEightBits) {
  EXPECT_FALSE(keyAtPosition(63));
}

TEST(KeyTable, ACodeFarAboveTheTableHasNoKey) {
  EXPECT_FALSE(keyAtPosition(65534));
  EXPECT_FALSE(keyAtPosition(0xFFFFFFFF));
  EXPECT_FALSE(virtualKeyAtPosition(0xFFFFFFFF));
  EXPECT_FALSE(virtualKeyAtPosition(0x10000 + 38));
}

}  // namespace
}  // namespace seldial::platform::linux_port
