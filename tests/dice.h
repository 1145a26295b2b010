#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <utility>
#include <vector>

/// Chance for tests, the same in every run and on every machine.
class Dice {
 public:
  explicit Dice(std::uint32_t seed) : engine_(seed) {}

  /// 0 .. sides - 1
  std::size_t roll(std::size_t sides) { return engine_() % sides; }
  bool one_in(std::size_t sides) { return roll(sides) == 0; }
  template <class T>
  const T& pick(const std::vector<T>& choices) {
    return choices[roll(choices.size())];
  }
  template <class T>
  void shuffle(std::vector<T>& things) {
    for (std::size_t i = things.size(); i > 1; --i) std::swap(things[i - 1], things[roll(i)]);
  }

 private:
  std::mt19937 engine_;
};
