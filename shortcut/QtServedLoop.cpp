#include "shortcut/QtServedLoop.h"

#include <QAbstractEventDispatcher>

namespace seldial {

QtServedLoop::QtServedLoop(platform::linux_port::MainLoop& loop)
    : notifier_(loop.descriptor(), QSocketNotifier::Read) {
  const auto serve = [&loop] { loop.serve(); };
  QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, serve);
  // What the ports were asked for meanwhile may have left something to do before a wait.
  QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                   &notifier_, serve);
}

}  // namespace seldial
