// with_qt: a hot key in a program with Qt's event loop, until SIGINT or SIGTERM. It needs no window
// and only QtCore.
#include <sys/signalfd.h>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QSocketNotifier>
#include <csignal>

#include "HotKey.h"

int main(int argc, char* argv[]) {
  sigset_t endSignals;
  sigemptyset(&endSignals);
  sigaddset(&endSignals, SIGINT);
  sigaddset(&endSignals, SIGTERM);
  sigprocmask(SIG_BLOCK, &endSignals, nullptr);
  QCoreApplication application(argc, argv);
  const auto desktop = desktopWithHotKey();
  if (!desktop) return 1;

  const auto dispatch = [&desktop] { desktop->dispatch(); };
  const QSocketNotifier ready(desktop->descriptor(), QSocketNotifier::Read);
  QObject::connect(&ready, &QSocketNotifier::activated, &application, dispatch);
  QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                   &application, dispatch);
  const QSocketNotifier ended(signalfd(-1, &endSignals, SFD_CLOEXEC), QSocketNotifier::Read);
  QObject::connect(&ended, &QSocketNotifier::activated, &application, &QCoreApplication::quit);
  return QCoreApplication::exec();
}
