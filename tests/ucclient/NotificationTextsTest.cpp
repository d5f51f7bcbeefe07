#include <gtest/gtest.h>

#include <cstdlib>
#include <set>

#include "ucclient/Notifications.h"

namespace seldial {
namespace {

/// Clears the variables that choose the language.
class NotificationTexts : public testing::Test {
 protected:
  NotificationTexts() {
    for (const char* const name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"}) unsetenv(name);
  }

  /// The translation of "Undo" after setting the variable.
  static std::string undoIn(const char* variable, const char* value) {
    setenv(variable, value, 1);
    return translated("Undo");
  }
};

TEST_F(NotificationTexts, WithoutALanguageTheyAreEnglish) {
  EXPECT_EQ(translated("Undo"), "Undo");
  for (const char* const locale : {"C", "C.UTF-8", "POSIX", "en_GB.UTF-8", "xx_YY", "_", ""}) {
    EXPECT_EQ(undoIn("LANG", locale), "Undo") << locale;
  }
}

TEST_F(NotificationTexts, TheLanguageIsThatOfTheSession) {
  EXPECT_EQ(undoIn("LANG", "de_AT.UTF-8"), "Rückgängig");
  EXPECT_EQ(undoIn("LC_MESSAGES", "nl"), "Ongedaan maken");
  EXPECT_EQ(undoIn("LC_ALL", "es_MX@x"), "Deshacer");
  EXPECT_EQ(undoIn("LANGUAGE", "xx:pl:de"), "Cofnij");
  EXPECT_EQ(undoIn("LANGUAGE", "xx:en:de"), "Undo");
  EXPECT_EQ(undoIn("LANGUAGE", "fr"), "Annuler");
  EXPECT_EQ(undoIn("LC_ALL", "C.UTF-8"), "Undo");
}

TEST_F(NotificationTexts, ValuesArePutInAndNotSearched) {
  EXPECT_EQ(translated("Calling %1", {"+31%1%2"}), "Calling +31%1%2");
  setenv("LANG", "de_DE", 1);
  EXPECT_EQ(translated("Calling %1", {"+31"}), "+31 wird angerufen");
  EXPECT_EQ(translated("100 %, %9 and %", {"x"}), "100 %, %9 and %");
}

TEST_F(NotificationTexts, EachReasonIsTranslatedIntoEachLanguage) {
  for (const char* const text :
       {"nothing was selected", "the selection is too long to be a telephone number",
        "there is no telephone number in the selection",
        "there is more than one telephone number in the selection",
        "the telephone number is ambiguous", "it was undone",
        "the number cannot be dialled after a prefix",
        "the selection contains a NUL byte, which an argument cannot contain",
        "the selection begins with a hyphen, so the program could take it for an option"}) {
    std::set<std::string> all{text};
    for (const char* const language : {"de", "es", "fr", "nl", "pl"}) {
      setenv("LANG", language, 1);
      all.insert(translated(text));
    }
    EXPECT_EQ(all.size(), 6U) << text;
  }
}

}  // namespace
}  // namespace seldial
