// Writes a variant of any size: a river network with its areas, reaches and branchings.

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <fstream>
#include <ios>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace {

enum class Order { system, reversed, shuffled };

struct Settings {
  std::uint32_t elements = 1000;
  std::uint64_t seed = 1;
  Order order = Order::system;
  bool finding_for_every_element = false;
  bool unit_lines = false;
  std::string base;
};

/// SplitMix64: small, quick, and the same numbers on every platform, so that a seed names a variant.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  std::uint64_t next() {
    state_ += 0x9E3779B97F4A7C15U;
    std::uint64_t bits = state_;
    bits = (bits ^ (bits >> 30U)) * 0xBF58476D1CE4E5B9U;
    bits = (bits ^ (bits >> 27U)) * 0x94D049BB133111EBU;
    return bits ^ (bits >> 31U);
  }

  /// A whole number from 0 to limit - 1.
  std::uint32_t below(std::uint32_t limit) {
    return static_cast<std::uint32_t>(((next() >> 32U) * limit) >> 32U);
  }

  /// A whole number from low to high, both included.
  std::uint32_t between(std::uint32_t low, std::uint32_t high) { return low + below(high - low + 1); }

 private:
  std::uint64_t state_;
};

// ---------------------------------------------------------------------------------------------
// The network

constexpr std::size_t max_inflows = 3;
constexpr std::string_view type_letters = "NKETVBP";

/// Links are positions in system order, 1-based; 0 is no link.
struct Element {
  char type = ' ';
  std::uint32_t number = 0;    ///< counted within the type, from 1
  bool small_letters = false;  ///< its number is written with small letters too
  std::array<std::uint32_t, max_inflows> inflow{};
  std::array<std::uint32_t, 2> outflow{};
};

/// An outflow of an element that no later element has taken in yet.
struct OpenOutflow {
  std::uint32_t position = 0;
  std::size_t slot = 0;
};

bool is_source(char type) {
  return type == 'N' || type == 'K' || type == 'E';
}
bool is_fork(char type) {
  return type == 'V' || type == 'B';
}

/// Grows a network in system order. The open outflows are a stack whose top is the river's present
/// lower end: an element takes in what was defined last, as in a network written down tributary by
/// tributary.
class NetworkBuilder {
 public:
  NetworkBuilder(std::uint32_t elements, std::uint64_t seed) : count_(elements), random_(seed) {
    elements_.reserve(elements);
  }

  std::vector<Element> build() {
    while (elements_.size() < count_) {
      const char type = choose_type();
      append(type, choose_inflow_count(type));
    }
    return std::move(elements_);
  }

 private:
  /// One of every type, so that even a small variant has all that a large one has.
  static constexpr std::string_view opening = "NKETVTBP";
  static constexpr std::uint32_t smallest_with_opening = 10;
  static constexpr std::size_t most_open_outflows = 60;
  /// Even if all were of one type, four digits or capital letters would do for so many.
  static constexpr std::uint32_t most_without_small_letters = 36 * 36 * 36 * 36 - 1;

  std::uint32_t count_;
  Random random_;
  std::vector<Element> elements_;
  std::vector<OpenOutflow> open_;
  std::size_t undivided_forks_ = 0;  ///< forks both of whose outflows are open
  std::array<std::uint32_t, type_letters.size()> numbers_{};

  /// Elements that come after the one now being made.
  std::size_t remaining() const { return count_ - elements_.size() - 1; }

  /// The elements needed to lead so many open outflows together into one: each gathers up to three,
  /// but never both outflows of one fork.
  static std::size_t needed(std::size_t open, std::size_t undivided) { return open / 2 + undivided; }

  std::size_t different_open() const { return open_.size() - undivided_forks_; }

  char choose_type() {
    if (open_.empty()) {
      return elements_.empty() ? 'N' : pick_source();
    }
    char type = 'T';
    if (count_ >= smallest_with_opening && elements_.size() < opening.size()) {
      type = opening[elements_.size()];
    } else {
      type = draw_type();
    }
    const std::size_t open_after = open_.size() + 1;
    if (is_source(type) &&
        (open_after > most_open_outflows || remaining() < needed(open_after, undivided_forks_))) {
      return 'T';
    }
    if (is_fork(type) && remaining() < needed(open_after, undivided_forks_ + 1)) {
      return 'T';
    }
    return type;
  }

  char draw_type() {
    const std::uint32_t percent = random_.below(100);
    if (percent < 48) {
      return pick_source();
    }
    if (percent < 88) {
      return 'T';
    }
    return percent < 92 ? 'V' : percent < 96 ? 'B' : 'P';
  }

  char pick_source() {
    const std::uint32_t part = random_.below(48);
    return part < 37 ? 'N' : part < 46 ? 'K' : 'E';
  }

  std::size_t choose_inflow_count(char type) {
    if (is_source(type)) {
      return 0;
    }
    const std::size_t most = std::min(max_inflows, different_open());
    const std::uint32_t percent = random_.below(100);
    std::size_t wanted = 1;
    if (type == 'T') {
      wanted = percent < 10 ? 1 : percent < 55 ? 2 : 3;
    } else {
      wanted = percent < 70 ? 1 : 2;
    }
    const bool opening_gathers = elements_.size() < opening.size() && !is_fork(type);
    const std::size_t taken = opening_gathers ? most : std::min(wanted, most);
    const std::size_t open_after = open_.size() - taken + (is_fork(type) ? 2 : 1);
    const std::size_t undivided_after = undivided_forks_ + (is_fork(type) ? 1 : 0);
    return remaining() < needed(open_after, undivided_after) ? most : taken;
  }

  void append(char type, std::size_t inflows) {
    const auto position = static_cast<std::uint32_t>(elements_.size() + 1);
    Element element;
    element.type = type;
    element.number = ++numbers_.at(type_letters.find(type));
    element.small_letters = count_ > most_without_small_letters;
    take_inflows(element, position, inflows);
    elements_.push_back(element);

    if (!is_fork(type)) {
      open_.push_back({position, 0});
      return;
    }
    const std::size_t nearer = random_.below(2);
    open_.push_back({position, 1 - nearer});
    open_.push_back({position, nearer});
    ++undivided_forks_;
  }

  void take_inflows(Element& element, std::uint32_t position, std::size_t inflows) {
    std::size_t taken = 0;
    for (std::size_t i = open_.size(); taken < inflows && i-- > 0;) {
      const OpenOutflow outflow = open_[i];
      if (std::find(element.inflow.begin(), element.inflow.end(), outflow.position) != element.inflow.end()) {
        continue;
      }
      open_.erase(open_.begin() + static_cast<std::ptrdiff_t>(i));
      if (is_open(outflow.position)) {
        --undivided_forks_;
      }
      element.inflow[taken++] = outflow.position;
      elements_[outflow.position - 1].outflow.at(outflow.slot) = position;
    }
  }

  bool is_open(std::uint32_t position) const {
    return std::any_of(open_.begin(), open_.end(),
                       [position](const OpenOutflow& open) { return open.position == position; });
  }
};

// ---------------------------------------------------------------------------------------------
// Lines

constexpr std::size_t name_width = 5;
using Name = std::array<char, name_width>;

Name name_of(const Element& element) {
  constexpr std::string_view all_digits = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  const std::string_view digits = all_digits.substr(0, element.small_letters ? 62 : 36);
  Name name{element.type};
  std::uint32_t rest = element.number;
  for (std::size_t column = name_width - 1; column > 0; --column) {
    name[column] = digits[rest % digits.size()];
    rest /= static_cast<std::uint32_t>(digits.size());
  }
  if (rest != 0) {
    throw std::runtime_error("too many elements for names of five characters");
  }
  return name;
}

/// One line under construction; columns count from 1 and what is not set is blank.
class Line {
 public:
  void put(std::size_t column, std::string_view text) {
    length_ = std::max(length_, column - 1 + text.size());
    std::copy(text.begin(), text.end(), &text_.at(column - 1));
  }

  void put(std::size_t column, const Name& name) { put(column, std::string_view(name.data(), name.size())); }

  /// The number value / 10^decimals, right-justified in the columns first to last, with its point.
  void put_number(std::size_t first, std::size_t last, std::uint32_t value, std::uint32_t decimals) {
    std::array<char, 16> digits{};
    std::size_t begin = digits.size();
    for (std::uint32_t written = 0; value > 0 || written <= decimals; ++written) {
      if (written == decimals) {
        digits.at(--begin) = '.';
      }
      digits.at(--begin) = static_cast<char>('0' + value % 10);
      value /= 10;
    }
    const std::string_view text(&digits.at(begin), digits.size() - begin);
    if (text.size() > last - first + 1) {
      throw std::runtime_error("a number does not fit its columns");
    }
    put(last + 1 - text.size(), text);
  }

  std::string_view text() const { return {text_.data(), length_}; }

  void clear() {
    std::fill_n(text_.begin(), length_, ' ');
    length_ = 0;
  }

 private:
  static constexpr std::size_t width = 100;
  std::array<char, width> text_ = blanks();
  std::size_t length_ = 0;

  static constexpr std::array<char, width> blanks() {
    std::array<char, width> text{};
    text.fill(' ');
    return text;
  }
};

class TextFile {
 public:
  explicit TextFile(const std::string& path) : path_(path), stream_(path, std::ios::binary) {
    if (!stream_) {
      throw std::runtime_error("cannot create " + path);
    }
    buffer_.reserve(block + block / 8);
  }

  void line(std::string_view text) {
    buffer_ += text;
    buffer_ += '\n';
    if (buffer_.size() >= block) {
      flush();
    }
  }

  /// Writes the line and blanks it for the next one.
  void take(Line& line_to_write) {
    line(line_to_write.text());
    line_to_write.clear();
  }

  void close() {
    flush();
    stream_.close();
    if (!stream_) {
      throw std::runtime_error("cannot write " + path_);
    }
  }

 private:
  static constexpr std::size_t block = std::size_t{1} << 20U;
  std::string path_;
  std::ofstream stream_;
  std::string buffer_;

  void flush() {
    stream_.write(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
    buffer_.clear();
  }
};

// ---------------------------------------------------------------------------------------------
// Files

struct Variant {
  Settings settings;
  std::vector<Element> elements;

  const Element& at(std::uint32_t position) const { return elements.at(position - 1); }

  /// The numbers of an element depend on the seed and its position alone, so that the companion
  /// files of one seed hold the same records in every order.
  Random values(std::uint32_t position) const {
    return Random(Random(settings.seed ^ (std::uint64_t{position} << 32U)).next());
  }
};

std::string_view description(char type) {
  switch (type) {
    case 'N':
      return "Gebiet";
    case 'K':
      return "Kanalnetz";
    case 'E':
      return "Einleitung";
    case 'T':
      return "Gewaesserstrecke";
    case 'V':
      return "Verzweigung";
    case 'B':
      return "Becken";
    default:
      return "Pegel";
  }
}

void write_system(const Variant& variant) {
  TextFile file(variant.settings.base + ".sys");
  file.line("Systemlogik");
  file.line("   Tag Kennung  Bezeichnung        <Name>  Zulauf 1-3          Ablauf 1-2");
  file.line(std::string(74, '-'));
  constexpr std::array<std::size_t, max_inflows> inflow_columns{44, 50, 56};
  constexpr std::array<std::size_t, 2> outflow_columns{64, 70};
  Line line;
  for (const Element& element : variant.elements) {
    if (is_fork(element.type)) {
      line.put(4, element.type == 'B' ? "HRB" : "VZW");
      line.put(8, "Anlage");
    }
    line.put(17, description(element.type));
    line.put(36, name_of(element));
    for (std::size_t k = 0; k < element.inflow.size(); ++k) {
      if (element.inflow[k] != 0) {
        line.put(inflow_columns[k], name_of(variant.at(element.inflow[k])));
      }
    }
    for (std::size_t k = 0; k < element.outflow.size(); ++k) {
      if (element.outflow[k] != 0) {
        line.put(outflow_columns[k], name_of(variant.at(element.outflow[k])));
      }
    }
    if (&element == &variant.elements.back()) {
      line.put(outflow_columns[0], "ENDE");
    }
    file.take(line);
  }
  file.close();
}

/// The positions of the elements whose type is among the letters, in the order asked for.
std::vector<std::uint32_t> records_of(const Variant& variant, std::string_view types) {
  std::vector<std::uint32_t> records;
  for (std::uint32_t position = 1; position <= variant.elements.size(); ++position) {
    if (types.find(variant.at(position).type) != std::string_view::npos) {
      records.push_back(position);
    }
  }
  if (variant.settings.order == Order::reversed) {
    std::reverse(records.begin(), records.end());
  }
  if (variant.settings.order == Order::shuffled) {
    Random random(variant.settings.seed + static_cast<unsigned char>(types.front()));
    for (auto left = static_cast<std::uint32_t>(records.size()); left > 1; --left) {
      std::swap(records[left - 1], records[random.below(left)]);
    }
  }
  return records;
}

struct AreaUnit {
  std::string_view keyword;
  std::uint32_t least;
  std::uint32_t most;
  std::uint32_t decimals;
};

/// What five columns with a point can hold in each unit.
constexpr std::array<AreaUnit, 3> area_units{{
    {"qkm", 10, 1999, 3},
    {"ha", 10, 1999, 1},
    {"qm", 100, 9999, 0},
}};

/// Neighbours in system order share a unit in small groups. The unit belongs to the element, not to
/// the place in the file, so that the areas are the same in every order.
const AreaUnit& unit_of(const Variant& variant, std::uint32_t position) {
  if (!variant.settings.unit_lines) {
    return area_units[0];
  }
  constexpr std::uint32_t group = 6;
  return area_units.at(variant.values(position / group * group).below(area_units.size()));
}

void write_areas(const Variant& variant, const std::string& extension, char type) {
  TextFile file(variant.settings.base + extension);
  file.line("   Name   Gr.  Bef.");
  const bool every_element = variant.settings.finding_for_every_element;
  const AreaUnit* unit_in_force = nullptr;
  Line line;
  for (const std::uint32_t position : records_of(variant, std::string_view(&type, 1))) {
    const AreaUnit& unit = unit_of(variant, position);
    if (variant.settings.unit_lines && &unit != unit_in_force) {
      line.put(11, unit.keyword);
      file.take(line);
    }
    unit_in_force = &unit;

    Random random = variant.values(position);
    line.put(4, name_of(variant.at(position)));
    line.put_number(11, 15, random.between(unit.least, unit.most), unit.decimals);
    std::uint32_t sealing = type == 'N' ? random.between(0, 10) : random.between(20, 95);
    if (every_element && type == 'N') {
      sealing += 101;  // a degree of sealing above 1
    }
    line.put_number(16, 20, sealing, 2);
    if (every_element && type == 'K') {
      file.line(line.text());  // a second value line
    }
    file.take(line);
  }
  file.close();
}

void write_reaches(const Variant& variant) {
  TextFile file(variant.settings.base + ".trs");
  file.line("   Name     Station                                     Profil");
  const bool every_element = variant.settings.finding_for_every_element;
  Line line;
  // The check for repeated value lines knows every element, so those without a table of their own
  // get their finding here.
  for (const std::uint32_t position : records_of(variant, every_element ? "TEBP" : "T")) {
    Random random = variant.values(position);
    const Name name = name_of(variant.at(position));
    const std::uint32_t upper = random.between(100, 400000);
    line.put(4, name);
    line.put_number(11, 18, upper, 3);
    if (random.below(10) < 7) {
      line.put(57, "Profil");
      file.take(line);
      line.put_number(11, 18, upper + random.between(50, 4000), 3);
    }
    file.take(line);
    if (every_element) {
      line.put(4, name);
      line.put_number(11, 18, upper, 3);
      file.take(line);
    }
  }
  file.close();
}

void write_branchings(const Variant& variant) {
  TextFile file(variant.settings.base + ".ver");
  file.line("   Name   Kz   Ant.  Hoehe");
  Line line;
  for (const std::uint32_t position : records_of(variant, "V")) {
    Random random = variant.values(position);
    constexpr std::array<std::string_view, 10> codes{"1", "1", "1", "1", "1", "1", "1", "1", "2", "3"};
    line.put(4, name_of(variant.at(position)));
    line.put(14, codes.at(random.below(codes.size())));
    line.put_number(16, 20, random.between(0, 1000), 1);
    line.put_number(22, 26, random.between(10, 9999), 2);
    if (variant.settings.finding_for_every_element) {
      file.line(line.text());  // a second value line
    }
    file.take(line);
  }
  file.close();
}

// ---------------------------------------------------------------------------------------------
// Command line

constexpr std::string_view usage =
    "usage: kv_generate [--elements N] [--seed S] [--order system|reversed|shuffled]\n"
    "                   [--faulty none|protocol] [--unit-lines] BASE\n"
    "Writes BASE.sys, BASE.nfl, BASE.kfl, BASE.trs and BASE.ver.\n";

template <typename Number>
Number parse_number(std::string_view text) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size()) {
    throw std::invalid_argument("not a number: " + std::string(text));
  }
  return number;
}

Order parse_order(std::string_view text) {
  if (text == "system") {
    return Order::system;
  }
  if (text == "reversed") {
    return Order::reversed;
  }
  if (text == "shuffled") {
    return Order::shuffled;
  }
  throw std::invalid_argument("unknown order: " + std::string(text));
}

bool parse_faulty(std::string_view text) {
  if (text != "none" && text != "protocol") {
    throw std::invalid_argument("unknown kind of faults: " + std::string(text));
  }
  return text == "protocol";
}

Settings parse_arguments(const std::vector<std::string_view>& arguments) {
  Settings settings;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view option = arguments[i];
    if (option == "--unit-lines") {
      settings.unit_lines = true;
      continue;
    }
    if (!option.starts_with("--")) {
      settings.base = option;
      continue;
    }
    if (++i == arguments.size()) {
      throw std::invalid_argument("no value for " + std::string(option));
    }
    if (option == "--elements") {
      settings.elements = parse_number<std::uint32_t>(arguments[i]);
    } else if (option == "--seed") {
      settings.seed = parse_number<std::uint64_t>(arguments[i]);
    } else if (option == "--order") {
      settings.order = parse_order(arguments[i]);
    } else if (option == "--faulty") {
      settings.finding_for_every_element = parse_faulty(arguments[i]);
    } else {
      throw std::invalid_argument("unknown option: " + std::string(option));
    }
  }
  if (settings.base.empty()) {
    throw std::invalid_argument("no base path");
  }
  return settings;
}

void write_variant(const Settings& settings) {
  const Variant variant{settings, NetworkBuilder(settings.elements, settings.seed).build()};
  write_system(variant);
  write_areas(variant, ".nfl", 'N');
  write_areas(variant, ".kfl", 'K');
  write_reaches(variant);
  write_branchings(variant);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    write_variant(parse_arguments({argv + 1, argv + argc}));
  } catch (const std::invalid_argument& mistake) {
    std::fprintf(stderr, "kv_generate: %s\n%s", mistake.what(), usage.data());
    return 2;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "kv_generate: %s\n", failure.what());
    return 1;
  }
  return 0;
}
