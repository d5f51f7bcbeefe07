#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace seldial::tests {

/// How fast a value grows with another: the slope of the regression line through the points. The
/// first quarter of the points is the warm-up and is ignored.
class Slope {
 public:
  void add(double x, double y) { points_.emplace_back(x, y); }
  [[nodiscard]] std::size_t count() const { return points_.size(); }

  /// The slope; 0 if there are too few points.
  [[nodiscard]] double value() const {
    const auto begin = points_.begin() + static_cast<std::ptrdiff_t>(points_.size() / 4);
    const auto number = static_cast<double>(points_.end() - begin);
    if (number < 3) return 0;
    double meanX = 0;
    double meanY = 0;
    std::for_each(begin, points_.end(), [&](const auto& point) {
      meanX += point.first / number;
      meanY += point.second / number;
    });
    double above = 0;
    double below = 0;
    std::for_each(begin, points_.end(), [&](const auto& point) {
      above += (point.first - meanX) * (point.second - meanY);
      below += (point.first - meanX) * (point.first - meanX);
    });
    return below == 0 ? 0 : above / below;
  }

 private:
  std::vector<std::pair<double, double>> points_;
};

}  // namespace seldial::tests
