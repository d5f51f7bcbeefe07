#include "hotkey/QKKeyGlyphTable.h"

namespace seldial {

const std::map<std::uint16_t, std::string_view>& QKKeyGlyphTable() {
  static const std::map<std::uint16_t, std::string_view> table{
      {36, "↩"},           {48, "⇥"},    {49, "⎵"},
      {51, "⌫"},           {53, "⎋"},    {kQKKeyCommand, "⌘"},
      {63, "⌘"},  // the function key, shown as a command key on purpose
      {kQKKeyShift, "⇧"},  {60, "⇧"},    {57, "⇪"},
      {kQKKeyOption, "⌥"}, {61, "⌥"},    {kQKKeyControl, "⌃"},
      {62, "⌃"},           {72, "🔊"},    {73, "🔈"},
      {74, "🔇"},           {117, "⌦"},   {115, "↖"},
      {119, "↘"},          {116, "⇞"},   {121, "⇟"},
      {123, "←"},          {124, "→"},   {125, "↓"},
      {126, "↑"},          {122, "F1"},  {120, "F2"},
      {99, "F3"},          {118, "F4"},  {96, "F5"},
      {97, "F6"},          {98, "F7"},   {100, "F8"},
      {101, "F9"},         {109, "F10"}, {103, "F11"},
      {111, "F12"},        {105, "F13"}, {107, "F14"},
      {113, "F15"},        {106, "F16"}, {64, "F17"},
      {79, "F18"},         {80, "F19"},  {90, "F20"},
  };
  return table;
}

}  // namespace seldial
