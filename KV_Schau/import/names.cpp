#include "KV_Schau/import/names.h"

#include <algorithm>
#include <array>
#include <boost/unordered/unordered_flat_set.hpp>
#include <cstddef>
#include <string>
#include <string_view>

namespace schau::imports {
namespace {

using variant::NameKey;

constexpr std::string_view digits = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
constexpr std::size_t number_length = variant::name_length - 1;

bool is_name_of(char type, std::string_view id) {
  return id.size() == variant::name_length && id.front() == type &&
         id.find_first_not_of(digits) == std::string_view::npos;
}

class Namer {
 public:
  Namer(std::vector<Element>& elements, const NetTable& table) : elements_(elements), table_(table) {
    const std::size_t most = std::max(elements.size(), table.rows.size());
    base_ = most < 10'000 ? 10 : most < 1'679'616 ? 36 : 62;
    taken_.reserve(elements.size());
  }

  void run() {
    for (Element& element : elements_) keep_id(element);
    for (Element& element : elements_) {
      if (element.type != ' ' && element.name == 0) name(element);
    }
  }

 private:
  void keep_id(Element& element) {
    if (element.role != Role::row || element.row == no_row) return;
    const std::string_view id = table_.rows[element.row].id;
    if (!is_name_of(element.type, id)) return;
    element.name = variant::name_of(id);
    taken_.insert(element.name);
  }

  void name(Element& element) {
    const bool belongs_to_row = element.role != Role::gauge && element.role != Role::joined_outlet;
    const NameKey wanted = belongs_to_row ? variant::name_of(element.type + tail_of(element.row)) : 0;
    element.name = belongs_to_row && taken_.insert(wanted).second ? wanted : next_free(element.type);
  }

  [[nodiscard]] std::string tail_of(std::uint32_t row) const {
    const std::string_view id = table_.rows[row].id;
    if (is_name_of(table_.rows[row].type, id)) return std::string(id.substr(1));
    return number(row + 1);
  }

  NameKey next_free(char type) {
    std::uint32_t& last = last_number_[static_cast<unsigned char>(type)];
    while (true) {
      const NameKey candidate = variant::name_of(type + number(++last));
      if (taken_.insert(candidate).second) return candidate;
    }
  }

  [[nodiscard]] std::string number(std::uint32_t value) const {
    std::string text(number_length, '0');
    for (std::size_t k = number_length; k-- > 0; value /= base_) text[k] = digits[value % base_];
    return text;
  }

  std::vector<Element>& elements_;
  const NetTable& table_;
  boost::unordered_flat_set<NameKey> taken_;
  std::array<std::uint32_t, 256> last_number_{};
  std::uint32_t base_ = 10;
};

}  // namespace

void assign_names(std::vector<Element>& elements, const NetTable& table) {
  Namer(elements, table).run();
}

}  // namespace schau::imports
