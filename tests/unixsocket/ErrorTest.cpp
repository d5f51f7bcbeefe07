#include <gtest/gtest.h>

#include <cerrno>
#include <limits>
#include <map>

#include "unixsocket/Error.h"

namespace seldial {
namespace {

TEST(Error, EveryCodeHasItsMessage) {
  const std::map<std::int64_t, std::string> table = {
      {-3024, "Bad socket"},
      {-3023, "Failed to bind socket"},
      {-3022, "Failed to listen on socket"},
      {-3021, "Failed to accept connection, closing socket"},
      {-3020, "Failed to unlink socket"},
      {-3019, "Failed to connect to socket"},
      {-3018, "Failed to write to socket"},
      {-3017, "Failed to read from socket"},
      {-3016, "Failed to close socket"},
      {-3015, "Unknown client. It is either disconnected or never existed"},
  };
  for (const auto& [code, message] : table) {
    const Error error = Error::gduds_errorForCode(code);
    EXPECT_EQ(code, error.code);
    EXPECT_EQ(message, error.localizedDescription);
  }
}

TEST(Error, NamesOfTheCodes) {
  EXPECT_EQ(-3024, GDUnixSocketErrorBadSocket);
  EXPECT_EQ(-3023, GDUnixSocketErrorBindFailed);
  EXPECT_EQ(-3022, GDUnixSocketErrorListenFailed);
  EXPECT_EQ(-3021, GDUnixSocketErrorAcceptFailed);
  EXPECT_EQ(-3020, GDUnixSocketErrorUnlinkFailed);
  EXPECT_EQ(-3019, GDUnixSocketErrorConnectFailed);
  EXPECT_EQ(-3018, GDUnixSocketErrorWriteFailed);
  EXPECT_EQ(-3017, GDUnixSocketErrorReadFailed);
  EXPECT_EQ(-3016, GDUnixSocketErrorCloseFailed);
  EXPECT_EQ(-3015, GDUnixSocketErrorUnknownClient);
}

TEST(Error, CodesOutsideTheTableAreUnknownErrorAndKept) {
  using Limits = std::numeric_limits<std::int64_t>;
  for (const std::int64_t code : {-3014L, 0L, -3025L, 1L, Limits::min(), Limits::max()}) {
    const Error error = Error::gduds_errorForCode(code, "why");
    EXPECT_EQ(code, error.code);
    EXPECT_EQ("Unknown Error. why", error.localizedDescription);
  }
}

TEST(Error, InfoFollowsAFullStopAndASpace) {
  EXPECT_EQ("Bad socket. some info",
            Error::gduds_errorForCode(-3024, "some info").localizedDescription);
}

TEST(Error, EmptyInfoIsOmitted) {
  EXPECT_EQ(Error::gduds_errorForCode(-3024), Error::gduds_errorForCode(-3024, ""));
}

TEST(Error, ErrnoIsAFieldThatIsNotCompared) {
  const Error error = Error::gduds_errorForCode(-3024, "info", EPIPE);
  EXPECT_EQ(EPIPE, error.errorNumber);
  EXPECT_EQ(0, Error::gduds_errorForCode(-3024).errorNumber);
  EXPECT_EQ(Error::gduds_errorForCode(-3024, "info"), error);
  EXPECT_NE(Error::gduds_errorForCode(-3023, "info"), error);
  EXPECT_NE(Error::gduds_errorForCode(-3024, "other"), error);
}

TEST(Error, OfAFailedCallHasItsErrnoAndDescriptor) {
  errno = EPIPE;
  const Error error = errorOfFailedCall(-3018, 5);
  EXPECT_EQ(EPIPE, error.errorNumber);
  EXPECT_EQ("Failed to write to socket. fd: 5. errno: 32. Broken pipe", error.localizedDescription);
}

TEST(Error, DomainIsTheLibrarys) {
  EXPECT_EQ("org.seldial.GDUnixSocket", Error::gduds_errorForCode(0).domain);
}

TEST(Error, InfoNamesDescriptorErrnoAndItsText) {
  errno = EPIPE;
  EXPECT_EQ("fd: 5. errno: 32. Broken pipe", errorInfoForDescriptor(5));
  errno = 0;
  EXPECT_EQ("fd: -1. errno: 0. Success", errorInfoForDescriptor(-1));
}

}  // namespace
}  // namespace seldial
