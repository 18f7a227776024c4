# clang 14 does not compile qpdf 11's JSON.hh as C++20: a destructor that is defaulted inside its class needs a complete type
# there. Gives clang a copy in which that one is only declared; nothing of ours uses it. Other compilers get qpdf's own.
function(tgx_qpdf_for_clang target)
  find_path(TGX_QPDF_HEADERS qpdf/JSON.hh HINTS ${QPDF_INCLUDE_DIRS} REQUIRED)
  file(READ ${TGX_QPDF_HEADERS}/qpdf/JSON.hh header)
  string(REPLACE "virtual ~JSON_array() = default;" "virtual ~JSON_array();" header "${header}")
  file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/qpdf_for_clang/qpdf/JSON.hh @ONLY NEWLINE_STYLE UNIX CONTENT
       "#if defined(__clang__)\n@header@\n#else\n#include_next <qpdf/JSON.hh>\n#endif\n")
  target_include_directories(${target} SYSTEM BEFORE PUBLIC $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/qpdf_for_clang>)
endfunction()
