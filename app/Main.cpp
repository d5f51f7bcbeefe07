#include "app/AppDelegate.h"

int main(int argc, char* argv[]) {
  return seldial::platform::applicationMain(argc, argv, &seldial::AppDelegate::init);
}
