#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

#include "unixsocket/SocketPath.h"

namespace seldial {
namespace {

std::string pathOfLength(std::size_t bytes) {
  return "/" + std::string(bytes - 1, 's');
}

TEST(SocketPath, StandardisedPathsAreAccepted) {
  for (const char* path : {"/tmp/b", "/b", "/", "a/b", "/tmp/a b", "/tmp/...", "/tmp/.hidden",
                           "/tmp/a.", "/tmp/..a", "/tmp/~", "a/~b", "/tmp/\xC3\xA9"}) {
    EXPECT_TRUE(isAcceptedSocketPath(path)) << path;
  }
}

TEST(SocketPath, PathsThatStandardisingChangesAreRejected) {
  for (const char* path :
       {"/tmp/a/../b", "/tmp/./b", "/tmp//b", "//tmp/b", "/tmp/b/", "/tmp/b//", "/tmp/b/.",
        "/tmp/b/..", "/..", "/.", "//", "./b", "../b", "~/b", "~user/b", "a//b", "a/", "a/.."}) {
    EXPECT_FALSE(isAcceptedSocketPath(path)) << path;
  }
}

TEST(SocketPath, ANameWithoutASlashIsRejected) {
  for (const char* path : {"socket", ".", "..", "~", "dummy", "(dummy"}) {
    EXPECT_FALSE(isAcceptedSocketPath(path)) << path;
  }
}

TEST(SocketPath, TheDummyPathIsAcceptedAsItStands) {
  EXPECT_TRUE(isAcceptedSocketPath("(dummy)"));
  EXPECT_FALSE(isAcceptedSocketPath("(dummy) "));
}

TEST(SocketPath, TheEmptyPathIsRejected) {
  EXPECT_FALSE(isAcceptedSocketPath(""));
}

TEST(SocketPath, AHundredAndThreeBytesAreTheMost) {
  EXPECT_TRUE(isAcceptedSocketPath(pathOfLength(103)));
  EXPECT_FALSE(isAcceptedSocketPath(pathOfLength(104)));
  EXPECT_FALSE(isAcceptedSocketPath(pathOfLength(100000)));
}

TEST(SocketPath, BytesAreCountedNotCharacters) {
  std::string path = "/";
  for (int i = 0; i < 51; ++i) path += "\xC3\xA9";
  ASSERT_EQ(103U, path.size());
  EXPECT_TRUE(isAcceptedSocketPath(path));
  EXPECT_FALSE(isAcceptedSocketPath(path + "e"));
}

TEST(SocketAddress, Is106BytesOfZeroesButForFamilyAndPath) {
  EXPECT_EQ(106U, SocketAddress::size());
  const SocketAddress address("/tmp/b");
  sockaddr_un expected{};
  expected.sun_family = AF_UNIX;
  std::strcpy(expected.sun_path, "/tmp/b");
  EXPECT_EQ(0, std::memcmp(&expected, address.get(), SocketAddress::size()));
}

TEST(SocketAddress, TakesAtMost103Bytes) {
  EXPECT_TRUE(SocketAddress(pathOfLength(103)).names(pathOfLength(103)));
  const SocketAddress cut(pathOfLength(104));
  EXPECT_FALSE(cut.names(pathOfLength(104)));
  EXPECT_TRUE(cut.names(pathOfLength(103)));
}

TEST(SocketAddress, ANulByteCutsThePath) {
  const std::string path("/tmp/a\0b", 8);
  EXPECT_FALSE(SocketAddress(path).names(path));
}

}  // namespace
}  // namespace seldial
