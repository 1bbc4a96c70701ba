# Writes a C++ source that holds files as constants, for programs that carry
# them inside (the tool's HTML page, its style sheet and its script).
#
#   cmake -DOUTPUT=file.cpp -DHEADER=name.hpp -DNAMESPACE=ns
#         -DNAMES=kOne|kTwo -DFILES=one.html|two.css -P EmbedFiles.cmake
#
# Each constant is a std::string_view over a null-terminated array of the
# file's bytes, unchanged.
string(REPLACE "|" ";" names "${NAMES}")
string(REPLACE "|" ";" files "${FILES}")
list(LENGTH names count)
math(EXPR last "${count} - 1")
set(text "// Made by cmake/EmbedFiles.cmake at build time: do not edit.\n#include \"${HEADER}\"\n\nnamespace ${NAMESPACE} {\n")
foreach(i RANGE ${last})
  list(GET names ${i} name)
  list(GET files ${i} file)
  file(READ "${file}" hex HEX)
  string(LENGTH "${hex}" hexLength)
  math(EXPR size "${hexLength} / 2")
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${hex}")
  # Lines of 16 bytes keep the source readable for tools.
  string(REGEX REPLACE "(('\\\\x[0-9a-f][0-9a-f]',){16})" "\\1\n" bytes "${bytes}")
  string(APPEND text "\nnamespace {\nconstexpr char ${name}Bytes[] = {\n${bytes}'\\0'};\n}  // namespace\n"
                     "const std::string_view ${name}{${name}Bytes, ${size}};\n")
endforeach()
string(APPEND text "\n}  // namespace ${NAMESPACE}\n")
file(WRITE "${OUTPUT}.new" "${text}")
file(COPY_FILE "${OUTPUT}.new" "${OUTPUT}" ONLY_IF_DIFFERENT)
file(REMOVE "${OUTPUT}.new")
