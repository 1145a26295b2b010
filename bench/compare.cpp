// Holds KV_Akum against the yardstick on generated variants and prints what it finds as Markdown.

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr double growth_mark = 11.0;
constexpr double growth_limit_of_check = 14.0;
constexpr double yardstick_mark = 4.0;
constexpr double yardstick_mark_shuffled = 5.0;
constexpr double empty_mark = 2.0;
constexpr double budget_per_input_byte = 2.0;
constexpr double budget_per_element = 200.0;

constexpr std::uint32_t small_variant_elements = 10;
constexpr std::size_t small_variant_repetitions = 101;

struct Settings {
  fs::path program;
  fs::path yardstick;
  fs::path empty;
  fs::path generator;
  fs::path work;
  std::vector<std::uint32_t> sizes{1000, 10000, 100000, 1000000};
  std::vector<std::string> orders{"system", "reversed", "shuffled"};
  std::size_t repetitions = 7;
  std::string seed = "1";
  bool check = false;
};

// ---------------------------------------------------------------------------------------------
// Processes

struct Sample {
  double seconds = 0.0;
  double peak_bytes = 0.0;
};

double now() {
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

constexpr int cannot_start = 127;

[[noreturn]] void become(const fs::path& folder, char* const* arguments) {
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (nowhere >= 0 && dup2(nowhere, STDOUT_FILENO) >= 0 && chdir(folder.c_str()) == 0) {
    execv(arguments[0], arguments);
  }
  _exit(cannot_start);
}

/// Runs a program in the folder, its standard output discarded. Throws when it does not end with
/// exit status 0.
Sample run(const fs::path& folder, std::vector<std::string> command) {
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (std::string& argument : command) {
    arguments.push_back(argument.data());
  }
  arguments.push_back(nullptr);

  const double start = now();
  const pid_t child = fork();
  if (child < 0) {
    throw std::runtime_error("cannot start a process");
  }
  if (child == 0) {
    become(folder, arguments.data());
  }
  int status = 0;
  rusage usage{};
  if (wait4(child, &status, 0, &usage) != child) {
    throw std::runtime_error("cannot wait for " + command.front());
  }
  const double seconds = now() - start;
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    throw std::runtime_error(command.front() + " did not end with exit status 0");
  }
  constexpr double kibibyte = 1024.0;
  return {seconds, kibibyte * static_cast<double>(usage.ru_maxrss)};
}

// ---------------------------------------------------------------------------------------------
// Files

const std::string variant_name = "variante";
constexpr std::array<std::string_view, 5> input_extensions{".sys", ".nfl", ".kfl", ".trs", ".ver"};
const std::string result_file = variant_name + ".Akum";
const std::string protocol_file = variant_name + ".pkl";
const std::string listing_file = "code.pkl";

std::uintmax_t size_or_zero(const fs::path& path) {
  std::error_code absent;
  const std::uintmax_t size = fs::file_size(path, absent);
  return absent ? 0 : size;
}

/// What tells two versions of a file apart; a file that is absent has size 0 and no digest.
struct Content {
  std::uintmax_t size = 0;
  std::uint64_t digest = 0;
  bool operator==(const Content&) const = default;
};

/// Read in small pieces: the peak memory that the system reports for a child counts what this
/// process held when it started the child.
Content content_of(const fs::path& path) {
  Content content{size_or_zero(path), 0};
  std::ifstream stream(path, std::ios::binary);
  if (!stream) {
    return content;
  }
  constexpr std::uint64_t fnv_start = 0xCBF29CE484222325U;
  constexpr std::uint64_t fnv_prime = 0x100000001B3U;
  content.digest = fnv_start;
  std::array<char, std::size_t{1} << 16U> piece{};
  while (stream.read(piece.data(), piece.size()) || stream.gcount() > 0) {
    for (std::streamsize i = 0; i < stream.gcount(); ++i) {
      content.digest ^= static_cast<unsigned char>(piece.at(static_cast<std::size_t>(i)));
      content.digest *= fnv_prime;
    }
  }
  return content;
}

struct Outputs {
  Content result;
  Content protocol;
  Content listing;
  bool operator==(const Outputs&) const = default;

  std::uintmax_t bytes() const { return result.size + protocol.size + listing.size; }
};

Outputs outputs_in(const fs::path& folder) {
  return {content_of(folder / result_file), content_of(folder / protocol_file),
          content_of(folder / listing_file)};
}

void remove_outputs(const fs::path& folder) {
  for (const std::string& file : {result_file, protocol_file, listing_file}) {
    fs::remove(folder / file);
  }
}

// ---------------------------------------------------------------------------------------------
// Variants

struct Kind {
  std::string order;
  bool unit_lines = false;
  bool faulty = false;

  std::string label() const {
    return order + (unit_lines ? ", unit lines" : "") + (faulty ? ", faulty" : "");
  }
};

struct Variant {
  Kind kind;
  std::uint32_t elements = 0;
  fs::path folder;

  std::string label() const { return std::to_string(elements) + " elements, " + kind.label(); }
};

/// A generated variant that lives as long as this object.
class GeneratedVariant {
 public:
  GeneratedVariant(const Settings& settings, std::uint32_t elements, const Kind& kind)
      : variant_{kind, elements, settings.work / "variant"} {
    fs::remove_all(variant_.folder);
    fs::create_directories(variant_.folder);
    std::vector<std::string> command{settings.generator, "--elements",  std::to_string(elements),
                                     "--seed",           settings.seed, "--order",
                                     kind.order};
    if (kind.unit_lines) {
      command.emplace_back("--unit-lines");
    }
    if (kind.faulty) {
      command.emplace_back("--faulty");
      command.emplace_back("protocol");
    }
    command.push_back(variant_name);
    run(variant_.folder, command);
  }

  GeneratedVariant(const GeneratedVariant&) = delete;
  GeneratedVariant& operator=(const GeneratedVariant&) = delete;

  ~GeneratedVariant() {
    std::error_code left_behind;
    fs::remove_all(variant_.folder, left_behind);
  }

  const Variant& get() const { return variant_; }

 private:
  Variant variant_;
};

std::uintmax_t input_bytes(const Variant& variant) {
  std::uintmax_t bytes = 0;
  for (const std::string_view extension : input_extensions) {
    bytes += fs::file_size(variant.folder / (variant_name + std::string(extension)));
  }
  return bytes;
}

// ---------------------------------------------------------------------------------------------
// Measuring

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values.at(middle) : (values.at(middle - 1) + values.at(middle)) / 2;
}

/// Two programs run in turn, so that whatever slows the machine down for a while slows down both.
struct Pairing {
  std::vector<double> seconds;
  std::vector<double> reference_seconds;
  std::vector<double> ratios;
  double peak_bytes = 0.0;

  void add(const Sample& sample, const Sample& reference) {
    seconds.push_back(sample.seconds);
    reference_seconds.push_back(reference.seconds);
    ratios.push_back(sample.seconds / reference.seconds);
    peak_bytes = std::max(peak_bytes, sample.peak_bytes);
  }

  double ratio_of_medians() const { return median(seconds) / median(reference_seconds); }
  double fastest() const { return *std::min_element(seconds.begin(), seconds.end()); }
};

struct Measurement {
  Kind kind;
  std::uint32_t elements = 0;
  double input_bytes = 0.0;
  Outputs outputs;
  Pairing pairing;

  double memory_budget() const {
    return budget_per_input_byte * input_bytes + budget_per_element * static_cast<double>(elements);
  }
};

using Findings = std::vector<std::string>;

std::vector<std::string> yardstick_command(const Settings& settings, std::uintmax_t bytes) {
  std::vector<std::string> command{settings.yardstick, result_file, std::to_string(bytes)};
  for (const std::string_view extension : input_extensions) {
    command.push_back(variant_name + std::string(extension));
  }
  return command;
}

void examine_outputs(const Variant& variant, const Outputs& outputs, Findings& findings) {
  if (outputs.listing.size == 0) {
    findings.push_back(variant.label() + ": no " + listing_file);
  }
  if (variant.kind.faulty) {
    if (outputs.protocol.size <= outputs.listing.size) {
      findings.push_back(variant.label() + ": the protocol does not hold a finding for every element");
    }
    return;
  }
  if (outputs.result.size == 0) {
    findings.push_back(variant.label() + ": no " + result_file);
  }
  if (outputs.protocol.size != 0) {
    findings.push_back(variant.label() + ": a consistent variant has a protocol");
  }
}

Measurement measure(const Settings& settings, const Variant& variant, Findings& findings) {
  const std::vector<std::string> program{settings.program, variant_name};
  const fs::path& folder = variant.folder;
  Measurement measurement{variant.kind, variant.elements, static_cast<double>(input_bytes(variant)), {}, {}};

  // The first run of each brings the files into the page cache and does not count.
  run(folder, program);
  measurement.outputs = outputs_in(folder);
  examine_outputs(variant, measurement.outputs, findings);
  remove_outputs(folder);
  const std::vector<std::string> yardstick = yardstick_command(settings, measurement.outputs.bytes());
  run(folder, yardstick);

  for (std::size_t i = 0; i < settings.repetitions; ++i) {
    remove_outputs(folder);
    const Sample sample = run(folder, program);
    if (outputs_in(folder) != measurement.outputs) {
      findings.push_back(variant.label() + ": a repetition gives other bytes");
    }
    remove_outputs(folder);
    measurement.pairing.add(sample, run(folder, yardstick));
  }
  return measurement;
}

Pairing measure_small_variant(const Settings& settings, Findings& findings) {
  const GeneratedVariant generated(settings, small_variant_elements, {"system"});
  const Variant& variant = generated.get();
  const std::vector<std::string> program{settings.program, variant_name};
  run(variant.folder, program);
  examine_outputs(variant, outputs_in(variant.folder), findings);
  run(variant.folder, {settings.empty});

  Pairing pairing;
  for (std::size_t i = 0; i < small_variant_repetitions; ++i) {
    remove_outputs(variant.folder);
    const Sample sample = run(variant.folder, program);
    pairing.add(sample, run(variant.folder, {settings.empty}));
  }
  return pairing;
}

/// All measurements, the smaller sizes first.
std::vector<Measurement> measure_all(const Settings& settings, const std::vector<Kind>& kinds,
                                     Findings& findings) {
  std::vector<Measurement> measurements;
  for (const std::uint32_t elements : settings.sizes) {
    for (const Kind& kind : kinds) {
      std::fprintf(stderr, "%u elements, %s\n", elements, kind.label().c_str());
      const GeneratedVariant generated(settings, elements, kind);
      measurements.push_back(measure(settings, generated.get(), findings));
    }
  }
  return measurements;
}

// ---------------------------------------------------------------------------------------------
// Judging

/// How many times longer ten times as many elements take, from two sizes of any distance.
double growth_per_tenfold(double seconds, double more_seconds, std::uint32_t elements,
                          std::uint32_t more_elements) {
  const double tenfolds = std::log10(static_cast<double>(more_elements) / static_cast<double>(elements));
  return std::pow(more_seconds / seconds, 1.0 / tenfolds);
}

/// The next smaller measurement of the same kind; null for the smallest.
const Measurement* next_smaller(const std::vector<Measurement>& measurements, const Measurement& larger) {
  const Measurement* found = nullptr;
  for (const Measurement& candidate : measurements) {
    if (candidate.kind.label() == larger.kind.label() && candidate.elements < larger.elements) {
      found = &candidate;
    }
  }
  return found;
}

/// Whether the two differ in nothing but the order of their companion files.
bool same_but_for_order(const Measurement& left, const Measurement& right) {
  return left.elements == right.elements && left.kind.unit_lines == right.kind.unit_lines &&
         left.kind.faulty == right.kind.faulty;
}

/// The result and the listing must not depend on the order of the companion files. The protocol may:
/// some findings stand in it in the order of the file.
void compare_orders(const std::vector<Measurement>& measurements, Findings& findings) {
  for (const Measurement& measurement : measurements) {
    const Measurement& first = *std::find_if(
        measurements.begin(), measurements.end(),
        [&measurement](const Measurement& candidate) { return same_but_for_order(candidate, measurement); });
    const auto expect_same = [&](const Content& left, const Content& right, const std::string& file) {
      if (left != right) {
        std::string finding = std::to_string(measurement.elements);
        finding.append(" elements: ").append(file).append(" differs between ").append(first.kind.label());
        findings.push_back(finding.append(" and ").append(measurement.kind.label()));
      }
    };
    expect_same(first.outputs.result, measurement.outputs.result, result_file);
    expect_same(first.outputs.listing, measurement.outputs.listing, listing_file);
  }
}

/// Growth of the fastest runs, which other work on the machine disturbs least.
void check_growth(const std::vector<Measurement>& measurements, Findings& findings) {
  for (const Measurement& measurement : measurements) {
    const Measurement* const smaller = next_smaller(measurements, measurement);
    if (smaller == nullptr) {
      continue;
    }
    const double growth = growth_per_tenfold(smaller->pairing.fastest(), measurement.pairing.fastest(),
                                             smaller->elements, measurement.elements);
    if (growth > growth_limit_of_check) {
      findings.push_back(measurement.kind.label() + ": ten times the elements take " +
                         std::to_string(growth) + " times as long");
    }
  }
}

// ---------------------------------------------------------------------------------------------
// Printing

constexpr double mebibyte = 1024.0 * 1024.0;
constexpr double milliseconds = 1000.0;

double yardstick_mark_of(const Kind& kind) {
  return kind.order == "shuffled" ? yardstick_mark_shuffled : yardstick_mark;
}

const char* beyond(double value, double mark) {
  return value > mark ? " (!)" : "";
}

void print_row(const std::vector<Measurement>& measurements, const Measurement& measurement,
               double empty_peak) {
  const Pairing& pairing = measurement.pairing;
  const double ratio = pairing.ratio_of_medians();
  std::printf("| %u | %s | %.2f | %.2f | %.2f%s | %.2f | ", measurement.elements,
              measurement.kind.label().c_str(), milliseconds * median(pairing.seconds),
              milliseconds * median(pairing.reference_seconds), ratio,
              beyond(ratio, yardstick_mark_of(measurement.kind)), median(pairing.ratios));
  if (const Measurement* const smaller = next_smaller(measurements, measurement)) {
    const double growth = growth_per_tenfold(median(smaller->pairing.seconds), median(pairing.seconds),
                                             smaller->elements, measurement.elements);
    std::printf("%.2f%s", growth, beyond(growth, growth_mark));
  }
  const double own_peak = pairing.peak_bytes - empty_peak;
  std::printf(" | %.1f | %.1f | %.1f%s | %.1f |\n", measurement.input_bytes / mebibyte,
              pairing.peak_bytes / mebibyte, own_peak / mebibyte,
              beyond(own_peak, measurement.memory_budget()), measurement.memory_budget() / mebibyte);
}

void print_measurements(const std::vector<Measurement>& measurements, double empty_peak) {
  std::puts(
      "| elements | companion files | program ms | yardstick ms | ratio of medians | median ratio | growth "
      "per "
      "tenfold | inputs MiB | peak MiB | over empty MiB | budget MiB |\n"
      "|---:|---|---:|---:|---:|---:|---:|---:|---:|---:|---:|");
  for (const Measurement& measurement : measurements) {
    print_row(measurements, measurement, empty_peak);
  }
}

void print_small_variant(const Pairing& pairing) {
  const double ratio = pairing.ratio_of_medians();
  std::puts(
      "\n| elements | program ms | empty program ms | ratio of medians | median ratio "
      "|\n|---:|---:|---:|---:|---:|");
  std::printf("| %u | %.3f | %.3f | %.2f%s | %.2f |\n", small_variant_elements,
              milliseconds * median(pairing.seconds), milliseconds * median(pairing.reference_seconds), ratio,
              beyond(ratio, empty_mark), median(pairing.ratios));
}

void print_marks(const Settings& settings) {
  std::printf(
      "\nMedians of %zu repetitions, seed %s. Held to: ratio to the yardstick %.0f (shuffled %.0f), growth "
      "%.0f, memory over "
      "an "
      "empty program %.0f x inputs + %.0f bytes an element, small variant %.0f x an empty program; (!) is "
      "beyond.\n",
      settings.repetitions, settings.seed.c_str(), yardstick_mark, yardstick_mark_shuffled, growth_mark,
      budget_per_input_byte, budget_per_element, empty_mark);
}

// ---------------------------------------------------------------------------------------------
// Command line

constexpr std::string_view usage =
    "usage: kv_compare --program P --yardstick P --empty P --generator P --work FOLDER\n"
    "                  [--sizes N,N,...] [--orders system,reversed,shuffled] [--repetitions N]\n"
    "                  [--seed S] [--check]\n";

std::vector<std::string> split(const std::string& text) {
  std::vector<std::string> fields;
  std::size_t begin = 0;
  while (begin <= text.size()) {
    const std::size_t end = std::min(text.find(',', begin), text.size());
    fields.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return fields;
}

std::uint32_t parse_count(const std::string& text) {
  std::uint32_t count = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
  if (error != std::errc{} || end != text.data() + text.size() || count == 0) {
    throw std::invalid_argument("not a number of 1 or more: " + text);
  }
  return count;
}

std::vector<std::uint32_t> parse_sizes(const std::string& text) {
  std::vector<std::uint32_t> sizes;
  for (const std::string& field : split(text)) {
    sizes.push_back(parse_count(field));
  }
  std::sort(sizes.begin(), sizes.end());
  return sizes;
}

Settings settings_from(std::map<std::string, std::string>& values) {
  Settings settings;
  for (const auto& [option, path] : std::map<std::string, fs::path*>{{"--program", &settings.program},
                                                                     {"--yardstick", &settings.yardstick},
                                                                     {"--empty", &settings.empty},
                                                                     {"--generator", &settings.generator},
                                                                     {"--work", &settings.work}}) {
    const auto given = values.extract(option);
    if (given.empty()) {
      throw std::invalid_argument("missing " + option);
    }
    *path = fs::absolute(given.mapped());
  }
  if (const auto given = values.extract("--sizes"); !given.empty()) {
    settings.sizes = parse_sizes(given.mapped());
  }
  if (const auto given = values.extract("--orders"); !given.empty()) {
    settings.orders = split(given.mapped());
  }
  if (const auto given = values.extract("--repetitions"); !given.empty()) {
    settings.repetitions = parse_count(given.mapped());
  }
  if (const auto given = values.extract("--seed"); !given.empty()) {
    settings.seed = given.mapped();
  }
  if (!values.empty()) {
    throw std::invalid_argument("unknown option: " + values.begin()->first);
  }
  return settings;
}

Settings parse_arguments(const std::vector<std::string>& arguments) {
  std::map<std::string, std::string> values;
  bool check = false;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (arguments[i] == "--check") {
      check = true;
    } else if (i + 1 == arguments.size()) {
      throw std::invalid_argument("no value for " + arguments[i]);
    } else {
      values[arguments[i]] = arguments[i + 1];
      ++i;
    }
  }
  Settings settings = settings_from(values);
  settings.check = check;
  if (check) {
    settings.sizes = {10000, 100000};
  }
  return settings;
}

std::vector<Kind> kinds_for(const Settings& settings) {
  std::vector<Kind> kinds;
  for (const std::string& order : settings.orders) {
    kinds.push_back({order});
  }
  if (settings.check) {
    for (const std::string& order : settings.orders) {
      kinds.push_back({order, true});
    }
  }
  kinds.push_back({"system", false, true});
  return kinds;
}

/// Prints the tables. Returns false when the outputs, or in a check the growth, are not as they must be.
bool compare(const Settings& settings) {
  fs::create_directories(settings.work);
  Findings findings;
  const double empty_peak = run(settings.work, {settings.empty}).peak_bytes;
  const std::vector<Measurement> measurements = measure_all(settings, kinds_for(settings), findings);
  print_measurements(measurements, empty_peak);
  compare_orders(measurements, findings);
  if (settings.check) {
    check_growth(measurements, findings);
  } else {
    print_small_variant(measure_small_variant(settings, findings));
  }
  print_marks(settings);
  std::fflush(stdout);
  for (const std::string& finding : findings) {
    std::fprintf(stderr, "%s\n", finding.c_str());
  }
  return findings.empty();
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return compare(parse_arguments({argv + 1, argv + argc})) ? EXIT_SUCCESS : EXIT_FAILURE;
  } catch (const std::invalid_argument& mistake) {
    std::fprintf(stderr, "kv_compare: %s\n%s", mistake.what(), usage.data());
    return 2;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "kv_compare: %s\n", failure.what());
    return EXIT_FAILURE;
  }
}
