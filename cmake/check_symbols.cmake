# Checks that a shared library exports exactly the names its public headers
# declare with VOK_API (functions, constant objects, and the runners declared
# through VOK_DECLARE_RUNNER), and no C++ (mangled) names.
#
#   cmake -DNM=<nm> -DLIBRARY=<libvoklite.so> -DHEADERS=<include/vok> -P check_symbols.cmake
#
# Mangled names, extra names and declared names the library lacks each fail,
# listed by kind.
cmake_minimum_required(VERSION 3.25)

foreach(required NM LIBRARY HEADERS)
  if(NOT DEFINED ${required})
    message(FATAL_ERROR "check_symbols: ${required} is not set")
  endif()
endforeach()

# ---- Names the headers promise ------------------------------------------------
set(declared "")
file(GLOB headers "${HEADERS}/*.h")
foreach(header ${headers})
  file(READ "${header}" text)
  # Comments, then preprocessor lines (with their continuations) go: the
  # definitions of VOK_API and VOK_DECLARE_RUNNER are not declarations.
  string(REGEX REPLACE "/\\*([^*]|\\*+[^*/])*\\*+/" " " text "${text}")
  string(REGEX REPLACE "//[^\n]*" "" text "${text}")
  string(REGEX REPLACE "\\\\\n" " " text "${text}")
  string(REGEX REPLACE "(^|\n)[ \t]*#[^\n]*" "\n" text "${text}")
  # "VOK_API <type> Name(" and "VOK_API extern const <type> Name;": the name
  # is the last identifier before the parenthesis or semicolon.
  string(REGEX MATCHALL "VOK_API[^;(\\[]+" heads "${text}")
  foreach(head ${heads})
    if(head MATCHES "([A-Za-z_][A-Za-z0-9_]*)[ \t\r\n]*$")
      list(APPEND declared "${CMAKE_MATCH_1}")
    endif()
  endforeach()
  string(REGEX MATCHALL "VOK_DECLARE_RUNNER[ \t]*\\([ \t]*[A-Za-z_][A-Za-z0-9_]*" runners "${text}")
  foreach(runner ${runners})
    string(REGEX REPLACE ".*\\([ \t]*" "" runner "${runner}")
    list(APPEND declared "${runner}")
  endforeach()
endforeach()
list(REMOVE_DUPLICATES declared)
list(LENGTH declared declared_count)
if(declared_count EQUAL 0)
  message(FATAL_ERROR "check_symbols: no VOK_API declarations found in ${HEADERS}")
endif()

# ---- Names the library exports ----------------------------------------------
execute_process(COMMAND "${NM}" -D --defined-only "${LIBRARY}"
                OUTPUT_VARIABLE listing RESULT_VARIABLE status ERROR_VARIABLE nm_error)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "check_symbols: ${NM} failed on ${LIBRARY}: ${nm_error}")
endif()
string(REPLACE "\n" ";" lines "${listing}")
set(exported "")
foreach(line ${lines})
  # "<address> <type> <name>[@version]"; absolute (A) entries are version
  # nodes, and AddressSanitizer adds an "__odr_asan." indicator beside each
  # exported variable: neither is a name of the library.
  if(line MATCHES "^[0-9a-fA-F]* *([A-Za-z]) ([^ @]+)")
    # Keep the name first: the MATCHES below resets the CMAKE_MATCH_ values.
    set(kind "${CMAKE_MATCH_1}")
    set(name "${CMAKE_MATCH_2}")
    if(NOT kind STREQUAL "A" AND NOT name MATCHES "^__odr_asan[._]")
      list(APPEND exported "${name}")
    endif()
  endif()
endforeach()

# ---- Compare ------------------------------------------------------------------
set(mangled "")
set(extra "")
foreach(name ${exported})
  if(name MATCHES "^_Z")
    list(APPEND mangled "${name}")
  elseif(NOT name IN_LIST declared)
    list(APPEND extra "${name}")
  endif()
endforeach()
set(missing "")
foreach(name ${declared})
  if(NOT name IN_LIST exported)
    list(APPEND missing "${name}")
  endif()
endforeach()

list(LENGTH exported exported_count)
list(LENGTH missing missing_count)
message("${exported_count} names exported, ${declared_count} declared, ${missing_count} not defined")
set(failed FALSE)
foreach(kind mangled extra missing)
  if(${kind})
    list(SORT ${kind})
    list(LENGTH ${kind} count)
    list(JOIN ${kind} "\n  " names)
    if(kind STREQUAL "mangled")
      message("C++ names exported (${count}):\n  ${names}")
      set(failed TRUE)
    elseif(kind STREQUAL "extra")
      message("exported but declared nowhere with VOK_API (${count}):\n  ${names}")
      set(failed TRUE)
    else()
      message("declared but not defined by the library (${count}):\n  ${names}")
      set(failed TRUE)
    endif()
  endif()
endforeach()
if(failed)
  message(FATAL_ERROR "exported symbols do not match the public headers")
endif()
