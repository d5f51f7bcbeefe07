#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <regex>
#include <set>

#include "tests/unixsocket/Support.h"
#include "unixsocket/GDUnixSocket.h"

namespace seldial::tests {
namespace {

TEST(GDUnixSocket, PathOf103BytesIsAcceptedAnd104Rejected) {
  EXPECT_TRUE(GDUnixSocket::initWithSocketPath("/" + std::string(102, 's')));
  EXPECT_FALSE(GDUnixSocket::initWithSocketPath("/" + std::string(103, 's')));
}

TEST(GDUnixSocket, WithoutAPathThereIsNoObject) {
  EXPECT_FALSE(GDUnixSocket::init());
  EXPECT_FALSE(GDUnixSocket::initWithSocketPath(""));
}

TEST(GDUnixSocket, TheDummyPathIsAcceptedAlthoughItHasNoSlash) {
  const auto socket = GDUnixSocket::initWithSocketPath("(dummy)");
  ASSERT_TRUE(socket);
  EXPECT_EQ("(dummy)", socket->socketPath());
}

TEST(GDUnixSocket, ARelativeNameIsRejected) {
  EXPECT_FALSE(GDUnixSocket::initWithSocketPath("socket"));
}

TEST(GDUnixSocket, APathThatStandardisingChangesIsRejected) {
  EXPECT_FALSE(GDUnixSocket::initWithSocketPath("/tmp/a/../b"));
  EXPECT_TRUE(GDUnixSocket::initWithSocketPath("/tmp/b"));
}

TEST(GDUnixSocket, StartsIdleWithoutADescriptor) {
  const auto socket = GDUnixSocket::initWithSocketPath("/tmp/b");
  EXPECT_EQ(-1, socket->fd());
  EXPECT_EQ(0U, socket->state());
  EXPECT_EQ(256U, socket->fragmentSize());
  EXPECT_EQ("/tmp/b", socket->socketPath());
  EXPECT_EQ(7U, GDUnixSocket::initWithSocketPath("/tmp/b", 7)->fragmentSize());
}

TEST(GDUnixSocket, FieldsCanBeSet) {
  const auto socket = GDUnixSocket::initWithSocketPath("/tmp/b");
  socket->setState(GDUnixSocketStateConnected);
  socket->setFragmentSize(1);
  EXPECT_EQ(1U, socket->state());
  EXPECT_EQ(1U, socket->fragmentSize());
}

TEST(GDUnixSocket, ReadsAtMostItsFragmentSizeAtATime) {
  const auto [socket, peer] = makePair();
  peer.send(std::string(600, 'x'));
  EXPECT_EQ(256U, socket->readWithError()->size());
  EXPECT_EQ(256U, socket->readWithError()->size());
  EXPECT_EQ(std::string(88, 'x'), socket->readWithError());
}

TEST(GDUnixSocket, ReadsWithItsFragmentSizeEvenAfterThatChanges) {
  const auto [socket, peer] = makePair(100);
  peer.send(std::string(600, 'x'));
  EXPECT_EQ(100U, socket->readWithError()->size());
  socket->setFragmentSize(1000);
  EXPECT_EQ(500U, socket->readWithError()->size());
}

TEST(GDUnixSocket, ReadsAnyBytes) {
  const auto [socket, peer] = makePair();
  const std::string bytes("\0\xFF\n\0", 4);
  peer.send(bytes);
  EXPECT_EQ(bytes, socket->readWithError());
}

TEST(GDUnixSocket, AReadAfterThePeerClosedGivesNothingAndNoError) {
  auto [socket, peer] = makePair();
  peer.leave();
  std::optional<Error> error = Error::gduds_errorForCode(0);
  EXPECT_FALSE(socket->readWithError(&error));
  EXPECT_FALSE(error);
}

TEST(GDUnixSocket, AReadOnAClosedDescriptorFails) {
  const auto [socket, peer] = makePair();
  socket->close();
  std::optional<Error> error;
  EXPECT_FALSE(socket->readWithError(&error));
  ASSERT_TRUE(error);
  EXPECT_EQ(-3017, error->code);
  EXPECT_EQ("Failed to read from socket. fd: -1. errno: 9. Bad file descriptor",
            error->localizedDescription);
}

TEST(GDUnixSocket, AReadFromAGivenDescriptorNamesItInItsError) {
  const auto socket = GDUnixSocket::initWithSocketPath("(dummy)");
  std::optional<Error> error;
  EXPECT_FALSE(socket->readFromSocket(99999, &error));
  EXPECT_EQ("Failed to read from socket. fd: 99999. errno: 9. Bad file descriptor",
            error->localizedDescription);
}

TEST(GDUnixSocket, ReadsAndWritesOnAGivenDescriptor) {
  const auto [other, peer] = makePair();
  const auto socket = GDUnixSocket::initWithSocketPath("(dummy)");
  EXPECT_EQ(2, socket->write("hi", other->fd()));
  EXPECT_EQ("hi", peer.receive(2));
  peer.send("ho");
  EXPECT_EQ("ho", socket->readFromSocket(other->fd()));
}

TEST(GDUnixSocket, AFailedAllocationIsAReadError) {
  const auto [socket, peer] = makePair(~0ULL);
  peer.send("x");
  std::optional<Error> error;
  EXPECT_FALSE(socket->readWithError(&error));
  ASSERT_TRUE(error);
  EXPECT_EQ(-3017, error->code);
  EXPECT_NE(std::string::npos, error->localizedDescription.find("errno: 12."));
}

TEST(GDUnixSocket, WritesAllTheBytesOnce) {
  auto [socket, peer] = makePair();
  const std::string bytes("a\0b\xFF", 4);
  std::optional<Error> error = Error::gduds_errorForCode(0);
  EXPECT_EQ(4, socket->writeData(bytes, &error));
  EXPECT_FALSE(error);
  socket->close();
  EXPECT_EQ(bytes, peer.receiveToTheEnd());
}

TEST(GDUnixSocket, WritingEmptyDataIsZeroAndNoErrorEvenOnAClosedSocket) {
  const auto [socket, peer] = makePair();
  EXPECT_EQ(0, socket->writeData(""));
  socket->close();
  std::optional<Error> error = Error::gduds_errorForCode(0);
  EXPECT_EQ(0, socket->writeData("", &error));
  EXPECT_FALSE(error);
  EXPECT_EQ(0, socket->write("", -1));
}

TEST(GDUnixSocket, WritingWithoutADescriptorIsABadSocket) {
  const auto socket = GDUnixSocket::initWithSocketPath("(dummy)");
  std::optional<Error> error;
  EXPECT_EQ(-1, socket->writeData("x", &error));
  EXPECT_EQ(Error::gduds_errorForCode(-3024), error);
}

TEST(GDUnixSocket, WritingToADisconnectedPeerIsAnErrorAndNoSignal) {
  auto [socket, peer] = makePair();
  peer.leave();
  const std::string descriptor = std::to_string(socket->fd());
  std::optional<Error> error;
  EXPECT_EQ(-1, socket->writeData("x", &error));
  ASSERT_TRUE(error);
  EXPECT_EQ(-3018, error->code);
  EXPECT_EQ("Failed to write to socket. fd: " + descriptor + ". errno: 32. Broken pipe",
            error->localizedDescription);
}

TEST(GDUnixSocket, AShortWriteIsNotAnError) {
  const auto [socket, peer] = makePair();
  ::fcntl(socket->fd(), F_SETFL, O_NONBLOCK);
  const std::string much(8 << 20, 'x');
  std::optional<Error> error;
  const std::int64_t count = socket->writeData(much, &error);
  EXPECT_GT(count, 0);
  EXPECT_LT(count, static_cast<std::int64_t>(much.size()));
  EXPECT_FALSE(error);
}

TEST(GDUnixSocket, WritesToAFileThatIsNotASocket) {
  int ends[2] = {-1, -1};
  ASSERT_EQ(0, ::pipe(ends));
  const auto socket = GDUnixSocket::initWithSocketPath("(dummy)");
  socket->setFd(ends[1]);
  EXPECT_EQ(5, socket->writeData("bytes"));
  EXPECT_EQ("bytes", socket->readFromSocket(ends[0]));
  ::close(ends[0]);
}

TEST(GDUnixSocket, ClosesOnceAndAgainSuccessfully) {
  auto [socket, peer] = makePair();
  std::optional<Error> error;
  EXPECT_TRUE(socket->closeWithError(&error));
  EXPECT_FALSE(error);
  EXPECT_EQ(-1, socket->fd());
  EXPECT_EQ(2U, socket->state());
  EXPECT_EQ("", peer.receiveToTheEnd());

  error = Error::gduds_errorForCode(0);
  EXPECT_TRUE(socket->closeWithError(&error));
  EXPECT_TRUE(error) << "a repeated close leaves the out-parameter alone";
}

TEST(GDUnixSocket, ASuccessfulCloseClearsTheOutParameter) {
  const auto [socket, peer] = makePair();
  std::optional<Error> error = Error::gduds_errorForCode(0);
  EXPECT_TRUE(socket->closeWithError(&error));
  EXPECT_FALSE(error);
}

TEST(GDUnixSocket, ClosingWithoutADescriptorFailsAndChangesNothing) {
  const auto socket = GDUnixSocket::initWithSocketPath("(dummy)");
  std::optional<Error> error;
  EXPECT_FALSE(socket->closeWithError(&error));
  EXPECT_EQ(Error::gduds_errorForCode(-3016, "Bad socket"), error);
  EXPECT_EQ("Failed to close socket. Bad socket", error->localizedDescription);
  EXPECT_EQ(-1, socket->fd());
  EXPECT_EQ(0U, socket->state());
}

TEST(GDUnixSocket, AFailedCloseForgetsTheDescriptorAndKeepsTheState) {
  const auto socket = GDUnixSocket::initWithSocketPath("(dummy)");
  socket->setFd(99999);
  std::optional<Error> error;
  EXPECT_FALSE(socket->closeWithError(&error));
  EXPECT_EQ("Failed to close socket. fd: 99999. errno: 9. Bad file descriptor",
            error->localizedDescription);
  EXPECT_EQ(-3016, error->code);
  EXPECT_EQ(-1, socket->fd());
  EXPECT_EQ(0U, socket->state());
  EXPECT_FALSE(socket->closeWithError(&error));
  EXPECT_EQ("Failed to close socket. Bad socket", error->localizedDescription);
}

TEST(GDUnixSocket, EveryOutParameterMayBeNull) {
  auto [socket, peer] = makePair();
  peer.send("x");
  EXPECT_EQ("x", socket->readWithError(nullptr));
  EXPECT_EQ(1, socket->writeData("x", nullptr));
  peer.leave();
  EXPECT_EQ(-1, socket->writeData("x", nullptr));
  EXPECT_TRUE(socket->closeWithError(nullptr));
  EXPECT_FALSE(socket->readWithError(nullptr));
  EXPECT_EQ(-1, socket->writeData("x", nullptr));
  EXPECT_FALSE(socket->readFromSocket(-1, nullptr));
  EXPECT_EQ(-1, socket->write("x", -1, nullptr));
  EXPECT_EQ(-1, socket->write("x", 99999, nullptr));
  socket->setState(GDUnixSocketStateIdle);
  EXPECT_FALSE(socket->closeWithError(nullptr));
}

TEST(GDUnixSocket, ClosesItsDescriptorWhenItIsDestroyed) {
  const std::size_t before = openDescriptors();
  {
    auto [socket, peer] = makePair();
    socket.reset();
    EXPECT_EQ("", peer.receiveToTheEnd());
  }
  EXPECT_EQ(before, openDescriptors());
}

TEST(GDUnixSocket, ItsIdentifierStaysAndNoOtherHasIt) {
  std::set<std::string> all;
  for (int i = 0; i < 1000; ++i) {
    const auto socket = GDUnixSocket::initWithSocketPath("(dummy)");
    const std::string first = socket->uniqueID();
    EXPECT_EQ(first, socket->uniqueID());
    EXPECT_TRUE(all.insert(first).second);
  }
}

TEST(GDUnixSocket, ItsIdentifierIsARandomUuidInUpperCase) {
  const std::regex pattern("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
  for (int i = 0; i < 100; ++i) {
    const auto socket = GDUnixSocket::initWithSocketPath("(dummy)");
    EXPECT_TRUE(std::regex_match(socket->uniqueID(), pattern)) << socket->uniqueID();
  }
}

TEST(GDUnixSocket, DescribesItselfByItsIdentifier) {
  const auto socket = GDUnixSocket::initWithSocketPath("(dummy)");
  EXPECT_EQ(socket->uniqueID(), socket->description());
  EXPECT_EQ(socket->uniqueID(), socket->debugDescription());
}

TEST(GDUnixSocket, ChecksForABadSocket) {
  const auto [socket, peer] = makePair();
  EXPECT_FALSE(socket->checkForBadSocket());
  EXPECT_FALSE(GDUnixSocket::checkForBadSocket(0));
  EXPECT_EQ(Error::gduds_errorForCode(-3024), GDUnixSocket::checkForBadSocket(-1));
  socket->close();
  EXPECT_EQ(Error::gduds_errorForCode(-3024), socket->checkForBadSocket());
}

TEST(GDUnixSocket, DescribesTheLastErrorOfItsDescriptor) {
  const auto socket = GDUnixSocket::initWithSocketPath("(dummy)");
  errno = EACCES;
  EXPECT_EQ("fd: -1. errno: 13. Permission denied", socket->lastErrorInfo());
  errno = EACCES;
  EXPECT_EQ("fd: 4. errno: 13. Permission denied", GDUnixSocket::lastErrorInfoForSocket(4));
}

}  // namespace
}  // namespace seldial::tests
