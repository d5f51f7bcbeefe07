// Stream sockets of the local domain as objects: the base of the server and of the client, and what
// a server holds for each connection that it accepted.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "unixsocket/Data.h"
#include "unixsocket/Descriptor.h"
#include "unixsocket/Error.h"
#include "unixsocket/Mutex.h"

namespace seldial {

/// Where an object is in its life.
enum GDUnixSocketState : std::uint64_t {
  GDUnixSocketStateIdle = 0,       ///< made; accepted connections stay here for their whole life
  GDUnixSocketStateConnected = 1,  ///< a client's connect succeeded
  GDUnixSocketStateClosed = 2,     ///< a close succeeded
  GDUnixSocketStateListening = 3,  ///< a server's listen succeeded
};

/// Owns one descriptor, and reads, writes and closes it. Messages are not framed: a read gives what
/// one system call gave.
///
/// Objects are made by the init... functions and owned by std::shared_ptr. Sizes and counts are in
/// bytes. Failures come back as a missing result, a false or a -1, with the Error in an
/// out-parameter that may be null and that a success clears, unless it is said otherwise; nothing
/// is logged, and nothing is thrown but where GDUnixSocketServer::addClient() says so. Any member
/// function may be called on any thread unless it says otherwise.
///
/// One thread may be blocked in a read or a write while others write or close: a close ends it. The
/// descriptor is closed once, and its number is not given back to the system while a call of this
/// object is still using it.
class GDUnixSocket : public std::enable_shared_from_this<GDUnixSocket> {
 protected:
  /// Only an init... function can make one, and so an object.
  class Key {
    friend class GDUnixSocket;
    Key() = default;
  };

 public:
  /// Called with the error or none, and the data or nothing; neither: end-of-stream.
  using ReadCompletion =
      std::function<void(const std::optional<Error>& error, const std::optional<Data>& data)>;
  /// Called with the error or none, and the count of bytes written or -1.
  using WriteCompletion =
      std::function<void(const std::optional<Error>& error, std::int64_t count)>;

  /// The fragment size of an object that is made without one.
  static constexpr std::uint64_t kDefaultFragmentSize = 256;

  /// A socket object for `socketPath`, without a descriptor; null when the path is rejected. A path
  /// holds a "/", is standardised (no component "." or "..", no doubled or trailing separator, no
  /// leading "~") and is at most 103 bytes long; or it is "(dummy)", of a connection that has none.
  /// A read asks for at most `andFragmentSize` bytes.
  static std::shared_ptr<GDUnixSocket> initWithSocketPath(
      const std::string& socketPath, std::uint64_t andFragmentSize = kDefaultFragmentSize);

  /// Always null: there is no socket without a path.
  static std::shared_ptr<GDUnixSocket> init() { return initWithSocketPath({}); }

  /// For initWithSocketPath() alone, which has the key and has looked at the path.
  GDUnixSocket(Key key, std::string socketPath, std::uint64_t fragmentSize);

  /// Closes the descriptor if there is one.
  virtual ~GDUnixSocket();
  GDUnixSocket(const GDUnixSocket&) = delete;
  GDUnixSocket& operator=(const GDUnixSocket&) = delete;

  /// One read of at most fragmentSize() bytes, which the caller then owns; blocks until there are
  /// some. Nothing and no error: the peer has closed. Without a descriptor the read fails as the
  /// system's read does (GDUnixSocketErrorReadFailed).
  virtual std::optional<Data> readWithError(std::optional<Error>* error = nullptr);

  /// The same on any descriptor, which the caller keeps open meanwhile.
  std::optional<Data> readFromSocket(std::int32_t descriptor,
                                     std::optional<Error>* error = nullptr) const;

  /// readWithError() on a background thread, which then calls `completion` unless that is empty.
  /// The object is kept alive until then.
  void readWithCompletion(ReadCompletion completion);

  /// One write of all of `data`: the count of bytes that were taken, which may be short, or -1.
  /// Blocks while the peer's buffer is full. Empty data is 0 and no error, whatever the descriptor.
  /// Errors: GDUnixSocketErrorBadSocket without a descriptor, GDUnixSocketErrorWriteFailed. A peer
  /// that is gone is such an error (EPIPE); no SIGPIPE is raised, unless the descriptor is not a
  /// socket.
  virtual std::int64_t writeData(const Data& data, std::optional<Error>* error = nullptr);

  /// The same on any descriptor, which the caller keeps open meanwhile.
  std::int64_t write(const Data& data, std::int32_t toSocket,
                     std::optional<Error>* error = nullptr) const;

  /// writeData() on a background thread, which then calls `completion` unless that is empty. Object
  /// and data are kept alive until then.
  void writeData(const Data& data, WriteCompletion completion);

  /// closeWithError() without its answer.
  void close() { closeWithError(nullptr); }

  /// Closes the descriptor; true when the socket is closed, also when it was already (`error` is
  /// left alone then). GDUnixSocketErrorCloseFailed: there was none, or the system's close failed;
  /// the descriptor is forgotten then too, but the state stays. Waits for calls of other threads
  /// that are under way on the descriptor, which it ends by shutting the socket down; on a
  /// descriptor that is not a socket, until they return by themselves.
  virtual bool closeWithError(std::optional<Error>* error = nullptr);

  /// GDUnixSocketErrorBadSocket when there is no descriptor (-1), otherwise none.
  [[nodiscard]] std::optional<Error> checkForBadSocket() const;
  /// The same for any number.
  [[nodiscard]] static std::optional<Error> checkForBadSocket(std::int32_t descriptor);

  /// "fd: 5. errno: 32. Broken pipe", with the calling thread's errno as it is now.
  [[nodiscard]] std::string lastErrorInfo() const;
  /// The same for any number.
  [[nodiscard]] static std::string lastErrorInfoForSocket(std::int32_t descriptor);

  /// The descriptor, -1 for none. It may be closed by another thread as soon as it is returned.
  [[nodiscard]] std::int32_t fd() const { return descriptor_.number(); }

  /// Hands the object a descriptor, which it owns from now on; the one before is not closed. To be
  /// called while no other thread reads, writes or closes.
  void setFd(std::int32_t descriptor) { descriptor_.store(descriptor); }

  /// 36 characters that no other object has, made when they are first asked for. The reference
  /// lives as long as the object.
  [[nodiscard]] const std::string& uniqueID() const;
  /// uniqueID().
  [[nodiscard]] const std::string& description() const { return uniqueID(); }
  /// uniqueID().
  [[nodiscard]] const std::string& debugDescription() const { return uniqueID(); }

  /// The path that the object was made with. The reference lives as long as the object.
  [[nodiscard]] const std::string& socketPath() const { return socketPath_; }

  /// Where the object is in its life. Another thread may change it as soon as it is returned.
  [[nodiscard]] GDUnixSocketState state() const { return state_; }
  /// Says where it is; neither opens nor closes anything.
  void setState(GDUnixSocketState state) { state_ = state; }

  /// The most bytes that one read returns.
  [[nodiscard]] std::uint64_t fragmentSize() const { return fragmentSize_; }
  /// From the next read on.
  void setFragmentSize(std::uint64_t fragmentSize) { fragmentSize_ = fragmentSize; }

 protected:
  /// What initWithSocketPath() is, for every class of sockets.
  template <class Socket>
  static std::shared_ptr<Socket> make(const std::string& socketPath, std::uint64_t fragmentSize) {
    if (!acceptsPath(socketPath)) return nullptr;
    return std::make_shared<Socket>(Key(), socketPath, fragmentSize);
  }

  /// The descriptor, of which fd() is the number. The reference lives as long as the object.
  Descriptor& descriptor() { return descriptor_; }

  /// Makes a stream socket the object's descriptor, and its state idle; one that it still had is
  /// closed. Error (GDUnixSocketErrorBadSocket): there is no descriptor now.
  std::optional<Error> openSocket();

  /// Sets the state, unless the descriptor with that serial is gone meanwhile.
  void setStateOf(Descriptor::Serial serial, GDUnixSocketState state) SELDIAL_EXCLUDES(lock_);

  /// As closeWithError(), but does nothing when another descriptor was stored meanwhile.
  bool closeDescriptor(Descriptor::Serial serial, std::optional<Error>* error)
      SELDIAL_EXCLUDES(lock_);

  /// As readWithError(), of the descriptor with that serial; without one when that is gone.
  std::optional<Data> readOf(Descriptor::Serial serial, std::optional<Error>* error);

  /// The object's own lock. Held while the descriptor is opened or closed, so that these come one
  /// after the other, and for what the fields that it guards need.
  mutable Mutex lock_;

 private:
  static bool acceptsPath(const std::string& socketPath);

  Descriptor descriptor_;
  mutable std::string uniqueID_ SELDIAL_GUARDED_BY(lock_);  ///< empty until asked for
  const std::string socketPath_;
  std::atomic<GDUnixSocketState> state_{GDUnixSocketStateIdle};
  std::atomic<std::uint64_t> fragmentSize_;
};

/// Puts `error`, or none, into an out-parameter that may be null.
void handError(std::optional<Error>* outParameter, std::optional<Error> error);

}  // namespace seldial
