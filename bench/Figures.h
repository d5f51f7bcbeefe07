// The figures, one source file each. Each measures the program and its floor in the same run and
// takes turns between them, so that a machine that is busy with something else is busy for both.
#pragma once

#include <vector>

#include "bench/Table.h"

namespace seldial::bench {

std::vector<Row> roundTrip();
std::vector<Row> dial();
std::vector<Row> start();
std::vector<Row> idle();
std::vector<Row> growth();
std::vector<Row> heldConnections();

}  // namespace seldial::bench
