// seldial-choose: asks which of the numbers on standard input, one per line, to call, and prints
// its position, counted from 0. The numbers are not arguments, because every user can read the
// arguments of a process.
#include <QApplication>
#include <QLocale>
#include <cstdio>
#include <iostream>
#include <string>

#include "shortcut/NumberChooser.h"
#include "shortcut/Resources.h"

namespace {

constexpr const char* kHelp = R"(usage: seldial-choose

Shows the numbers from standard input, one per line, in a window, and prints the
position of the one to call, counted from 0. seldial-uc starts it.

  --help      print this text
  --version   print the version

Exit status: 0 if a number was chosen; 1 if the window was cancelled; 2 if there
are no numbers or the command line is invalid.
)";

/// Handles an option. Returns the exit status.
int readOption(const std::string& option) {
  if (option == "--help" || option == "-h") return std::fputs(kHelp, stdout) < 0 ? 1 : 0;
  if (option == "--version") return std::puts("seldial-choose " SELDIAL_VERSION) < 0 ? 1 : 0;
  std::fprintf(stderr, "seldial-choose: unknown option %s\nTry seldial-choose --help.\n",
               option.c_str());
  return 2;
}

QStringList readNumbers() {
  QStringList numbers;
  for (std::string line; std::getline(std::cin, line);) numbers << QString::fromStdString(line);
  return numbers;
}

}  // namespace

int main(int argc, char* argv[]) {
  if (argc > 1) return readOption(argv[1]);
  const QStringList numbers = readNumbers();
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
