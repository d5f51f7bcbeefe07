// seldial-choose: asks which of the numbers on standard input, one per line, to call, and prints
// its position, counted from 0. Exit status: 0 if one was chosen, 1 if the window was cancelled, 2
// if there are no numbers. The numbers are not arguments, because every user can read the arguments
// of a process.
#include <QApplication>
#include <QLocale>
#include <cstdio>
#include <iostream>
#include <string>

#include "shortcut/NumberChooser.h"
#include "shortcut/Resources.h"

int main(int argc, char* argv[]) {
  QStringList numbers;
  for (std::string line; std::getline(std::cin, line);) numbers << QString::fromStdString(line);
  if (numbers.isEmpty()) {
    std::fputs("seldial-choose: there are no numbers on standard input\n", stderr);
    return 2;
  }
  const QApplication application(argc, argv);
  const auto translators = seldial::translateInto(QLocale::system().uiLanguages());
  QApplication::setWindowIcon(seldial::windowIcon());
  seldial::NumberChooser chooser(numbers);
  if (chooser.exec() != QDialog::Accepted) return 1;
  std::printf("%d\n", chooser.chosen());
  return 0;
}
