#include "KV_Schau/run/protocol.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <span>
#include <unordered_map>
#include <utility>

#include "m_WLM_error/catalogue/entry.h"
#include "runtime/cp1252.h"

namespace schau::run {
namespace {

namespace catalogue = m_WLM_error::catalogue;
using namespace runtime::literals;
using Lines = std::span<const std::string_view>;

constexpr std::string_view header = "Prüfprotokoll:"_w1252;
constexpr std::string_view undefined_middle = "-Kommentar bei ";
constexpr std::string_view undefined_end = " nicht definiert!";

std::string_view without_blanks_behind(std::string_view text) {
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::string_view without_blanks(std::string_view text) {
  text = without_blanks_behind(text);
  return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

// The lines without their ends and without the blanks before those.
std::vector<std::string_view> lines_of(std::string_view bytes) {
  std::vector<std::string_view> lines;
  lines.reserve(static_cast<std::size_t>(std::ranges::count(bytes, '\n')) + 1);
  while (!bytes.empty()) {
    const std::size_t end = std::min(bytes.find('\n'), bytes.size());
    std::string_view line = bytes.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    lines.push_back(without_blanks_behind(line));
    bytes.remove_prefix(std::min(end + 1, bytes.size()));
  }
  return lines;
}

// The grammar.

// An element of a line: what stands there, or the field of an argument.
struct Item {
  runtime::Edit edit = runtime::Edit::skip;
  std::size_t width = 0;
  std::string_view literal{};
  std::optional<Argument::Name> argument{};  // of a field; the field of the code has none
};

using LinePattern = std::vector<Item>;

struct Pattern {
  const catalogue::Entry* entry = nullptr;
  std::string code;  // as it is printed
  std::vector<LinePattern> lines;
  std::size_t heading_lines = 0;  // of a list: the lines that do not come with every call
  LinePattern closing;

  [[nodiscard]] std::span<const LinePattern> list_lines() const {
    return std::span(lines).subspan(heading_lines);
  }
};

Argument::Name name_of(catalogue::Argument argument) {
  static_assert(static_cast<int>(catalogue::real2) == static_cast<int>(Argument::Name::real2));
  return static_cast<Argument::Name>(argument);
}

// What a row writes: up to its first field without an argument.
class RowLines {
 public:
  explicit RowLines(const catalogue::Entry& row) : row_(row), code_pending_(!row.continues), lines_(1) {
    for (const runtime::FormatItem& item : row.format.items) {
      if (!add(item)) break;
    }
  }
  [[nodiscard]] const std::vector<LinePattern>& lines() const { return lines_; }

 private:
  // False when a field is left without an argument: the rest of the format is not written.
  bool add(const runtime::FormatItem& item) {
    if (item.edit == runtime::Edit::slash) {
      lines_.emplace_back();
      return true;
    }
    Item added{.edit = item.edit, .width = item.width};
    if (item.edit == runtime::Edit::literal) {
      added.literal = row_.format.literal(item);
    } else if (item.takes_value() && !std::exchange(code_pending_, false)) {
      if (used_ == row_.argument_count) return false;
      added.argument = name_of(row_.arguments[used_++]);
    }
    lines_.back().push_back(added);
    return true;
  }

  const catalogue::Entry& row_;
  bool code_pending_;
  std::size_t used_ = 0;
  std::vector<LinePattern> lines_;
};

void append_row(std::vector<LinePattern>& lines, const catalogue::Entry& row) {
  const RowLines row_lines(row);
  lines.insert(lines.end(), row_lines.lines().begin(), row_lines.lines().end());
}

std::string printed_code(const catalogue::Entry& entry) {
  const std::size_t width = entry.format.field(0).width;
  if (width == 0) return std::string(entry.code);
  return fmt::format("{:>{}}", entry.code.substr(0, width), width);
}

Pattern pattern_of(std::span<const catalogue::Entry> rows) {
  const catalogue::Entry& entry = rows.front();
  Pattern pattern{.entry = &entry, .code = printed_code(entry), .lines = {}, .closing = {}};
  append_row(pattern.lines, entry);
  if (entry.heading != catalogue::Heading::always) pattern.heading_lines = pattern.lines.size();
  for (const catalogue::Entry& row : rows.subspan(1)) append_row(pattern.lines, row);
  if (entry.counter != catalogue::Counter::none) {
    pattern.closing = RowLines({.format = entry.closing, .continues = true}).lines().front();
  }
  return pattern;
}

bool has_number(const Pattern& list) {
  return std::ranges::any_of(list.list_lines(), [](const LinePattern& line) {
    return std::ranges::any_of(line, [](const Item& item) {
      return item.edit == runtime::Edit::integer || item.edit == runtime::Edit::fixed;
    });
  });
}

// The patterns of all entries by their printed codes; those of one code in the order of the catalogue.
class Grammar {
 public:
  Grammar() {
    for (const catalogue::Group* group : catalogue::groups()) add(group->entries);
  }

  [[nodiscard]] std::size_t longest_code() const { return longest_code_; }
  [[nodiscard]] std::span<const Pattern> of_code(std::string_view code) const {
    const auto found = by_code_.find(std::string(code));
    return found == by_code_.end() ? std::span<const Pattern>() : std::span(found->second);
  }

 private:
  void add(std::span<const catalogue::Entry> entries) {
    while (!entries.empty()) {
      const auto next = std::find_if(entries.begin() + 1, entries.end(),
                                     [](const catalogue::Entry& row) { return !row.continues; });
      const auto count = static_cast<std::size_t>(next - entries.begin());
      Pattern pattern = pattern_of(entries.first(count));
      longest_code_ = std::max(longest_code_, pattern.code.size());
      by_code_[pattern.code].push_back(std::move(pattern));
      entries = entries.subspan(count);
    }
  }

  std::unordered_map<std::string, std::vector<Pattern>> by_code_;
  std::size_t longest_code_ = 0;
};

const Grammar& grammar() {
  static const Grammar of_the_catalogue;
  return of_the_catalogue;
}

// Lines against patterns.

bool is_integer(std::string_view text) {
  if (text.starts_with('-')) text.remove_prefix(1);
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

bool is_real(std::string_view text) {
  if (text.starts_with('-')) text.remove_prefix(1);
  if (text == "NaN" || text == "Infinity" || text == "Inf") return true;
  return text.find_first_of("0123456789") != std::string_view::npos && std::ranges::count(text, '.') == 1 &&
         text.find_first_not_of("0123456789.") == std::string_view::npos;
}

bool is_value_of(runtime::Edit edit, std::string_view text) {
  if (!text.empty() && text.find_first_not_of('*') == std::string_view::npos) return true;
  return edit == runtime::Edit::integer ? is_integer(text) : is_real(text);
}

// One line against the items of its pattern. Columns behind the line's end are blanks.
class LineMatch {
 public:
  LineMatch(std::string_view line, std::string_view code, bool cut) : line_(line), code_(code), cut_(cut) {}

  /// True when the pattern writes the line; of a line that is cut off, when it could begin so. The arguments
  /// are added to `arguments`.
  bool run(std::span<const Item> items, std::vector<Argument>& arguments) {
    arguments_ = &arguments;
    return match(items, 0);
  }

 private:
  [[nodiscard]] std::string_view rest(std::size_t place) const {
    return line_.substr(std::min(place, line_.size()));
  }
  [[nodiscard]] bool ends_before(std::size_t place) const { return cut_ && line_.size() < place; }

  bool match(std::span<const Item> items, std::size_t place) {
    for (; !items.empty(); items = items.subspan(1)) {
      const Item& item = items.front();
      if (item.edit == runtime::Edit::text && item.width == 0 && item.argument) {
        // A whole text stands at the end of its line.
        add(item, rest(place));
        return true;
      }
      const std::size_t end = end_of(item, place);
      if (!fits(item, place, end)) return false;
      place = end;
    }
    return rest(place).empty();
  }

  [[nodiscard]] std::size_t end_of(const Item& item, std::size_t place) const {
    if (item.edit == runtime::Edit::tab) return item.width - 1;
    if (item.edit == runtime::Edit::text && item.width == 0) return place + code_.size();
    return place + item.width;
  }

  bool fits(const Item& item, std::size_t place, std::size_t end) {
    const std::string_view field = rest(place).substr(0, end - std::min(place, end));
    switch (item.edit) {
      case runtime::Edit::literal:
        return stands(item.literal, field, end);
      case runtime::Edit::text:
        if (!item.argument) return stands(code_, field, end);
        add(item, without_blanks(field));
        return true;
      case runtime::Edit::integer:
      case runtime::Edit::fixed:
        add(item, without_blanks(field));
        return ends_before(end) || is_value_of(item.edit, without_blanks(field));
      default:
        return without_blanks(field).empty();
    }
  }

  [[nodiscard]] bool stands(std::string_view wanted, std::string_view field, std::size_t end) const {
    return wanted.starts_with(field) &&
           (ends_before(end) || without_blanks(wanted.substr(field.size())).empty());
  }

  void add(const Item& item, std::string_view text) {
    const bool known = std::ranges::any_of(
        *arguments_, [&](const Argument& argument) { return argument.name == *item.argument; });
    if (!known) arguments_->push_back({*item.argument, std::string(text)});
  }

  std::string_view line_;
  std::string_view code_;
  bool cut_;
  std::vector<Argument>* arguments_ = nullptr;
};

void add_condition_word(const catalogue::Entry& entry, std::vector<Argument>& arguments) {
  if (entry.condition_word.empty()) return;
  const Argument::Name name = name_of(entry.condition);
  if (std::ranges::find(arguments, name, &Argument::name) != arguments.end()) return;
  arguments.push_back({name, std::string(entry.condition_word)});
}

Level level_of(catalogue::Level level) {
  switch (level) {
    case catalogue::note:
      return Level::note;
    case catalogue::error:
      return Level::error;
    case catalogue::level_from_int1:
      break;
  }
  return Level::open;
}

class ProtocolParser {
 public:
  explicit ProtocolParser(std::string_view bytes)
      : lines_(lines_of(bytes)), last_line_is_cut_(!bytes.empty() && !bytes.ends_with('\n')) {}

  Protocol parse() {
    protocol_.line_count = lines_.size();
    protocol_.complete = !last_line_is_cut_;
    read_header();
    while (next_ < lines_.size()) read_message();
    return std::move(protocol_);
  }

 private:
  void read_header() {
    if (lines_.empty() || !lines_.front().starts_with(header)) return;
    protocol_.has_header = true;
    protocol_.label = without_blanks(lines_.front().substr(header.size()));
    next_ = 1;
  }

  void read_message() {
    if (read_entry(false) || read_undefined() || read_list_line() || read_entry(true)) return;
    add_unknown_line();
  }

  // `broken`: an entry whose last lines are missing at the end of the protocol.
  bool read_entry(bool broken) {
    const std::string_view line = lines_[next_];
    for (std::size_t size = std::min(grammar().longest_code(), line.size()); size > 0; --size) {
      for (const Pattern& pattern : grammar().of_code(line.substr(0, size))) {
        if (read_entry(pattern, broken)) return true;
      }
    }
    return false;
  }

  bool read_entry(const Pattern& pattern, bool broken) {
    const std::size_t left = lines_.size() - next_;
    const bool cut = broken && last_line_is_cut_ && left <= pattern.lines.size();
    if (broken ? !cut && left >= pattern.lines.size() : left < pattern.lines.size()) return false;
    Message message;
    const std::size_t count = std::min(left, pattern.lines.size());
    if (!match(pattern, std::span(pattern.lines).first(count), cut, message.arguments)) return false;
    add_condition_word(*pattern.entry, message.arguments);
    message.complete = !broken;
    if (pattern.heading_lines > 0) note_list(pattern, message.arguments);
    add_message(pattern, count, std::move(message));
    if (!pattern.closing.empty()) read_closing(pattern);
    return true;
  }

  bool match(const Pattern& pattern, std::span<const LinePattern> patterns, bool cut,
             std::vector<Argument>& arguments) const {
    for (std::size_t i = 0; i < patterns.size(); ++i) {
      LineMatch line(lines_[next_ + i], pattern.code, cut && is_last(next_ + i));
      if (!line.run(patterns[i], arguments)) return false;
    }
    return true;
  }
  [[nodiscard]] bool is_last(std::size_t line) const { return line + 1 == lines_.size(); }

  void add_message(const Pattern& pattern, std::size_t count, Message message) {
    message.code = pattern.code;
    message.level = level_of(pattern.entry->level);
    take_lines(count, pattern.code.size(), std::move(message));
  }

  // The lines from the next one on become the message's; `skipped` bytes of the first one are no text.
  void take_lines(std::size_t count, std::size_t skipped, Message message) {
    if (last_line_is_cut_ && is_last(next_ + count - 1)) message.complete = false;
    if (!message.complete) protocol_.complete = false;
    message.line = next_ + 1;
    message.line_count = count;
    message.text = lines_[next_].substr(std::min(skipped, lines_[next_].size()));
    for (std::size_t i = 1; i < count; ++i) message.text.append("\n").append(lines_[next_ + i]);
    protocol_.messages.push_back(std::move(message));
    next_ += count;
  }

  void read_closing(const Pattern& pattern) {
    std::vector<Argument> none;
    if (next_ == lines_.size() || !LineMatch(lines_[next_], {}, false).run(pattern.closing, none)) return;
    protocol_.messages.back().more_follow = true;
    ++protocol_.messages.back().line_count;
    ++next_;
  }

  bool read_undefined() {
    std::string_view line = lines_[next_];
    const std::size_t middle = line.find(undefined_middle);
    if (middle == std::string_view::npos || !line.ends_with(undefined_end)) return false;
    const std::string_view code = line.substr(0, middle);
    const catalogue::Group* group = catalogue::group_of(code);
    if (group == nullptr || middle + undefined_middle.size() + undefined_end.size() > line.size())
      return false;
    line.remove_prefix(middle + undefined_middle.size());
    line.remove_suffix(undefined_end.size());
    Message message{.kind = Message::Kind::undefined, .code = std::string(without_blanks_behind(code))};
    message.level = level_of(group->default_level);
    message.arguments.push_back({Argument::Name::text1, std::string(line)});
    take_lines(1, middle, std::move(message));
    return true;
  }

  // Lists. Their lines come without a code, each with a call of its own and perhaps far behind the heading.

  struct OpenList {
    const Pattern* pattern = nullptr;
    std::vector<Argument> of_heading;
  };

  void note_list(const Pattern& pattern, const std::vector<Argument>& arguments) {
    const auto known = std::ranges::find(open_lists_, &pattern, &OpenList::pattern);
    OpenList& list = known != open_lists_.end() ? *known : open_lists_.emplace_back();
    list = {&pattern, arguments};
    std::erase_if(list.of_heading,
                  [&](const Argument& argument) { return !is_in_heading(pattern, argument); });
    // A list of numbers knows its lines, one of texts takes any.
    std::stable_partition(open_lists_.begin(), open_lists_.end(),
                          [](const OpenList& open) { return has_number(*open.pattern); });
  }

  static bool is_in_heading(const Pattern& pattern, const Argument& argument) {
    return std::ranges::any_of(
        std::span(pattern.lines).first(pattern.heading_lines), [&](const LinePattern& line) {
          return std::ranges::any_of(line, [&](const Item& item) { return item.argument == argument.name; });
        });
  }

  bool read_list_line() {
    for (const OpenList& list : open_lists_) {
      const std::span<const LinePattern> patterns = list.pattern->list_lines();
      Message message{.arguments = list.of_heading};
      if (patterns.size() > lines_.size() - next_) continue;
      if (!match(*list.pattern, patterns, false, message.arguments)) continue;
      message.code = list.pattern->code;
      message.level = level_of(list.pattern->entry->level);
      take_lines(patterns.size(), 0, std::move(message));
      return true;
    }
    return false;
  }

  void add_unknown_line() {
    std::vector<Message>& messages = protocol_.messages;
    if (messages.empty() || messages.back().kind != Message::Kind::unknown) {
      take_lines(1, 0, {.kind = Message::Kind::unknown, .level = Level::open});
      return;
    }
    messages.back().text.append("\n").append(lines_[next_]);
    ++messages.back().line_count;
    ++next_;
  }

  std::vector<std::string_view> lines_;
  bool last_line_is_cut_;
  std::size_t next_ = 0;
  std::vector<OpenList> open_lists_;
  Protocol protocol_;
};

}  // namespace

std::string_view Message::argument(Argument::Name name) const {
  const auto found = std::ranges::find(arguments, name, &Argument::name);
  return found == arguments.end() ? std::string_view() : std::string_view(found->text);
}

Protocol parse_protocol(std::string_view bytes) {
  return ProtocolParser(bytes).parse();
}

}  // namespace schau::run
