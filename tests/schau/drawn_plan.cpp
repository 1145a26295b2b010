#include "tests/schau/drawn_plan.h"

#include <fmt/format.h>

#include <algorithm>

namespace schau_test {
namespace {

struct TreeElement {
  std::string name;
  std::vector<std::size_t> inflows;
  std::size_t outflow = 0;  // its position plus one; 0 at the outlet
};

std::string name_for(char type, std::size_t number) {
  constexpr std::string_view digits = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  std::string name(5, type);
  for (std::size_t place = 4; place > 0; --place) {
    name[place] = digits[number % digits.size()];
    number /= digits.size();
  }
  return name;
}

class Tree {
 public:
  Tree(Dice& dice, const TreeShape& shape) : dice_(dice), shape_(shape) {}

  Bed build() {
    for (std::size_t i = 0; i < shape_.sources; ++i) {
      open_.push_back(add('N', {}));
      const std::size_t joints = dice_.roll(3);
      for (std::size_t k = 0; k < joints; ++k) join();
    }
    while (open_.size() > 1) join();
    join();
    return write();
  }

 private:
  std::size_t add(char type, std::vector<std::size_t> inflows) {
    elements_.push_back({name_for(type, elements_.size()), std::move(inflows)});
    return elements_.size() - 1;
  }

  void join() {
    const std::size_t count = std::min(open_.size(), 1 + dice_.roll(shape_.most_inflows));
    std::vector<std::size_t> inflows;
    for (std::size_t k = 0; k < count; ++k) {
      const std::size_t back = dice_.roll(std::min(open_.size(), shape_.reach_back));
      const auto chosen = open_.end() - 1 - static_cast<std::ptrdiff_t>(back);
      inflows.push_back(*chosen);
      open_.erase(chosen);
    }
    const char type = shape_.with_gauges && dice_.one_in(6) ? 'P' : 'T';
    const std::size_t joint = add(type, inflows);
    for (const std::size_t inflow : inflows) elements_[inflow].outflow = joint + 1;
    open_.push_back(joint);
  }

  Bed write() {
    Bed bed = Bed::empty();
    for (const TreeElement& element : elements_) {
      SystemLine line{element.name};
      for (const std::size_t inflow : element.inflows) line.inflows.push_back(elements_[inflow].name);
      line.outflows.push_back(element.outflow == 0 ? std::string_view("ENDE")
                                                   : elements_[element.outflow - 1].name);
      bed.lines(FileId::sys).push_back(text_of(line));
      if (element.name[0] == 'N') {
        bed.lines(FileId::nfl)
            .push_back(
                fmt::format("   {}  {:5.2f}", element.name, 0.1 * static_cast<double>(1 + dice_.roll(90))));
      }
      if (element.name[0] == 'T') bed.lines(FileId::trs).push_back("   " + element.name);
    }
    return bed;
  }

  Dice& dice_;
  const TreeShape& shape_;
  std::vector<TreeElement> elements_;
  std::vector<std::size_t> open_;
};

}  // namespace

const schau::plan::PlanNode* DrawnPlan::node(std::string_view name) const {
  const auto found = std::ranges::find(plan.nodes, element(name), &schau::plan::PlanNode::element);
  return found == plan.nodes.end() ? nullptr : &*found;
}

std::vector<std::string> DrawnPlan::names() const {
  std::vector<std::string> names;
  for (const schau::plan::PlanNode& node : plan.nodes) {
    names.push_back(schau::variant::text_of(variant.names[node.element]));
  }
  std::ranges::sort(names);
  return names;
}

Bed random_tree(Dice& dice, const TreeShape& shape) {
  return Tree(dice, shape).build();
}

}  // namespace schau_test
