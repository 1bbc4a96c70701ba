# Warnings are errors on the project's own code.
function(quillbank_warnings target)
  if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Werror)
    if(WIN32 AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
      # GCC 12 at -O2 reports "literal + std::string&&" as an overlapping copy
      # inside libstdc++'s own basic_string (GCC bug 105329), not in our code.
      target_compile_options(${target} PRIVATE -Wno-restrict)
    endif()
  elseif(MSVC)
    target_compile_options(${target} PRIVATE /W4 /WX)
  endif()
endfunction()
