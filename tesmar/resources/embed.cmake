# Writes the C++ source that contains files as bytes:
#   cmake -DOUTPUT=embedded_files.cpp -P embed.cmake -- FILE...
set(entries "")
set(i 0)
while(NOT "${CMAKE_ARGV${i}}" STREQUAL "--")
  math(EXPR i "${i} + 1")
endwhile()
math(EXPR i "${i} + 1")
while(i LESS CMAKE_ARGC)
  file(READ ${CMAKE_ARGV${i}} bytes HEX)
  string(REGEX REPLACE "(..)" "\\\\x\\1" bytes "${bytes}")
  get_filename_component(name ${CMAKE_ARGV${i}} NAME)
  string(APPEND entries "    {\"${name}\", \"${bytes}\"sv},\n")
  math(EXPR i "${i} + 1")
endwhile()
file(WRITE ${OUTPUT} "#include \"tesmar/resources/internal/embedded.h\"

namespace tesmar {
using namespace std::string_view_literals;

constexpr EmbeddedFile kFiles[] = {
${entries}};

std::span<const EmbeddedFile> embeddedFiles() {
    return kFiles;
}

} // namespace tesmar
")
