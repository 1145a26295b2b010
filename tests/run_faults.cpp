#include "tests/run_faults.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <set>
#include <string_view>
#include <system_error>

#include "tests/golden.h"
#include "tests/notices.h"

namespace run_faults {
namespace {

namespace fs = std::filesystem;
using test_files::read_bytes;
using test_files::write_bytes;

constexpr std::string_view listing = "code.pkl";
constexpr std::string_view link_target = ".target";
// Other than those of a new file.
constexpr fs::perms old_rights = fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read;

std::string bytes_of(const Traces& traces, const std::string& name) {
  const auto file = traces.files.find(name);
  return file == traces.files.end() ? "(missing)" : file->second;
}

std::string old_bytes(const std::string& name) {
  return name + " of an earlier run\n";
}

// The notices of faults, with their texts.
std::set<std::string> faults_shown(const std::string& out) {
  const std::string title = notices::record("messagebox_button_0_settitle", "KV_Akum: Fehler");
  std::set<std::string> faults;
  std::size_t place = out.find(title);
  while (place != std::string::npos) {
    const std::size_t next = out.find("\x01messagebox_button_0_settitle", place + 1);
    faults.insert(out.substr(place, next - place));
    place = out.find(title, place + 1);
  }
  return faults;
}

bool is_line_of_the_program(const std::string& line) {
  constexpr std::array<std::string_view, 4> beginnings = {
      "E/A-Fehler beim ", "STOP KV_Akum: Arbeitsspeicher ", "Speichermangel: ", "In file '"};
  return std::ranges::any_of(beginnings, [&](std::string_view begin) { return line.starts_with(begin); });
}

}  // namespace

// Faults.

std::ostream& operator<<(std::ostream& out, const Fault& fault) {
  out << fault.name;
  if (fault.way == Way::in_part) return out << ", only " << fault.number << " bytes";
  out << ": " << std::generic_category().message(fault.number);
  return out << (fault.way == Way::from_then_on ? ", and all later ones" : "");
}

std::vector<Fault> refusals(const char* name, std::size_t call, std::initializer_list<int> reasons) {
  std::vector<Fault> faults;
  for (const int reason : reasons) faults.push_back({.call = call, .number = reason, .name = name});
  faults.push_back(faults.front());
  faults.back().way = Way::from_then_on;
  return faults;
}

std::vector<int> chosen(int calls, int most) {
  std::vector<int> numbers;
  if (calls <= most) {
    for (int nth = 1; nth <= calls; ++nth) numbers.push_back(nth);
    return numbers;
  }
  for (int i = 0; i < most; ++i) {
    numbers.push_back(1 + static_cast<int>(std::int64_t{i} * (calls - 1) / (most - 1)));
  }
  return numbers;
}

void Tally::print(const Scene& scene, const std::string& more) const {
  int all = 0;
  std::string each;
  for (const auto& [name, count] : runs_) {
    all += count;
    each += " " + name + " " + std::to_string(count);
  }
  std::printf("%s: %d runs with a fault;%s%s\n", scene.name, all, each.c_str(), more.c_str());
}

// Runs.

std::ostream& operator<<(std::ostream& out, const Scene& scene) {
  return out << scene.name;
}

Workshop::Workshop(const Scene& scene)
    : variant_(scene.variant),
      protocol_(variant_ + ".pkl"),
      kept_({variant_ + ".Akum", std::string(listing)}),
      outputs_(scene.outputs) {
  fs::copy(scene.folder, folder_.path());
  inputs_ = traces().files;
  if (outputs_ == Outputs::files) return;
  for (const std::string& name : kept_) fs::create_symlink(name + std::string(link_target), file(name));
}

std::vector<std::string> Workshop::outputs() const {
  std::vector<std::string> names = kept_;
  names.push_back(protocol_);
  return names;
}

bool Workshop::links_are_kept() const {
  return std::ranges::all_of(kept_, [&](const std::string& name) {
    return fs::is_symlink(file(name)) == (outputs_ == Outputs::links);
  });
}

Traces Workshop::run(const Run& run) const {
  for (const std::string& name : outputs()) {
    write_bytes(file(name), old_bytes(name));
    fs::permissions(file(name), old_rights);
  }
  const child::Outcome outcome = run(folder_.path(), variant_);
  Traces left = traces();
  left.outcome = outcome;
  return left;
}

Traces Workshop::traces() const {
  Traces traces;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder_.path())) {
    const std::string name = entry.path().filename().string();
    if (name.ends_with(link_target)) continue;
    traces.files[name] = read_bytes(entry.path());
    traces.rights[name] = entry.status().permissions();
  }
  return traces;
}

// The rules.

bool holds_some_lines_of(const std::string& bytes, const std::string& wanted) {
  const std::vector<std::string> lines = golden::lines_of(bytes);
  const std::vector<std::string> all = golden::lines_of(wanted);
  auto place = all.begin();
  for (const std::string& line : lines) {
    const bool may_be_cut = &line == &lines.back();
    place = std::find_if(place, all.end(), [&](const std::string& whole) {
      return may_be_cut ? whole.starts_with(line) : whole == line;
    });
    if (place == all.end()) return false;
    ++place;
  }
  return true;
}

Judge::Judge(const Workshop& workshop, const Run& without_fault)
    : workshop_(workshop), right_(workshop.run(without_fault)) {
  const fs::path list = workshop.file("fehlercode.ex");
  if (!fs::exists(list)) return;
  fs::remove(list);
  without_list_.push_back(workshop.run(without_fault));
  write_bytes(list, workshop.inputs().at("fehlercode.ex"));
}

std::string Judge::wrong_in(const Traces& found) const {
  const std::string wrong = differing_from(right_, found);
  if (wrong.empty()) return {};
  for (const Traces& other : without_list_) {
    if (differing_from(other, found).empty()) return {};
  }
  return wrong + "; standard error: " + found.outcome.err;
}

std::string Judge::differing_from(const Traces& right, const Traces& found) const {
  const child::Outcome& outcome = found.outcome;
  if (outcome.ending != "exit status 0") return outcome.ending;
  if (!outcome.err.empty() && !outcome.err.ends_with('\n')) return "a line without an end";
  for (const std::string& line : golden::lines_of(outcome.err)) {
    if (!is_line_of_the_program(line)) return "an unknown line";
  }
  const bool told = !outcome.err.empty() ||
                    !std::ranges::includes(faults_shown(right.outcome.out), faults_shown(outcome.out));
  if (!told && outcome.out != right.outcome.out) return "standard output differs, and nothing is told";
  const std::string wrong = wrong_beside_outputs(found);
  return wrong.empty() ? wrong_outputs(right, found, told) : wrong;
}

std::string Judge::wrong_beside_outputs(const Traces& found) const {
  for (const auto& [name, bytes] : workshop_.inputs()) {
    if (bytes_of(found, name) != bytes) return name + " is changed";
  }
  const std::vector<std::string> outputs = workshop_.outputs();
  for (const auto& [name, bytes] : found.files) {
    const bool known = workshop_.inputs().contains(name) || std::ranges::find(outputs, name) != outputs.end();
    if (!known) return name + " must not be there";
  }
  for (const std::string& name : workshop_.kept()) {
    const auto rights = found.rights.find(name);
    if (rights != found.rights.end() && rights->second != old_rights) return name + " has other rights";
  }
  return workshop_.links_are_kept() ? "" : "a link was replaced";
}

std::string Judge::wrong_outputs(const Traces& right, const Traces& found, bool told) const {
  for (const std::string& name : workshop_.outputs()) {
    const std::string bytes = bytes_of(found, name);
    const std::string wanted = bytes_of(right, name);
    if (bytes == wanted) continue;
    if (!told) return name + " is not right, and nothing is told";
    if (bytes == old_bytes(name)) continue;
    const bool may_be_so = name == workshop_.protocol()
                               ? !found.files.contains(name) || holds_some_lines_of(bytes, wanted)
                               : fs::is_symlink(workshop_.file(name));
    if (!may_be_so) return name + " is neither the old nor the right one";
  }
  return {};
}

}  // namespace run_faults
