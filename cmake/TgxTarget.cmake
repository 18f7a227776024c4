# What every target of the project is compiled with.
function(tgx_target name)
  target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> PRIVATE ${PROJECT_SOURCE_DIR})
  target_compile_options(${name} PRIVATE -Wall -Wextra -Wpedantic -Wshadow $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor>
                         $<$<BOOL:${TGX_WARNINGS_AS_ERRORS}>:-Werror>)
  # GCC 12 at -O3 takes the growth of a temporary string for overlapping memory (its bug 105651), the comparison of two byte
  # vectors for one without end, and the members of a temporary record for uninitialised.
  target_compile_options(${name} PRIVATE "$<$<AND:$<CXX_COMPILER_ID:GNU>,$<CONFIG:Release>>:-Wno-restrict;-Wno-stringop-overread;-Wno-maybe-uninitialized>")
  set_target_properties(${name} PROPERTIES CXX_VISIBILITY_PRESET hidden C_VISIBILITY_PRESET hidden
                                           VISIBILITY_INLINES_HIDDEN ON)
  if(TGX_SANITIZE)
    target_compile_options(${name} PRIVATE -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${name} PRIVATE -fsanitize=address,undefined)
  endif()
  if(TGX_BUILD_FUZZERS)
    target_compile_options(${name} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
endfunction()

# Programs that repair documents make a great many small allocations, by which libc's allocator makes them a third slower.
# Nothing calls jemalloc by its own names, so the linker has to be told to keep it. The sanitizers bring an allocator of their own.
function(tgx_use_allocator program)
  if(JEMALLOC_FOUND AND NOT TGX_SANITIZE)
    target_link_options(${program} PRIVATE LINKER:--push-state,--no-as-needed ${JEMALLOC_LDFLAGS} LINKER:--pop-state)
  endif()
endfunction()
