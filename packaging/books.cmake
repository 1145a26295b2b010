# Handbook and reference of the messages as HTML, the handbook as PDF too.
find_program(PANDOC pandoc REQUIRED)
find_program(WEASYPRINT weasyprint REQUIRED)

set(book ${CMAKE_CURRENT_SOURCE_DIR}/book)
set(pages)
function(kv_page name language title)
  set(page ${CMAKE_CURRENT_BINARY_DIR}/${name}.html)
  set(source ${PROJECT_SOURCE_DIR}/docs/${name}.md)
  add_custom_command(OUTPUT ${page} DEPENDS ${source} ${book}/book.css ${book}/links.lua
    COMMAND ${PANDOC} --from gfm --to html5 --standalone --self-contained --toc --toc-depth 2
      --metadata lang=${language} --metadata "pagetitle=${title}" --css ${book}/book.css
      --lua-filter ${book}/links.lua --output ${page} ${source}
    VERBATIM)
  install(FILES ${page} DESTINATION ${documents} COMPONENT programs)
  set(pages ${pages} ${page} PARENT_SCOPE)
endfunction()

kv_page(Handbuch de "Handbuch zu KV_Akum ${PROJECT_VERSION}")
kv_page(messages en "Messages of KV_Akum ${PROJECT_VERSION}")

set(handbook ${CMAKE_CURRENT_BINARY_DIR}/Handbuch.pdf)
add_custom_command(OUTPUT ${handbook} DEPENDS ${CMAKE_CURRENT_BINARY_DIR}/Handbuch.html
  COMMAND ${WEASYPRINT} --quiet --presentational-hints ${CMAKE_CURRENT_BINARY_DIR}/Handbuch.html ${handbook} VERBATIM)
install(FILES ${handbook} DESTINATION ${documents} COMPONENT programs)

add_custom_target(books ALL DEPENDS ${pages} ${handbook})
