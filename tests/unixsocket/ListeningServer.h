#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/support/BackgroundQueueDoubles.h"
#include "tests/support/PlatformDoubles.h"
#include "tests/unixsocket/Support.h"

namespace seldial::tests {

/// A server that listens, with a recording delegate, in a directory of its own. At the end it is
/// closed and all its tasks have ended.
class ListeningServer : public testing::Test {
 protected:
  ListeningServer() { server->setDelegate(delegate); }
  ~ListeningServer() override { server->closeSilently(); }

  /// Listens, and waits until the accept loop is at work.
  void listen() { ASSERT_TRUE(server->listenWithError()); }

  /// A connection that the delegate was told of.
  Peer connect() {
    const std::size_t before = delegate->journal.count("accept");
    Peer peer = Peer::connectedTo(path);
    EXPECT_TRUE(delegate->journal.waitFor("accept", before + 1));
    return peer;
  }

  std::string lastClientID() const { return delegate->clientIDs().back(); }

  doubles::Installed<platform::BackgroundQueue, doubles::SteeredBackgroundQueue> queue;
  TemporaryDirectory directory;
  const std::string path = directory.path("socket");
  const std::shared_ptr<RecordingServerDelegate> delegate =
      std::make_shared<RecordingServerDelegate>();
  std::shared_ptr<GDUnixSocketServer> server = GDUnixSocketServer::initWithSocketPath(path);
};

}  // namespace seldial::tests
