// Fuzzes reading and writing JSON. Our parser must accept the same texts as nlohmann's parser and
// return the same values. The input is the text.
#include "api/JSON.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "api/MessageRecords.h"
#include "fuzz/Check.h"

namespace {

using Json = nlohmann::json;
using seldial::JSONValue;

/// The integer that a number with a fraction or an exponent is, found by moving the decimal point
/// in the text. `number` follows JSON's grammar.
std::optional<std::int64_t> integerByMovingThePoint(const std::string& number) {
  const std::size_t mark = std::min(number.find_first_of("eE"), number.size());
  std::string digits = number.substr(0, mark);
  const bool negative = digits[0] == '-';
  if (negative) digits.erase(0, 1);
  const std::size_t point = std::min(digits.find('.'), digits.size());
  std::string whole = digits.substr(0, point);
  std::string fraction = point < digits.size() ? digits.substr(point + 1) : "";
  if ((whole + fraction).find_first_not_of('0') == std::string::npos) return 0;

  const double exponent = mark < number.size() ? std::strtod(&number[mark + 1], nullptr) : 0;
  const double far = static_cast<double>(number.size()) + 40;
  if (std::fabs(exponent) > far) return {};  // far too large, or a fraction with many zeros
  for (int step = 0; step < exponent; ++step) {
    whole += fraction.empty() ? '0' : fraction[0];
    if (!fraction.empty()) fraction.erase(0, 1);
  }
  for (int step = 0; step > exponent; --step) {
    fraction.insert(0, 1, whole.empty() ? '0' : whole.back());
    if (!whole.empty()) whole.pop_back();
  }
  if (fraction.find_first_not_of('0') != std::string::npos) return {};
  whole.erase(0, whole.find_first_not_of('0'));
  if (whole.size() > 19) return {};
  const unsigned long long magnitude = std::stoull(whole);
  const auto most = static_cast<unsigned long long>(std::numeric_limits<std::int64_t>::max());
  if (magnitude > most + (negative ? 1 : 0)) return {};
  return static_cast<std::int64_t>(negative ? ~magnitude + 1 : magnitude);
}

/// A document that preserves the text of floating-point numbers, as {"float": TEXT}.
class Spellings final : public nlohmann::detail::json_sax_dom_parser<Json> {
 public:
  explicit Spellings(Json& document) : json_sax_dom_parser(document, false) {}
  bool number_float(double /*value*/, const std::string& text) {
    return start_object(1) && keyOf("float") && valueOf(text) && end_object();
  }

 private:
  bool keyOf(std::string key) { return json_sax_dom_parser::key(key); }
  bool valueOf(std::string text) { return json_sax_dom_parser::string(text); }
};

void checkNumber(const JSONValue& ours, const Json& theirs, const Json& spelling) {
  if (theirs.is_number_float()) {
    const auto integer = integerByMovingThePoint(spelling.at("float").get<std::string>());
    CHECK(ours.integer() == integer);
    CHECK(ours.number() == (integer ? static_cast<double>(*integer) : theirs.get<double>()));
  } else if (theirs.is_number_unsigned() &&
             theirs.get<std::uint64_t>() >
                 std::uint64_t{std::numeric_limits<std::int64_t>::max()}) {
    CHECK(!ours.integer());
    CHECK(ours.number() == static_cast<double>(theirs.get<std::uint64_t>()));
  } else {
    CHECK(ours.integer() == theirs.get<std::int64_t>());
  }
}

void checkEqual(const JSONValue& ours, const Json& theirs, const Json& spelling);

void checkContainer(const JSONValue& ours, const Json& theirs, const Json& spelling) {
  if (theirs.is_array()) {
    CHECK(ours.array() != nullptr && ours.array()->size() == theirs.size());
    for (std::size_t index = 0; index < theirs.size(); ++index) {
      checkEqual(ours.array()->at(index), theirs[index], spelling[index]);
    }
    return;
  }
  CHECK(ours.dictionary() != nullptr && ours.dictionary()->size() == theirs.size());
  for (const auto& [key, value] : theirs.items()) {
    const auto member = ours.dictionary()->find(key);
    CHECK(member != ours.dictionary()->end());
    checkEqual(member->second, value, spelling.at(key));
  }
}

/// Recursive; libFuzzer's inputs are too short to overflow the stack.
void checkEqual(const JSONValue& ours, const Json& theirs, const Json& spelling) {
  if (theirs.is_structured()) return checkContainer(ours, theirs, spelling);
  if (theirs.is_number()) return checkNumber(ours, theirs, spelling);
  CHECK(ours.isNull() == theirs.is_null());
  CHECK(ours.boolean().has_value() == theirs.is_boolean());
  CHECK(!theirs.is_boolean() || ours.boolean() == theirs.get<bool>());
  CHECK((ours.text() != nullptr) == theirs.is_string());
  CHECK(!theirs.is_string() || *ours.text() == theirs.get_ref<const std::string&>());
}

/// Checks the fields of a command against nlohmann's values.
void checkCommand(const std::string& text, const Json& theirs, const JSONValue& ours) {
  const auto record = seldial::SetHotKeyApi::fromJSONString(text);
  const auto command = theirs.find("command");
  const bool hasCommand = command != theirs.end() && command->is_string();
  CHECK(record.Command.has_value() == hasCommand);
  CHECK(!hasCommand || *record.Command == command->get_ref<const std::string&>());
  const auto integer = [&ours](const char* key) {
    const auto member = ours.dictionary()->find(key);
    return member != ours.dictionary()->end() ? member->second.integer() : std::nullopt;
  };
  const auto field = [&integer](const char* key, std::int64_t fallback) {
    const auto value = integer(key).value_or(-1);
    return value >= 0 && value <= 65535 ? value : fallback;
  };
  CHECK(record.VirtualKey == field("virtualkey", 65535));
  CHECK(record.ReadDelay == field("readdelay", 500));
  const auto flag = [&theirs, &integer](const char* key) {
    return integer(key) == 1 || (theirs.contains(key) && theirs.at(key) == Json(true));
  };
  CHECK(record.ModifierAlt == flag("modifierAlt"));
  CHECK(record.ModifierCommand == flag("modifierCommand"));
  CHECK(record.ModifierCtrl == flag("modifierCtrl"));
  CHECK(record.ModifierShift == flag("modifierShift"));
}

/// Whether both values are equal. A double with an integral value is read back as an integer.
/// Recursive.
bool isSame(const JSONValue& one, const JSONValue& other) {
  if (const auto* array = one.array()) {
    return other.array() != nullptr &&
           std::equal(array->begin(), array->end(), other.array()->begin(), other.array()->end(),
                      isSame);
  }
  if (const auto* dictionary = one.dictionary()) {
    return other.dictionary() != nullptr &&
           std::equal(dictionary->begin(), dictionary->end(), other.dictionary()->begin(),
                      other.dictionary()->end(), [](const auto& member, const auto& otherMember) {
                        return member.first == otherMember.first &&
                               isSame(member.second, otherMember.second);
                      });
  }
  if (const auto* text = one.text()) return other.text() != nullptr && *text == *other.text();
  return one.isNull() == other.isNull() && one.boolean() == other.boolean() &&
         one.number() == other.number();
}

void checkWriting(const JSONValue& ours) {
  const auto written = seldial::writeJSON(*ours.dictionary());
  CHECK(written);
  CHECK(written->find_first_of("\n\r\t\x7F") == std::string::npos);
  const auto again = seldial::readJSON(*written);
  CHECK(again && isSame(ours, *again));
  CHECK(Json::accept(*written));
}

void checkMembers(const std::string& text, const JSONValue& ours) {
  const auto some = seldial::readJSONMembers(text, {"a", "command", ""});
  CHECK(some.has_value());
  CHECK((some->array() != nullptr) == (ours.array() != nullptr));
  if (some->array() != nullptr) {
    CHECK(some->array()->empty());
    return;
  }
  std::size_t kept = 0;
  for (const auto& [key, value] : *ours.dictionary()) {
    const auto member = some->dictionary()->find(key);
    const bool wanted = key == "a" || key == "command" || key.empty();
    CHECK(wanted == (member != some->dictionary()->end()));
    if (!wanted) continue;
    ++kept;
    const bool container = value.array() != nullptr || value.dictionary() != nullptr;
    CHECK(member->second.isNull() == (container || value.isNull()));
    CHECK(member->second.number() == value.number());
    CHECK(value.text() == nullptr || *member->second.text() == *value.text());
  }
  CHECK(kept == some->dictionary()->size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const auto ours = seldial::readJSON(text);
  Json theirs = Json::parse(text, nullptr, false);
  // nlohmann's parser treats a raw NUL as the end of the text.
  const bool valid =
      !theirs.is_discarded() && theirs.is_structured() && text.find('\0') == std::string::npos;
  CHECK(ours.has_value() == valid);
  CHECK(seldial::readJSONMembers(text, {}).has_value() == valid);
  if (!valid) {
    CHECK(!seldial::SetHotKeyApi::fromJSONString(text).Command);
    return 0;
  }
  Json spelling;
  Spellings spellings(spelling);
  CHECK(Json::sax_parse(text, &spellings));
  checkEqual(*ours, theirs, spelling);
  checkMembers(text, *ours);
  if (ours->dictionary() == nullptr) return 0;
  checkCommand(text, theirs, *ours);
  checkWriting(*ours);
  return 0;
}
