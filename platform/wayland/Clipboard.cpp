#include "platform/wayland/Clipboard.h"

#include <unistd.h>

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "platform/Output.h"
#include "platform/linux/Applications.h"
#include "wlr-data-control-unstable-v1-client.h"

namespace seldial::platform::wayland {
namespace {

using Clock = ManagerWatch::Clock;

/// How long other programs may keep changing the clipboard.
constexpr std::chrono::seconds kQuietLimit{3};

DataControl& self(void* data) {
  return *static_cast<DataControl*>(data);
}

const zwlr_data_control_offer_v1_listener kOfferListener{
    [](void* data, zwlr_data_control_offer_v1* offer, const char* type) {
      self(data).offerHasType(offer, type);
    }};

const zwlr_data_control_device_v1_listener kDeviceListener{
    [](void* data, zwlr_data_control_device_v1* /*device*/, zwlr_data_control_offer_v1* offer) {
      self(data).offerCreated(offer);
    },
    [](void* data, zwlr_data_control_device_v1* /*device*/, zwlr_data_control_offer_v1* offer) {
      self(data).clipboardChanged(offer);
    },
    [](void* data, zwlr_data_control_device_v1* /*device*/) { self(data).deviceFinished(); },
    [](void* data, zwlr_data_control_device_v1* /*device*/, zwlr_data_control_offer_v1* offer) {
      self(data).primaryChanged(offer);
    }};

const zwlr_data_control_source_v1_listener kSourceListener{
    [](void* data, zwlr_data_control_source_v1* source, const char* /*type*/, std::int32_t pipe) {
      close(pipe);
      self(data).emptyWasRead(source);
    },
    [](void* data, zwlr_data_control_source_v1* source) { self(data).sourceCancelled(source); }};

const wl_callback_listener kTakenListener{
    [](void* data, wl_callback* /*callback*/, std::uint32_t /*serial*/) {
      self(data).ownershipTaken();
    }};

}  // namespace

DataControl::DataControl(Display& display, linux_port::MainLoop& loop)
    : display_(display),
      device_(zwlr_data_control_manager_v1_get_data_device(display.dataControl(), display.seat())),
      incoming_(loop) {
  zwlr_data_control_device_v1_add_listener(device_.get(), &kDeviceListener, this);
}

DataControl::~DataControl() {
  for (auto* const source : sources_) zwlr_data_control_source_v1_destroy(source);
  for (const auto& [offer, type] : offers_) zwlr_data_control_offer_v1_destroy(offer);
  if (device_) zwlr_data_control_device_v1_destroy(device_.release());
}

void DataControl::takeOwnership() {
  display_.serve(std::chrono::milliseconds(0));  // what has happened until now
  managers_.cleared(Clock::now());
  take();
}

void DataControl::takeOwnershipAgain() {
  managers_.clearedAgain(Clock::now());
  take();
}

void DataControl::take() {
  ownershipTaken_ = awaitsCopy_ = requested_ = begun_ = false;
  replaced_.clear();
  if (!device_) return;
  // The previous source, if any, is then cancelled and destroyed.
  empty_ = zwlr_data_control_manager_v1_create_data_source(display_.dataControl());
  sources_.insert(empty_);
  zwlr_data_control_source_v1_add_listener(empty_, &kSourceListener, this);
  zwlr_data_control_source_v1_offer(empty_, kEmptyClipboardType);
  zwlr_data_control_device_v1_set_selection(device_.get(), empty_);
  takeCallback_ = display_.requestCallback();
  wl_callback_add_listener(takeCallback_.get(), &kTakenListener, this);
}

/// All clipboard changes up to our own have been reported.
void DataControl::ownershipTaken() {
  takeCallback_.reset();
  ownershipTaken_ = empty_ != nullptr && device_ != nullptr;
  changed_ = false;
  managers_.clearingReported();
}

bool DataControl::awaitQuiet() {
  if (managers_.quietFrom() > Clock::now()) {
    if (!display_.synchronise()) return false;
    const auto limit = Clock::now() + kQuietLimit;
    for (auto now = Clock::now(); managers_.quietFrom() > now; now = Clock::now()) {
      if (now >= limit || display_.lost()) return false;
      const auto time = std::min(managers_.quietFrom(), limit) - now;
      display_.serve(std::chrono::ceil<std::chrono::milliseconds>(time));
    }
    managers_.becameQuiet();
  }
  changed_ = false;
  managers_.expectCopy();
  awaitsCopy_ = true;
  return true;
}

void DataControl::wait(Clock::duration time) {
  const auto end = Clock::now() + time;
  for (auto now = Clock::now(); now < end && !display_.lost(); now = Clock::now()) {
    display_.serve(std::chrono::ceil<std::chrono::milliseconds>(end - now));
  }
}

std::optional<std::string> DataControl::copiedText() {
  const bool answered = display_.synchronise();
  managers_.copyWasRead();
  awaitsCopy_ = false;
  if (!answered || !(copied() || (begun_ && managers_.isCopyReplaced()))) {
    incoming_.abandon();
    return {};
  }
  const bool early = requested_ || !copied();
  if (!early) request();
  auto text = incoming_.finish();
  if (requested_ && text && text->empty()) {  // the owner may have had no text yet
    request();
    text = incoming_.finish();
  }
  requested_ = false;
  if (!text || !text->empty() || !managers_.isEmptyRead()) return text;
  if (replaced_.empty()) return {};
  managers_.copyWasReplaced();
  return std::exchange(replaced_, {});
}

/// Whether another program has put text on the clipboard since awaitQuiet().
bool DataControl::copied() const {
  return ownershipTaken_ && empty_ == nullptr && changed_ && clipboard_ != nullptr &&
         offers_.at(clipboard_).textType < std::size(kTextTypes);
}

/// Requests the text during the delay in which the application copies. A text that has been
/// replaced is read to its end first: an owner that still writes it could be killed by SIGPIPE.
void DataControl::requestEarly() {
  if (awaitsCopy_ && !requested_ && !incoming_.arriving() && copied()) request();
}

void DataControl::request() {
  if (auto text = begun_ ? incoming_.arrived() : std::nullopt; text && !text->empty())
    replaced_ = *std::move(text);
  const int pipe = incoming_.begin();
  if (pipe == -1) return;
  zwlr_data_control_offer_v1_receive(clipboard_, kTextTypes[offers_.at(clipboard_).textType], pipe);
  close(pipe);  // libwayland sends a duplicate
  display_.flush();
  requested_ = begun_ = true;
}

void DataControl::offerCreated(zwlr_data_control_offer_v1* offer) {
  offers_[offer].textType = std::size(kTextTypes);
  zwlr_data_control_offer_v1_add_listener(offer, &kOfferListener, this);
}

void DataControl::offerHasType(zwlr_data_control_offer_v1* offer, const char* type) {
  auto& [textType, isOurEmpty] = offers_[offer];
  textType = std::min(textType, textTypeRank(type));
  isOurEmpty = isOurEmpty || std::string_view(type) == kEmptyClipboardType;
}

void DataControl::clipboardChanged(zwlr_data_control_offer_v1* offer) {
  changed_ = true;
  forget(std::exchange(clipboard_, offer));
  requested_ = false;
  requestEarly();
  if (offer == nullptr || (takeCallback_ && offers_[offer].isOurEmpty)) return;
  managers_.taken(Clock::now(), offers_[offer].textType != std::size(kTextTypes));
}

void DataControl::primaryChanged(zwlr_data_control_offer_v1* offer) {
  forget(std::exchange(primary_, offer));
}

void DataControl::forget(zwlr_data_control_offer_v1* offer) {
  if (offers_.erase(offer) > 0) zwlr_data_control_offer_v1_destroy(offer);
}

void DataControl::deviceFinished() {
  if (device_) zwlr_data_control_device_v1_destroy(device_.release());
}

void DataControl::sourceCancelled(zwlr_data_control_source_v1* source) {
  sources_.erase(source);
  zwlr_data_control_source_v1_destroy(source);
  if (source == empty_) empty_ = nullptr;
  requestEarly();
}

void DataControl::emptyWasRead(zwlr_data_control_source_v1* source) {
  if (source == empty_) managers_.emptyWasRead(Clock::now());
}

void WaylandClipboard::clear() {
  typed_.reset();
  data_.takeOwnership();
}

bool WaylandClipboard::copySelection() {
  terminal_ = linux_port::TerminalKind::kNone;
  names_ = focusedProgram_();
  // It is not known here whether Emacs has copied the text that it shows as selected.
  if (linux_port::isUnsupported(names_) || linux_port::takesPrimaryAfterCopying(names_))
    return true;
  for (const auto& name : names_) {
    if (terminal_ == linux_port::TerminalKind::kNone) terminal_ = linux_port::terminalKind(name);
  }
  const bool byCopyKey = terminal_ == linux_port::TerminalKind::kOther;
  chord_ = byCopyKey ? Chord::kCopyKey : Chord::kControlInsert;
  return type();
}

bool WaylandClipboard::type() {
  if (!data_.awaitQuiet()) {
    printError("seldial: other programs kept changing the clipboard, so nothing was copied");
    return false;
  }
  if (!keys_.type(chord_)) return false;
  typed_ = Clock::now();
  return true;
}

/// Returns a text that may be from a clipboard manager if the application copies it once more.
std::optional<std::string> WaylandClipboard::copyAgain(const std::string& text) {
  const auto delay = Clock::now() - *typed_;
  data_.takeOwnershipAgain();
  if (!type()) return {};
  data_.wait(delay);
  auto again = data_.copiedText();
  return again == text ? std::move(again) : std::nullopt;
}

std::optional<std::string> WaylandClipboard::text() {
  if (!typed_) return {};
  auto text = data_.copiedText();
  if (text && data_.mayBeFromManager()) text = copyAgain(*text);
  // Some terminals copy an empty text when nothing is selected.
  if (terminal_ != linux_port::TerminalKind::kNone && text && text->empty()) return {};
  if (text && linux_port::mayBeCurrentLine(names_, *text)) return {};
  return text;
}

}  // namespace seldial::platform::wayland
