// The least that any program on these files has to do: read every input byte, find the line ends,
// write as many bytes as the result has.

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace {

struct FileCloser {
  void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

File open_unbuffered(const std::string& path, const char* mode) {
  File file(std::fopen(path.c_str(), mode));
  if (!file) {
    throw std::runtime_error("cannot open " + path);
  }
  // Whole blocks go straight to the system, without a copy in between.
  std::setvbuf(file.get(), nullptr, _IONBF, 0);
  return file;
}

std::size_t count_line_ends(const char* text, std::size_t size) {
  std::size_t lines = 0;
  const char* const end = text + size;
  while (text != end) {
    const void* const found = std::memchr(text, '\n', static_cast<std::size_t>(end - text));
    if (found == nullptr) {
      break;
    }
    ++lines;
    text = static_cast<const char*>(found) + 1;
  }
  return lines;
}

std::size_t read_inputs(const std::vector<std::string>& paths) {
  std::vector<std::size_t> sizes;
  sizes.reserve(paths.size());
  for (const std::string& path : paths) {
    sizes.push_back(static_cast<std::size_t>(std::filesystem::file_size(path)));
  }
  const std::size_t largest = sizes.empty() ? 0 : *std::max_element(sizes.begin(), sizes.end());
  const auto buffer = std::make_unique_for_overwrite<char[]>(largest);

  std::size_t lines = 0;
  for (std::size_t i = 0; i < paths.size(); ++i) {
    const File file = open_unbuffered(paths[i], "rb");
    if (std::fread(buffer.get(), 1, sizes[i], file.get()) != sizes[i]) {
      throw std::runtime_error("cannot read " + paths[i]);
    }
    lines += count_line_ends(buffer.get(), sizes[i]);
  }
  return lines;
}

void write_output(const std::string& path, std::uintmax_t bytes) {
  const std::string block(std::size_t{1} << 20U, '-');
  const File file = open_unbuffered(path, "wb");
  while (bytes > 0) {
    const auto part = static_cast<std::size_t>(std::min<std::uintmax_t>(bytes, block.size()));
    if (std::fwrite(block.data(), 1, part, file.get()) != part) {
      throw std::runtime_error("cannot write " + path);
    }
    bytes -= part;
  }
}

std::uintmax_t parse_count(std::string_view text) {
  std::uintmax_t count = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
  if (error != std::errc{} || end != text.data() + text.size()) {
    throw std::runtime_error("not a number of bytes: " + std::string(text));
  }
  return count;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fputs("usage: kv_yardstick OUTPUT BYTES [INPUT ...]\n", stderr);
    return 2;
  }
  try {
    const std::vector<std::string> inputs(argv + 3, argv + argc);
    std::printf("%zu lines\n", read_inputs(inputs));
    write_output(argv[1], parse_count(argv[2]));
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "kv_yardstick: %s\n", failure.what());
    return 1;
  }
  return 0;
}
