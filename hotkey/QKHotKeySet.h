#pragma once

#include <cstddef>
#include <memory>
#include <unordered_set>

#include "hotkey/QKHotKey.h"

namespace seldial {

/// Hashes records by what makes them equal; a plain record can be looked up too.
struct QKHotKeyHash {
  using is_transparent = void;  ///< for the containers
  /// Of a plain record.
  std::size_t operator()(const QKHotKey& hotKey) const { return hotKey.hash(); }
  /// Of an owned one.
  std::size_t operator()(const std::shared_ptr<QKHotKey>& hotKey) const { return hotKey->hash(); }
};

/// Compares records by isEqual(), plain and owned ones alike.
struct QKHotKeyEqual {
  using is_transparent = void;  ///< for the containers
  /// Whether both are the same hot key.
  template <class Left, class Right>
  bool operator()(const Left& left, const Right& right) const {
    return address(left)->isEqual(*address(right));
  }

 private:
  static const QKHotKey* address(const QKHotKey& hotKey) { return &hotKey; }
  static const QKHotKey* address(const std::shared_ptr<QKHotKey>& hotKey) { return hotKey.get(); }
};

/// Owns its records: at most one of each key code and flags, none of them null.
using QKHotKeySet = std::unordered_set<std::shared_ptr<QKHotKey>, QKHotKeyHash, QKHotKeyEqual>;

}  // namespace seldial
