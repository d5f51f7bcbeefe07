#include <gtest/gtest.h>

#include "client/Options.h"
#include "ucclient/Dialling.h"

namespace seldial {
namespace {

using Words = std::vector<std::string>;

Words commandOf(const std::string& text) {
  std::string error;
  const auto words = parseDialCommand(text, error);
  EXPECT_TRUE(words) << text << ": " << error;
  return words.value_or(Words());
}

std::string errorOf(const std::string& text) {
  std::string error;
  EXPECT_FALSE(parseDialCommand(text, error)) << text;
  return error;
}

TEST(DialCommand, IsSplitAtSpacesOutsideQuotes) {
  EXPECT_EQ(commandOf("twinkle --call {}"), (Words{"twinkle", "--call", "{}"}));
  EXPECT_EQ(commandOf(R"(  a 'b c' "d e"f \"g "h\"" '' {} )"),
            (Words{"a", "b c", "d ef", "\"g", "h\"", "", "{}"}));
}

TEST(DialCommand, NothingElseIsSpecial) {
  EXPECT_EQ(commandOf("x $HOME `id` $(id) * ~ ; | > {}"),
            (Words{"x", "$HOME", "`id`", "$(id)", "*", "~", ";", "|", ">", "{}"}));
}

TEST(DialCommand, WithoutAPlaceholderTheNumberIsItsLastWord) {
  EXPECT_EQ(commandOf("call --now"), (Words{"call", "--now", "{}"}));
  EXPECT_EQ(commandOf("call {tel}"), (Words{"call", "{tel}"}));
}

TEST(DialCommand, AnInvalidCommandIsReported) {
  EXPECT_EQ(errorOf(""), "there is no program");
  EXPECT_EQ(errorOf(" '' {}"), "there is no program");
  EXPECT_EQ(errorOf("call 'x"), "a quote is not closed, or nothing follows a backslash");
  EXPECT_EQ(errorOf("call \\"), "a quote is not closed, or nothing follows a backslash");
  EXPECT_EQ(errorOf("{text} x"), "the program cannot be a part of the selection");
}

class DialArguments : public testing::Test {
 protected:
  DialArguments() {
    number.international = "+31201234567";
    number.national = "0201234567";
    number.outgoing = "0201234567";
    number.written = "+31201234567";
  }

  Words arguments(const std::string& command, const std::string& selection = "x") {
    settings.command = commandOf(command);
    const auto result = dialArguments(number, selection, settings, error);
    return result.value_or(Words());
  }

  FoundNumber number;
  DialSettings settings;
  std::string error;
};

TEST_F(DialArguments, ThePlaceholdersAreFilledIn) {
  EXPECT_EQ(arguments("p {} {tel} {text} sip:{}@pbx {}{}", "my text"),
            (Words{"p", "+31201234567", "tel:+31201234567", "my text", "sip:+31201234567@pbx",
                   "+31201234567+31201234567"}));
}

TEST_F(DialArguments, ASelectionIsOneArgumentWhateverItContains) {
  const std::string text = "a\nb 'c' \"d\" $(e) {} {tel} \x1B[2J ;rm -rf" + std::string(20000, 'x');
  EXPECT_EQ(arguments("p {text}", text), (Words{"p", text}));
}

TEST_F(DialArguments, ASelectionThatCouldBeAnOptionIsRefused) {
  EXPECT_EQ(arguments("p {text}", "--exec=id"), Words());
  EXPECT_EQ(error,
            "the selection begins with a hyphen, so the program could take it for an option");
  EXPECT_EQ(arguments("p --text={text}", "--exec=id"), (Words{"p", "--text=--exec=id"}));
}

TEST_F(DialArguments, ASelectionWithANulByteIsRefused) {
  EXPECT_EQ(arguments("p {text}", std::string("a\0b", 3)), Words());
  EXPECT_EQ(error, "the selection contains a NUL byte, which an argument cannot contain");
}

TEST_F(DialArguments, TheFormats) {
  EXPECT_EQ(dialledNumber(number, settings), "+31201234567");
  settings.format = NumberFormat::kNational;
  EXPECT_EQ(dialledNumber(number, settings), "0201234567");
  number.national.clear();
  EXPECT_EQ(dialledNumber(number, settings), "+31201234567") << "of another country";
  settings.format = NumberFormat::kRaw;
  number.written = "0031201234567";
  EXPECT_EQ(dialledNumber(number, settings), "0031201234567");
}

TEST_F(DialArguments, APrefixIsFollowedByTheNumberAsDialledFromTheRegion) {
  settings.prefix = "9";
  EXPECT_EQ(dialledNumber(number, settings), "90201234567");
  EXPECT_EQ(dialledURI("tel", number, settings), "tel:90201234567");
  number.outgoing = "0049301234567";
  EXPECT_EQ(dialledNumber(number, settings), "90049301234567");
  number.outgoing.clear();
  EXPECT_EQ(arguments("p {}"), Words());
  EXPECT_EQ(error, "the number cannot be dialled after a prefix");
  settings.format = NumberFormat::kRaw;
  EXPECT_EQ(dialledNumber(number, settings), "") << "a plus sign in the middle cannot be dialled";
}

TEST_F(DialArguments, ANumberOutsideThePlanIsDialledAsWritten) {
  number = FoundNumber();
  number.written = "*21#";
  EXPECT_EQ(dialledNumber(number, settings), "*21#");
  EXPECT_EQ(dialledURI("tel", number, settings), "tel:*21%23");
}

TEST_F(DialArguments, AURIIsOpenedByTheDesktop) {
  settings.scheme = "tel";
  number.extension = "5";
  EXPECT_EQ(dialArguments(number, "x", settings, error),
            (Words{"xdg-open", "tel:+31201234567;ext=5"}));
  settings.scheme = "sip";
  EXPECT_EQ(dialArguments(number, "x", settings, error), (Words{"xdg-open", "sip:+31201234567"}));
}

}  // namespace
}  // namespace seldial
