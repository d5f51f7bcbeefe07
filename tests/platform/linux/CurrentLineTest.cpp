#include <gtest/gtest.h>

#include "platform/linux/Applications.h"

namespace seldial::platform::linux_port {
namespace {

TEST(CurrentLine, BeginsOrEndsWithItsOnlyNewline) {
  const std::vector<std::string> kate{"kate", "Kate"};
  for (const char* const line : {"4930123\n", "4930123\r\n", "\n", "\n4930123"})
    EXPECT_TRUE(mayBeCurrentLine(kate, line)) << line;
  for (const char* const selection :
       {"", "4930123", "4930123\n4930124", "4930123\n4930124\n", "\n1\n"})
    EXPECT_FALSE(mayBeCurrentLine(kate, selection)) << selection;
}

TEST(CurrentLine, IsCopiedByEditorsOfEitherName) {
  EXPECT_TRUE(mayBeCurrentLine({"window", "KWrite"}, "1\n"));
  EXPECT_TRUE(mayBeCurrentLine({"org.kde.kate"}, "1\n"));
  EXPECT_TRUE(mayBeCurrentLine({"sun-awt-X11-XFramePeer", "jetbrains-idea-ce"}, "1\n"));
  EXPECT_FALSE(mayBeCurrentLine({"jetbrain"}, "1\n"));
  EXPECT_FALSE(mayBeCurrentLine({"gedit", "Gedit"}, "1\n"));
  EXPECT_FALSE(mayBeCurrentLine({}, "1\n"));
}

}  // namespace
}  // namespace seldial::platform::linux_port
