#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/support/BackgroundQueueDoubles.h"
#include "tests/unixsocket/Support.h"

namespace seldial::tests {

/// A server with a recording delegate, in its own directory. At the end it is closed, and all its
/// tasks end.
class ListeningServer : public testing::Test {
 protected:
  ListeningServer() { server->setDelegate(delegate); }
  ~ListeningServer() override {
    server->closeSilently();
    queue->waitUntilIdle();  // a task may hold the server, and with it this queue
  }

  /// A server on the test's queue.
  [[nodiscard]] std::shared_ptr<GDUnixSocketServer> serverAt(const std::string& socketPath) const {
    return GDUnixSocketServer::initWithSocketPath(socketPath, 256, queue);
  }

  void listen() { ASSERT_TRUE(server->listenWithError()); }

  /// A connection that has been reported to the delegate.
  Peer connect() {
    const std::size_t before = delegate->journal.count("accept");
    Peer peer = Peer::connectedTo(path);
    EXPECT_TRUE(delegate->journal.waitFor("accept", before + 1));
    return peer;
  }

  [[nodiscard]] std::string lastClientID() const { return delegate->clientIDs().back(); }

  const std::shared_ptr<tests::ControlledBackgroundQueue> queue =
      std::make_shared<tests::ControlledBackgroundQueue>();
  TemporaryDirectory directory;
  const std::string path = directory.path("socket");
  const std::shared_ptr<RecordingServerDelegate> delegate =
      std::make_shared<RecordingServerDelegate>();
  std::shared_ptr<GDUnixSocketServer> server = serverAt(path);
};

}  // namespace seldial::tests
