#include "tests/schau/clean_network.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>

namespace schau_test {
namespace {

constexpr std::string_view types = "NKETVBP";

class Builder {
 public:
  explicit Builder(Dice& dice) : dice_(dice) {}

  CleanNetwork build(std::size_t least_elements) {
    for (const char type : types) add_part_with(type);
    while (network_.elements.size() < least_elements) grow();
    while (open_.size() > 1) add('T', take_open(3));
    add('T', take_open(1));
    open_.clear();
    write_files();
    return std::move(network_);
  }

 private:
  // So that each type is there.
  void add_part_with(char type) {
    add('N', {});
    if (type == 'N' || type == 'K' || type == 'E') add(type, {});
    if (type == 'V' || type == 'B' || type == 'P') add(type, take_open(1));
    add('T', take_open(2));
  }

  void grow() {
    if (open_.size() < 2 || dice_.one_in(3)) {
      add("NNNKKE" [dice_.roll(6)], {});
    } else {
      add("TTTTVVBBP"[dice_.roll(9)], take_open(1 + dice_.roll(3)));
    }
  }

  // The elements of so many open outflows, the youngest first, each element once.
  std::vector<std::size_t> take_open(std::size_t most) {
    std::vector<std::size_t> taken;
    for (std::size_t k = open_.size(); k-- > 0 && taken.size() < most;) {
      const std::size_t element = open_[k];
      if (std::ranges::find(taken, element) != taken.end()) continue;
      taken.push_back(element);
      open_.erase(open_.begin() + static_cast<std::ptrdiff_t>(k));
    }
    return taken;
  }

  void add(char type, std::vector<std::size_t> inflows) {
    const std::size_t position = network_.elements.size();
    for (const std::size_t inflow : inflows) network_.elements[inflow].outflows.push_back(position);
    const std::size_t number = ++numbers_[types.find(type)] * 10;
    PlacedElement element;
    element.type = type;
    element.name = fmt::format("{}{:04}", type, number);
    element.inflows = std::move(inflows);
    network_.elements.push_back(std::move(element));
    open_.push_back(position);
    if (type == 'V' || type == 'B') open_.push_back(position);
  }

  std::size_t write(FileId file, std::string line) {
    network_.bed.lines(file).push_back(std::move(line));
    return network_.bed.lines(file).size();
  }

  void write_files() {
    network_.bed = Bed::empty();
    write(FileId::sys, bytes_of("Systemlogik eines Flussgebiets für die Prüfung"));
    write(FileId::sys, "                Bezeichnung        <Name>  Einl. 1-3           Ausl. 1-2");
    write(FileId::nfl, bytes_of("   Name   Areal Befestigungsgrad, natürliche Gebiete"));
    write(FileId::kfl, "   Name   Areal Befestigungsgrad");
    write(FileId::trs, "   Name       km                                        Profil");
    write(FileId::ver, "   Name   Ken. Anteil");
    for (std::size_t i = 0; i < network_.elements.size(); ++i) {
      if (dice_.one_in(12)) write(FileId::sys, bytes_of("--- Teilgebiet am Mühlbach ---"));
      write_element(i);
      write_record(i);
    }
  }

  void write_element(std::size_t i) {
    PlacedElement& element = network_.elements[i];
    SystemLine line{element.name};
    line.description = "Gebiet";
    for (const std::size_t inflow : element.inflows) line.inflows.push_back(network_.elements[inflow].name);
    for (const std::size_t outflow : element.outflows)
      line.outflows.push_back(network_.elements[outflow].name);
    if (i + 1 == network_.elements.size()) line.outflows.push_back("ENDE");
    if (element.type == 'V' || element.type == 'B') {
      line.tag3 = "BW";
      line.tag7 = "Anlage";
    }
    element.sys_line = write(FileId::sys, text_of(line));
  }

  void write_record(std::size_t i) {
    switch (network_.elements[i].type) {
      case 'N':
        return write_area(i, FileId::nfl, 0);
      case 'K':
        return write_area(i, FileId::kfl, 1);
      case 'T':
        return write_reach(i);
      case 'V':
        return write_branching(i);
      default:
        return;
    }
  }

  void write_area(std::size_t i, FileId file, std::size_t which) {
    PlacedElement& element = network_.elements[i];
    if (unit_lines_[which] == 0 || dice_.one_in(5)) {
      in_hectares_[which] = unit_lines_[which] == 0 ? which == 1 : !in_hectares_[which];
      unit_lines_[which] = write(file, in_hectares_[which] ? "          ha" : "          qkm");
    }
    element.unit_line = unit_lines_[which];
    const double area = 0.5 + 0.01 * static_cast<double>(dice_.roll(4900));
    const std::string text =
        in_hectares_[which] ? fmt::format("{:5.0f}", area * 100.0) : fmt::format("{:5.2f}", area);
    const double sealing = which == 0 ? 0.0 : 0.05 + 0.01 * static_cast<double>(dice_.roll(90));
    element.record_line = write(file, fmt::format("   {}  {}{:5.2f}", element.name, text, sealing));
  }

  // Whatever lies below has a higher position, and so a lower station.
  void write_reach(std::size_t i) {
    PlacedElement& element = network_.elements[i];
    if (dice_.one_in(5)) {
      element.record_line = write(FileId::trs, "   " + element.name);
      return;
    }
    const double station = 0.25 * static_cast<double>(network_.elements.size() - i);
    element.record_line = write(
        FileId::trs, fmt::format("   {}  {:8.3f}{:38}Profil {}", element.name, station + 0.2, "", i % 100));
    element.station_line = write(FileId::trs, fmt::format("{:10}{:8.3f}", "", station));
  }

  void write_branching(std::size_t i) {
    PlacedElement& element = network_.elements[i];
    const std::size_t code = dice_.one_in(3) ? 1 + dice_.roll(3) : 1;
    const double share = code == 1 ? 5.0 + 0.1 * static_cast<double>(dice_.roll(900)) : 0.0;
    element.record_line = write(FileId::ver, fmt::format("   {}  {:4} {:5.1f}", element.name, code, share));
  }

  Dice& dice_;
  CleanNetwork network_;
  std::vector<std::size_t> open_;
  std::array<std::size_t, types.size()> numbers_{};
  std::array<std::size_t, 2> unit_lines_{};
  std::array<bool, 2> in_hectares_{};
};

}  // namespace

CleanNetwork clean_network(Dice& dice, std::size_t least_elements) {
  return Builder(dice).build(least_elements);
}

}  // namespace schau_test
