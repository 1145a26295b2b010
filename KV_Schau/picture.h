#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// Drawings as files.
namespace schau {

/// The size of a drawing in points of 1/96 inch.
struct PictureSize {
  double width = 0.0;
  double height = 0.0;
};

/// True for a file name that ends with ".svg", ".png" or ".pdf", in whatever case.
bool names_picture(const std::filesystem::path& file);

/// Writes an SVG drawing to a file, as its name ends: as it is, or turned into PNG or PDF by rsvg-convert. A
/// drawing is made smaller where PNG or PDF could not hold it. Returns a German sentence without full stop
/// that tells so; empty as a rule. Throws run::FileFault when the file cannot be written or rsvg-convert is
/// missing or fails; an older file is then as it was.
std::string write_picture(std::string_view svg, const PictureSize& size, const std::filesystem::path& file);

}  // namespace schau
