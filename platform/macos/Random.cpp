#include "platform/Random.h"

#include <cstdlib>

namespace seldial::platform {

bool fillWithRandom(void* bytes, std::size_t size) {
  arc4random_buf(bytes, size);  // getentropy() is younger than the oldest system that we run on
  return true;
}

}  // namespace seldial::platform
