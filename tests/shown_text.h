#pragma once

#include <string>

#include "tests/forwarding_host.h"

/// Keeps what is written to standard output and standard error while this lives.
class ShownText final : public ForwardingHost {
 public:
  [[nodiscard]] const std::string& output() const { return output_; }
  [[nodiscard]] const std::string& error() const { return error_; }

  std::ptrdiff_t write(int handle, const char* bytes, std::size_t count, std::error_code& reason) override {
    if (handle != runtime::standard_output_handle && handle != runtime::standard_error_handle) {
      return ForwardingHost::write(handle, bytes, count, reason);
    }
    (handle == runtime::standard_output_handle ? output_ : error_).append(bytes, count);
    return static_cast<std::ptrdiff_t>(count);
  }

 private:
  std::string output_;
  std::string error_;
};
