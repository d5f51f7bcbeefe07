// The fixture of the client's tests.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/support/BackgroundQueueDoubles.h"
#include "tests/unixsocket/Support.h"
#include "unixsocket/GDUnixSocketClient.h"

namespace seldial::tests {

class ClientTest : public testing::Test {
 protected:
  ClientTest() { client->setDelegate(delegate); }
  ~ClientTest() override { client->close(); }

  const std::shared_ptr<ControlledBackgroundQueue> queue =
      std::make_shared<ControlledBackgroundQueue>();
  TemporaryDirectory directory;
  const std::string path = directory.path("socket");
  const std::shared_ptr<RecordingClientDelegate> delegate =
      std::make_shared<RecordingClientDelegate>();
  std::shared_ptr<GDUnixSocketClient> client =
      GDUnixSocketClient::initWithSocketPath(path, 256, queue);
};

}  // namespace seldial::tests
