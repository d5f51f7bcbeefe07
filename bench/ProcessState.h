// What the system says of a running process.
#pragma once

#include <sys/types.h>

namespace seldial::bench {

/// Bytes of memory that would be free if the process were gone: what it shares with nobody.
double uniqueMemory(pid_t process);

int threadCount(pid_t process);

/// How often any of its threads was given a processor, since each began.
long wakeUps(pid_t process);

/// Returns once none of its threads has run for 3 s: what it does after its work is done then.
void settle(pid_t process);

/// The calling process and what it starts from now on stay on one processor; undone at the end.
/// What was started before, a desktop for example, runs anywhere.
class OnOneProcessor {
 public:
  OnOneProcessor();
  ~OnOneProcessor();
  OnOneProcessor(const OnOneProcessor&) = delete;
  OnOneProcessor& operator=(const OnOneProcessor&) = delete;
};

}  // namespace seldial::bench
