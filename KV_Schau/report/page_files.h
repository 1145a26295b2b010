#pragma once

#include <string_view>

/// The page's own files (page.html, page.css, page.js), made part of the program when it is built.
namespace schau::report {

extern const std::string_view page_html;  ///< a mustache template
extern const std::string_view page_css;
extern const std::string_view page_js;

}  // namespace schau::report
