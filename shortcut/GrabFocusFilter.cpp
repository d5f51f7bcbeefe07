#include "shortcut/GrabFocusFilter.h"

#include <QCoreApplication>

#include "platform/x11/GrabFocus.h"

namespace seldial {

GrabFocusFilter::GrabFocusFilter() {
  QCoreApplication::instance()->installNativeEventFilter(this);
}

GrabFocusFilter::~GrabFocusFilter() {
  QCoreApplication::instance()->removeNativeEventFilter(this);
}

bool GrabFocusFilter::nativeEventFilter(const QByteArray& eventType, void* message,
                                        qintptr* /*result*/) {
  return eventType == "xcb_generic_event_t" && platform::x11::isFocusChangeOfGrab(message);
}

}  // namespace seldial
