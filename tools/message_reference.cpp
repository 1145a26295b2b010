// Writes the reference of all messages (docs/messages.md) to standard output, from the catalogue itself.

#include <cstddef>
#include <cstdio>
#include <span>
#include <string>
#include <string_view>

#include "m_WLM_error/catalogue/entry.h"
#include "runtime/cp1252.h"

namespace {

namespace catalogue = m_WLM_error::catalogue;
using catalogue::Argument;
using catalogue::Entry;

std::string_view placeholder(Argument argument) {
  constexpr std::string_view names[] = {"<text1>", "<text2>", "<text3>"};
  return names[static_cast<std::size_t>(argument)];
}

// A number field as its digits stand in it: ##### or #####.###.
std::string digits(const runtime::FormatItem& item) {
  std::string field(item.width, '#');
  if (item.edit == runtime::Edit::fixed) field[item.width - item.decimals - 1U] = '.';
  return field;
}

// The lines of one row as the protocol shows them, in Windows-1252, with placeholders for the arguments.
class Lines {
 public:
  explicit Lines(const Entry& row) : row_(row), code_pending_(!row.continues) {
    for (const runtime::FormatItem& item : row.format.items) {
      if (!add(item)) break;
    }
    end_line();
  }
  [[nodiscard]] const std::string& text() const { return text_; }

 private:
  // False when a field is left without an argument: the rest of the format is not written.
  bool add(const runtime::FormatItem& item) {
    switch (item.edit) {
      case runtime::Edit::literal:
        line_ += row_.format.literal(item);
        return true;
      case runtime::Edit::skip:
        line_.append(item.width, ' ');
        return true;
      case runtime::Edit::tab:
        line_.resize(item.width - 1U, ' ');
        return true;
      case runtime::Edit::slash:
        end_line();
        return true;
      case runtime::Edit::text:
      case runtime::Edit::integer:
      case runtime::Edit::fixed:
        break;
    }
    return add_field(item);
  }

  bool add_field(const runtime::FormatItem& item) {
    if (code_pending_) {
      line_ += row_.code;
      code_pending_ = false;
      return true;
    }
    if (used_ == row_.argument_count) return false;
    const Argument argument = row_.arguments[used_++];
    if (item.edit == runtime::Edit::text) {
      const runtime::Value text(placeholder(argument));
      line_ += runtime::formatted({{&item, 1}, {}, item.width}, {&text, 1});
    } else {
      line_ += digits(item);
    }
    return true;
  }

  void end_line() {
    line_.erase(line_.find_last_not_of(' ') + 1);
    text_ += line_ + "\n";
    line_.clear();
  }

  const Entry& row_;
  bool code_pending_;
  std::size_t used_ = 0;
  std::string line_;
  std::string text_;
};

std::string_view level_name(catalogue::Level level) {
  switch (level) {
    case catalogue::note:
      return "1, warning or note";
    case catalogue::error:
      return "2, error";
    case catalogue::level_from_int1:
      break;
  }
  return "as its caller says";
}

std::string remarks(const Entry& row) {
  std::string text;
  if (!row.condition_word.empty()) {
    text +=
        ", when " + std::string(placeholder(row.condition)) + " is `" + std::string(row.condition_word) + "`";
  }
  if (row.counter != catalogue::Counter::none) text += ", five times a protocol";
  if (row.heading == catalogue::Heading::once_a_program_run) text += ", ten list lines a run of the program";
  if (row.heading == catalogue::Heading::on_new_structure)
    text += ", heading once for each structure in turn";
  return text;
}

void append_rows(std::string& out, std::span<const Entry> rows) {
  const Entry& entry = rows.front();
  out += "**" + std::string(entry.code) + "** (" + std::string(level_name(entry.level)) + remarks(entry) +
         ")\n\n";
  out += "```text\n";
  for (const Entry& row : rows) out += runtime::to_utf8(Lines(row).text());
  if (entry.counter != catalogue::Counter::none) {
    Entry closing;
    closing.format = entry.closing;
    closing.continues = true;
    out += runtime::to_utf8(Lines(closing).text());
  }
  out += "```\n\n";
}

void append_group(std::string& out, const catalogue::Group& group) {
  out += "## " + std::string(group.prefix) + ": " + std::string(group.about) + "\n\n";
  for (std::size_t begin = 0; begin < group.entries.size();) {
    std::size_t end = begin + 1;
    while (end < group.entries.size() && group.entries[end].continues) ++end;
    append_rows(out, group.entries.subspan(begin, end - begin));
    begin = end;
  }
}

constexpr std::string_view introduction =
    "# Messages\n"
    "\n"
    "<!-- Written by kv_message_reference from the catalogue; do not edit. -->\n"
    "\n"
    "Every message that the suite can write into a protocol (`NAME.pkl`), by the group of its code. The\n"
    "catalogue serves the whole suite; KV_Akum itself raises Y01 to Y10, Y12, Y21 to Y27, W01 to W03, A00,\n"
    "A03, A14, F02 and Ver1. A code that begins like a group but is not listed there (Y12) is written as\n"
    "`<code>-Kommentar bei <text1> nicht definiert!`.\n"
    "\n"
    "`<text1>` to `<text3>` stand for names of files, tables and elements, `#####` for a whole number and\n"
    "`#####.###` for a real one. After an error (level 2) the areas are not accumulated.\n"
    "\n";

}  // namespace

int main() {
  std::string out(introduction);
  for (const catalogue::Group* group : catalogue::groups()) append_group(out, *group);
  out.pop_back();
  return std::fwrite(out.data(), 1, out.size(), stdout) == out.size() ? 0 : 1;
}
