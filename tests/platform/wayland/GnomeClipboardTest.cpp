// Copying under GNOME: what is typed, and whose text is dialled.
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "tests/platform/wayland/GnomeTest.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryDirectory.h"

namespace seldial::platform::wayland {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using tests::FakeGnome;

TEST_F(GnomeTest, IfNothingIsCopiedThereIsNoText) {
  ASSERT_TRUE(registerDial());
  use();
  gnome->select("");  // as terminals copy
  use();
  gnome->select("an image");
  gnome->setCopiedTypes({"text/html", "image/png"});
  use();
  gnome->select("020 1234");
  gnome->setCopiedTypes({"text/html", "UTF8_STRING"});
  use();
  EXPECT_THAT(dialled, ElementsAre(std::nullopt, std::nullopt, std::nullopt, "020 1234"));
}

TEST_F(GnomeTest, WhileATerminalRunsTheCopyKeyIsTyped) {
  ASSERT_TRUE(registerDial());
  programs.emplace_back("foot");
  const auto lines = errorsOf([&] { use(); });
  EXPECT_THAT(
      lines,
      HasSubstr("while foot runs, Seldial copies only from programs that support the Copy key"));
  EXPECT_THAT(gnome->typed(), ElementsAre("XF86Copy"));
  EXPECT_THAT(errorsOf([&] { use(); }), IsEmpty());
}

TEST_F(GnomeTest, WhileAnEditorRunsThatKeystrokesHarmNothingIsTyped) {
  ASSERT_TRUE(registerDial());
  gnome->select("020 1234");
  programs.emplace_back("emacs-gtk");
  EXPECT_THAT(errorsOf([&] { use(); }), HasSubstr("while emacs-gtk runs, nothing is copied"));
  EXPECT_THAT(gnome->typed(), IsEmpty());
  EXPECT_THAT(dialled, ElementsAre(std::nullopt));
}

TEST_F(GnomeTest, AWholeLineIsNotDialledWhileAnEditorRunsThatCopiesLines) {
  ASSERT_TRUE(registerDial());
  gnome->select("020 1234\n");
  use();
  programs.emplace_back("code");
  use();
  EXPECT_THAT(dialled, ElementsAre("020 1234\n", std::nullopt));
}

using Acts = FakeGnome::Manager::Acts;

TEST_F(GnomeTest, WhatAnX11ProgramWithoutTheFocusPutsOnTheClipboardIsNotDialled) {
  ASSERT_TRUE(registerDial());
  gnome->setManager({Acts::kOnClearing, {"UTF8_STRING", "TARGETS"}, "older text"});
  use();
  gnome->select("020 1234");
  use();
  EXPECT_THAT(dialled, ElementsAre(std::nullopt, "020 1234"));
}

TEST_F(GnomeTest, AnX11ProgramWithTheFocusCopies) {
  ASSERT_TRUE(registerDial());
  gnome->select("020 1234");
  gnome->setCopiedTypes({"TARGETS", "UTF8_STRING"});
  use();
  x11ProgramHasFocus = true;
  use();
  EXPECT_THAT(dialled, ElementsAre(std::nullopt, "020 1234"));
}

TEST_F(GnomeTest, ACopyCountsAlsoOnceAManagerHasTakenTheClipboard) {
  ASSERT_TRUE(registerDial());
  gnome->select("020 1234");
  for (const auto& types : {std::vector<std::string>{"UTF8_STRING", "TARGETS"}, {"text/plain"}}) {
    gnome->setManager({Acts::kAfterTransfer, types, "older text"});
    use();
  }
  EXPECT_THAT(dialled, ElementsAre("020 1234", "020 1234"));
}

TEST_F(GnomeTest, ATextThatMayHaveBeenTransferredByAManagerIsCopiedAgain) {
  ASSERT_TRUE(registerDial());
  gnome->select("020 1234");
  gnome->setManager(
      {Acts::kBeforeTransfer, {"text/plain;charset=utf-8", "UTF8_STRING", "TARGETS"}, "older", 1});
  use();
  EXPECT_THAT(dialled, ElementsAre("020 1234"));
  EXPECT_EQ(gnome->typed().size(), 2U);
}

TEST_F(GnomeTest, ATextThatMayHaveBeenTransferredByAManagerIsNotDialled) {
  ASSERT_TRUE(registerDial());
  gnome->select("020 1234");
  gnome->setManager(
      {Acts::kBeforeTransfer, {"text/plain;charset=utf-8", "UTF8_STRING", "TARGETS"}, "older"});
  use();
  EXPECT_THAT(dialled, ElementsAre(std::nullopt));
}

TEST_F(GnomeTest, ATextThatNoExtensionCanHaveCopiedIsCopiedOnce) {
  ASSERT_TRUE(registerDial());
  gnome->select("020 1234");
  gnome->setCopiedTypes({"text/plain;charset=utf-8"});
  use();
  gnome->listExtension(false);
  use();
  gnome->listExtension(true);
  gnome->setCopiedTypes({"text/plain", "text/plain;charset=utf-8"});
  use();
  EXPECT_THAT(dialled, ElementsAre("020 1234", "020 1234", "020 1234"));
  EXPECT_EQ(gnome->typed().size(), 3U);
}

TEST_F(GnomeTest, ATextThatAnExtensionMayHaveCopiedIsCopiedAgain) {
  ASSERT_TRUE(registerDial());
  gnome->select("020 1234");
  gnome->setCopiedTypes({"text/plain;charset=utf-8"});
  gnome->listExtension(true);
  gnome->setManager({Acts::kOnClearing, {"text/plain;charset=utf-8"}, "older text"});
  use();
  EXPECT_THAT(dialled, ElementsAre("020 1234"));
  EXPECT_THAT(gnome->typed(), ElementsAre("Control+Insert", "Control+Insert"));
}

TEST_F(GnomeTest, WhatAnExtensionPutsOnTheClipboardIsNotDialled) {
  ASSERT_TRUE(registerDial());
  gnome->listExtension(true);
  gnome->setManager({Acts::kOnClearing, {"text/plain;charset=utf-8"}, "older text"});
  use();
  EXPECT_THAT(dialled, ElementsAre(std::nullopt));
}

TEST_F(GnomeTest, WhatAnExtensionPutsOnTheClipboardLateIsNotDialled) {
  ASSERT_TRUE(registerDial());
  gnome->listExtension(true);
  FakeGnome::Manager manager{Acts::kOnClearing, {"text/plain;charset=utf-8"}, "older text"};
  manager.late = true;
  gnome->setManager(manager);
  use();
  EXPECT_THAT(dialled, ElementsAre(std::nullopt));
}

TEST(RunningProgramsTest, AreKnownByTheirNames) {
  const tests::TemporaryDirectory directory;
  const std::string name = "seldial-" + std::to_string(getpid());  // nobody else's
  EXPECT_THAT(runningPrograms(), Not(Contains(name)));
  const std::string path = directory.path(name);
  std::filesystem::copy_file("/bin/sleep", path);
  const tests::ChildProcess sleeper({path, "1000"});
  EXPECT_TRUE(tests::eventually([&] {
    const auto programs = runningPrograms();
    return std::find(programs.begin(), programs.end(), name) != programs.end();
  }));
}

}  // namespace
}  // namespace seldial::platform::wayland
