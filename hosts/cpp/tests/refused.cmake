# Statements that must not compile, each with one beside it that must: all in one source, where the compiler
# must find a fault in each line. CTest passes SOURCE, WORK, CXX and
# CXX_FLAGS.
separate_arguments(flags UNIX_COMMAND "${CXX_FLAGS}")
set(pairs
  "file[\"a\"] = file[\"b\"]|file[\"a\"] = file[\"b\"].as<int>()"
  "zon::Item a = file[\"a\"], b = (a = file[\"b\"])|zon::Item a = file[\"a\"], b = a"
  "return zon::load(\"f\").sections().empty()|return file.sections().empty()"
  "return zon::load(\"f\").sections(\"A\").empty()|return file.sections(\"A\").empty()"
  "return zon::load(\"f\").keywords(\"A/k\").empty()|return file.keywords(\"A/k\").empty()"
  "zon::load(\"f\").begin()|file.begin()"
  "return zon::load(\"f\").warnings().empty()|return file.warnings().empty()"
  "if (file[\"a\"]) return 1|if (file[\"a\"].exists()) return 1"
  "if (file.section(\"a\")) return 1|if (file.section(\"a\").exists()) return 1"
  "return !file[\"a\"]|return !file[\"a\"].as<bool>()"
  "return file[\"a\"] == file[\"b\"]|return file[\"a\"].as<int>() == file[\"b\"].as<int>()"
  "return file[\"a\"] < 2|return file[\"a\"].as<int>() < 2"
  "double sum = file[\"a\"] + file[\"b\"]|double sum = file[\"a\"].as<double>() + 1"
  "double sum = 2 * file[\"a\"]|double sum = 2 * file[\"a\"].as<int>()"
  "double sum = 0, all = (sum += file[\"a\"])|double sum = 0, all = (sum = file[\"a\"])"
  "double sum = -file.keyword(\"a\")|double sum = file.keyword(\"a\")"
  "file[0]|file[\"a\"][1]"
  "file[\"a\"][true]|file[\"a\"][1u]"
  "file[\"a\"]['b']|file[\"a\"][\"b\"]"
  "unsigned n = file[\"a\"]|int n = file[\"a\"]"
  "file[\"a\"].as<unsigned>()|file[\"a\"].as<long>()"
  "file[\"a\"].value_or(1u)|file[\"a\"].value_or(1)"
  "file[\"a\"] = 'x'|file[\"a\"] = \"x\""
  "file[\"a\"] = 1.0L|file[\"a\"] = 1.0"
  "file[\"a\"] = nullptr|file[\"a\"] = {1, 2}"
  "zon::File other = file|zon::File other = std::move(file)")
file(MAKE_DIRECTORY ${WORK})
foreach(kind refused accepted)
  file(WRITE ${WORK}/${kind}.cpp "#include <zon.hpp>\n")
endforeach()
set(count 1)
foreach(pair IN LISTS pairs)
  math(EXPR count "${count} + 1")
  string(REPLACE "|" ";" statements "${pair}")
  foreach(kind refused accepted)
    list(POP_FRONT statements statement)
    file(APPEND ${WORK}/${kind}.cpp "int Run${count}(zon::File& file) { ${statement}; return 0; }\n")
  endforeach()
endforeach()

set(compile ${CXX} -std=c++17 ${flags} -fsyntax-only -w -I${SOURCE}/api -I${SOURCE}/hosts/cpp)
execute_process(COMMAND ${compile} ${WORK}/accepted.cpp RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "a statement is not accepted")
endif()
execute_process(COMMAND ${compile} -ferror-limit=0 ${WORK}/refused.cpp ERROR_VARIABLE errors RESULT_VARIABLE status)
if(errors MATCHES "unrecognized command[^\n]*-ferror-limit")
  execute_process(COMMAND ${compile} ${WORK}/refused.cpp ERROR_VARIABLE errors RESULT_VARIABLE status)
endif()
foreach(line RANGE 2 ${count})
  if(NOT errors MATCHES "/refused.cpp:${line}:")
    message(SEND_ERROR "the statement of ${WORK}/refused.cpp:${line} is accepted\n${errors}")
  endif()
endforeach()
