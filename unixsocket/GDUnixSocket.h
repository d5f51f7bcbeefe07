// Unix domain stream sockets: the base class of the server and the client, and the class of a
// server's connections.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "platform/BackgroundQueue.h"
#include "unixsocket/Descriptor.h"
#include "unixsocket/Error.h"
#include "unixsocket/Mutex.h"

/// All names of Seldial and its libraries.
namespace seldial {

/// The bytes that a socket carries. They need not be text.
using Data = std::string;

/// The state of a socket object.
enum GDUnixSocketState : std::uint64_t {
  GDUnixSocketStateIdle = 0,       ///< initial; an accepted connection stays in it until its close
  GDUnixSocketStateConnected = 1,  ///< a client has connected
  GDUnixSocketStateClosed = 2,     ///< a close has succeeded
  GDUnixSocketStateListening = 3,  ///< a server listens
};

/// Owns one descriptor; reads from it, writes to it and closes it. Messages are not framed: a read
/// returns what one system call returned.
///
/// Objects are created by the init... functions and owned by std::shared_ptr. Sizes and counts are
/// in bytes. A failing function returns nothing, false or -1 and stores an Error in its
/// out-parameter, which may be null; unless stated otherwise, success clears the out-parameter.
/// Nothing is logged. Only GDUnixSocketServer::addClient() throws. Unless stated otherwise, any
/// member function may be called on any thread.
///
/// One thread may block in a read or a write while others write or close; a close ends both. The
/// descriptor is closed once, and never while a call of this object is using it, so that no call
/// can reach another file that got the same number.
class GDUnixSocket : public std::enable_shared_from_this<GDUnixSocket> {
 protected:
  /// Restricts the public constructors to the init... functions.
  class Key {
    friend class GDUnixSocket;
    Key() = default;
  };

 public:
  /// Runs the background work of socket objects.
  using Queue = std::shared_ptr<platform::BackgroundQueue>;

  /// Called with the error or none, and the data or nothing. No error and no data means end of
  /// stream.
  using ReadCompletion =
      std::function<void(const std::optional<Error>& error, const std::optional<Data>& data)>;
  /// Called with the error or none, and the number of bytes written or -1.
  using WriteCompletion =
      std::function<void(const std::optional<Error>& error, std::int64_t count)>;

  /// The fragment size of an object that is created without one.
  static constexpr std::uint64_t kDefaultFragmentSize = 256;

  /// A socket object for `socketPath`, without a descriptor; null if the path is rejected. A path
  /// contains a "/", is standardised (no component "." or "..", no doubled or trailing separator,
  /// no leading "~") and is at most 103 bytes long; or it is "(dummy)", for a connection without a
  /// path. A read returns at most `andFragmentSize` bytes.
  static std::shared_ptr<GDUnixSocket> initWithSocketPath(
      const std::string& socketPath, std::uint64_t andFragmentSize = kDefaultFragmentSize,
      const Queue& queue = platform::sharedBackgroundQueue());

  /// Always null: a socket needs a path.
  static std::shared_ptr<GDUnixSocket> init() { return initWithSocketPath({}); }

  /// For initWithSocketPath() only, which checks the path.
  GDUnixSocket(Key key, std::string socketPath, std::uint64_t fragmentSize, Queue queue);

  /// Closes the descriptor if there is one.
  virtual ~GDUnixSocket();
  GDUnixSocket(const GDUnixSocket&) = delete;
  GDUnixSocket& operator=(const GDUnixSocket&) = delete;

  /// Reads once, at most fragmentSize() bytes; blocks until there are some. No data and no error
  /// means end of stream. Without a descriptor the read fails with EBADF. Error:
  /// GDUnixSocketErrorReadFailed.
  virtual std::optional<Data> readWithError(std::optional<Error>* error = nullptr);

  /// Like readWithError(), from any descriptor. The caller keeps it open during the call.
  std::optional<Data> readFromSocket(std::int32_t descriptor,
                                     std::optional<Error>* error = nullptr) const;

  /// Calls readWithError() on a background thread and then `completion`, unless that is empty. The
  /// object is kept alive until then.
  void readWithCompletion(ReadCompletion completion);

  /// Writes `data` with one system call: returns the number of bytes written, which may be less
  /// than all, or -1. Blocks while the peer's buffer is full. Empty data gives 0 and no error, even
  /// without a descriptor. Errors: GDUnixSocketErrorBadSocket without a descriptor,
  /// GDUnixSocketErrorWriteFailed (EPIPE if the peer is gone; SIGPIPE is not raised on sockets).
  virtual std::int64_t writeData(const Data& data, std::optional<Error>* error = nullptr);

  /// Like writeData(), to any descriptor. The caller keeps it open during the call.
  std::int64_t write(const Data& data, std::int32_t toSocket,
                     std::optional<Error>* error = nullptr) const;

  /// Calls writeData() on a background thread and then `completion`, unless that is empty. The
  /// object and the data are kept alive until then.
  void writeData(const Data& data, WriteCompletion completion);

  /// Calls closeWithError() and ignores the result.
  void close() { closeWithError(nullptr); }

  /// Closes the descriptor. True if the socket is closed; if it already was, `error` is not
  /// changed. Error: GDUnixSocketErrorCloseFailed, if there is no descriptor or the system's close
  /// fails; the descriptor is gone then too, but the state does not change. Ends the calls of other
  /// threads on the descriptor and waits for them; on a descriptor that is not a socket it waits
  /// until they return by themselves.
  virtual bool closeWithError(std::optional<Error>* error = nullptr);

  /// GDUnixSocketErrorBadSocket if there is no descriptor, otherwise none.
  [[nodiscard]] std::optional<Error> checkForBadSocket() const;
  /// GDUnixSocketErrorBadSocket if `descriptor` is -1, otherwise none.
  [[nodiscard]] static std::optional<Error> checkForBadSocket(std::int32_t descriptor);

  /// lastErrorInfoForSocket() with the object's descriptor.
  [[nodiscard]] std::string lastErrorInfo() const;
  /// For example "fd: 5. errno: 32. Broken pipe", from the calling thread's present errno.
  [[nodiscard]] static std::string lastErrorInfoForSocket(std::int32_t descriptor);

  /// The descriptor, or -1. Another thread may close it as soon as it is returned.
  [[nodiscard]] std::int32_t fd() const { return descriptor_.number(); }

  /// Gives the object a descriptor, which it then owns; the old one is not closed. Call this only
  /// while no other thread reads, writes or closes.
  void setFd(std::int32_t descriptor) { descriptor_.store(descriptor); }

  /// A UUID of 36 characters, created on first use. Never waits for a send. The reference is valid
  /// as long as the object lives.
  [[nodiscard]] const std::string& uniqueID() const;
  /// uniqueID().
  [[nodiscard]] const std::string& description() const { return uniqueID(); }
  /// uniqueID().
  [[nodiscard]] const std::string& debugDescription() const { return uniqueID(); }

  /// The path given at creation. The reference is valid as long as the object lives.
  [[nodiscard]] const std::string& socketPath() const { return socketPath_; }

  /// The state. Another thread may change it as soon as it is returned.
  [[nodiscard]] GDUnixSocketState state() const { return state_; }
  /// Sets the state only; neither opens nor closes anything.
  void setState(GDUnixSocketState state) { state_ = state; }

  /// The most bytes that one read returns.
  [[nodiscard]] std::uint64_t fragmentSize() const { return fragmentSize_; }
  /// Takes effect with the next read.
  void setFragmentSize(std::uint64_t fragmentSize) { fragmentSize_ = fragmentSize; }

 protected:
  /// Implements initWithSocketPath() for every class of sockets.
  template <class Socket>
  static std::shared_ptr<Socket> make(const std::string& socketPath, std::uint64_t fragmentSize,
                                      const Queue& queue) {
    if (!acceptsPath(socketPath)) return nullptr;
    return std::make_shared<Socket>(Key(), socketPath, fragmentSize, queue);
  }

  /// The descriptor object; fd() is its number.
  Descriptor& descriptor() { return descriptor_; }
  /// The queue given at creation.
  [[nodiscard]] const Queue& queue() const { return queue_; }

  /// Creates a stream socket for the object and sets the state to idle; an old descriptor is
  /// closed. Error: GDUnixSocketErrorBadSocket, and there is no descriptor then.
  std::optional<Error> openSocket() SELDIAL_EXCLUDES(lock_);

  /// Sets the state, unless the descriptor of that generation has been closed or replaced.
  void setStateOf(Descriptor::Generation generation, GDUnixSocketState state)
      SELDIAL_EXCLUDES(lock_);

  /// Like closeWithError(), but does nothing if a newer descriptor has been stored.
  bool closeDescriptor(Descriptor::Generation generation, std::optional<Error>* error)
      SELDIAL_EXCLUDES(lock_);

  /// Like readWithError(), but fails with EBADF if the descriptor of that generation has been
  /// closed or replaced.
  std::optional<Data> readOf(Descriptor::Generation generation, std::optional<Error>* error);

  /// Whether the peer of `socket` has closed its end: reads return the rest without waiting, and
  /// then the end of the stream.
  static bool peerHasClosed(GDUnixSocket& socket);

  /// Makes the calls in progress on `socket` return, without waiting for them.
  static void endCalls(GDUnixSocket& socket) { socket.descriptor_.endCalls(); }

  /// Serialises opening and closing of the descriptor, and guards the fields that name it.
  mutable Mutex lock_;

 private:
  static bool acceptsPath(const std::string& socketPath);

  Descriptor descriptor_;
  mutable Mutex uniqueIDLock_;    ///< not lock_, which a server holds during a slow send
  mutable std::string uniqueID_;  ///< made on first use under the lock, then constant
  const std::string socketPath_;
  const Queue queue_;
  std::atomic<GDUnixSocketState> state_{GDUnixSocketStateIdle};
  std::atomic<std::uint64_t> fragmentSize_;
};

/// Stores `error`, or none, in an out-parameter that may be null.
void storeError(std::optional<Error>* outParameter, std::optional<Error> error);

}  // namespace seldial
