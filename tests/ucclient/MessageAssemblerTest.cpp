#include <gtest/gtest.h>

#include "ucclient/MessageAssembler.h"

namespace seldial {
namespace {

TEST(MessageAssembler, ChunksOfOneConnectionAreOneMessage) {
  MessageAssembler assembler;
  assembler.append("a", "{\"command\":");
  assembler.append("a", "\"MakeCall\"}");
  EXPECT_EQ(assembler.finish("a"), R"({"command":"MakeCall"})");
}

TEST(MessageAssembler, ConnectionsSideBySideDoNotMix) {
  MessageAssembler assembler;
  assembler.append("a", "1");
  assembler.append("b", "x");
  assembler.append("a", "2");
  EXPECT_EQ(assembler.finish("b"), "x");
  EXPECT_EQ(assembler.finish("a"), "12");
}

TEST(MessageAssembler, ACharacterCutBetweenChunksArrivesWhole) {
  MessageAssembler assembler;
  assembler.append("a", "\xC3");
  assembler.append("a", "\xA9");
  EXPECT_EQ(assembler.finish("a"), "é");
}

TEST(MessageAssembler, AConnectionWithoutDataCarriesTheEmptyMessage) {
  EXPECT_EQ(MessageAssembler().finish("a"), "");
}

TEST(MessageAssembler, AFinishedConnectionLeavesNothingBehind) {
  MessageAssembler assembler;
  assembler.append("a", "1");
  EXPECT_EQ(assembler.finish("a"), "1");
  EXPECT_EQ(assembler.finish("a"), "");
}

TEST(MessageAssembler, ADiscardedConnectionLeavesNothingBehind) {
  MessageAssembler assembler;
  assembler.append("a", "1");
  assembler.discard("a");
  EXPECT_EQ(assembler.finish("a"), "");
}

}  // namespace
}  // namespace seldial
