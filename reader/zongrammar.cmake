# Makes zongrammar.inc, the parse tables and the names of the rules, from zongrammar.y.
#
#   cmake -P reader/zongrammar.cmake              write zongrammar.inc beside this script
#   cmake -DCHECK=ON -P reader/zongrammar.cmake   make it elsewhere and fail when the file differs
#
# Settings, each with a default; relative paths are taken from the current directory:
#   YACC         the yacc of Debian's package 9base; other yaccs lay out other tables
#   SOURCE       the grammar
#   YACCPAR_DIR  the folder of yaccpar, the template that yacc copies after the tables
#   OUTPUT       the file to write, or to compare with
#
# Building the library does not need this script: zongrammar.inc is kept with the sources.
cmake_minimum_required(VERSION 3.16)

# The size of the grammar. Change the numbers with the grammar: they catch a change by mistake.
set(EXPECT_STATES 67)
set(EXPECT_RULES 54)  # the accepting rule, which yacc adds as number 0, is one of them
set(EXPECT_NONTERMINALS 19)
set(EXPECT_EXCEPTIONS 1)

if(NOT DEFINED SOURCE)
  set(SOURCE "${CMAKE_CURRENT_LIST_DIR}/zongrammar.y")
endif()
if(NOT DEFINED YACCPAR_DIR)
  set(YACCPAR_DIR "${CMAKE_CURRENT_LIST_DIR}")
endif()
if(NOT DEFINED OUTPUT)
  set(OUTPUT "${CMAKE_CURRENT_LIST_DIR}/zongrammar.inc")
endif()
if(NOT DEFINED YACC)
  find_program(YACC yacc PATHS /usr/lib/plan9/bin NO_DEFAULT_PATH)
endif()
if(NOT YACC)
  set(text "the yacc of Debian's package 9base is not installed")
  if(CHECK)
    message("SKIPPED: ${text}")
    return()
  endif()
  message(FATAL_ERROR "${text}")
endif()
foreach(path IN ITEMS YACC SOURCE YACCPAR_DIR OUTPUT)
  get_filename_component(${path} "${${path}}" ABSOLUTE)
endforeach()
foreach(input IN ITEMS "${YACC}" "${SOURCE}" "${YACCPAR_DIR}/yaccpar")
  if(NOT EXISTS "${input}")
    message(FATAL_ERROR "${input} does not exist")
  endif()
endforeach()

# yacc leaves files behind in the current directory, so it works in a folder of its own.
set(work "$ENV{TMPDIR}")
if(work STREQUAL "")
  set(work /tmp)
endif()
string(RANDOM LENGTH 12 random)
string(APPEND work "/zongrammar-${random}")

function(fail text)
  file(REMOVE_RECURSE "${work}")
  message(FATAL_ERROR "${text}")
endfunction()

# This yacc looks for its template at $PLAN9/yacc/yaccpar.
file(MAKE_DIRECTORY "${work}/yacc")
configure_file("${YACCPAR_DIR}/yaccpar" "${work}/yacc/yaccpar" COPYONLY)
execute_process(
  COMMAND "${CMAKE_COMMAND}" -E env "PLAN9=${work}" "${YACC}" -l -v -o tables.c "${SOURCE}"
  WORKING_DIRECTORY "${work}"
  RESULT_VARIABLE result
  OUTPUT_VARIABLE said
  ERROR_VARIABLE said)
if(NOT result STREQUAL "0" OR NOT said STREQUAL "")
  fail("${YACC} on ${SOURCE} ended with ${result} and wrote:\n${said}")
endif()
foreach(file IN ITEMS tables.c y.output)
  if(NOT EXISTS "${work}/${file}")
    fail("${YACC} has not written ${file}, as the yacc of 9base does")
  endif()
endforeach()
file(READ "${work}/tables.c" tables)
file(READ "${work}/y.output" report)
file(READ "${SOURCE}" grammar)

# Brackets and semicolons steer how CMake splits a list, so the texts to be split do without them.
foreach(text IN ITEMS report grammar)
  string(REPLACE ";" "" ${text} "${${text}}")
  string(REPLACE "[" "<" ${text} "${${text}}")
  string(REPLACE "]" ">" ${text} "${${text}}")
endforeach()

# ---- The size of the grammar, as yacc reports it ----

function(expect pattern number what)
  if(NOT report MATCHES "${pattern}")
    fail("y.output has no number of ${what}")
  endif()
  if(NOT CMAKE_MATCH_1 EQUAL number)
    fail("the grammar has ${CMAKE_MATCH_1} ${what}, expected ${number}")
  endif()
endfunction()

expect("([0-9]+)/[0-9]+ states" ${EXPECT_STATES} "states")
expect("([0-9]+)/[0-9]+ grammar rules" ${EXPECT_RULES} "rules")
expect("([0-9]+)/[0-9]+ nonterminals" ${EXPECT_NONTERMINALS} "nonterminals")
expect("([0-9]+) exceptions" ${EXPECT_EXCEPTIONS} "exceptions")
expect("([0-9]+) shift/reduce" 0 "shift/reduce conflicts")
expect("([0-9]+) reduce/reduce" 0 "reduce/reduce conflicts")

# ---- The names of the rules ----

# What yacc calls rule n: y.output shows each rule with its number where a state completes it.
string(REGEX MATCHALL "\t[a-z_]+: [^\n]*\\.    \\([0-9]+\\)" completed "${report}")
foreach(item IN LISTS completed)
  if(item MATCHES "^\t([a-z_]+): (.*)\\.    \\(([0-9]+)\\)$")
    set(number ${CMAKE_MATCH_3})
    set(left "${CMAKE_MATCH_1}")
    string(STRIP "${CMAKE_MATCH_2}" right)
    set(rule_${number} "${left}: ${right}")
  endif()
endforeach()

string(FIND "${grammar}" "\n%%\n" start)
if(start EQUAL -1)
  fail("${SOURCE} has no rules")
endif()
string(SUBSTRING "${grammar}" ${start} -1 grammar)
string(REGEX MATCHALL "[^\n]+" lines "${grammar}")
set(number 0)
set(names kAccept)
set(enumerators)

function(enumerator name number rule)
  set(line "  ${name} = ${number},")
  string(LENGTH "${line}" length)
  math(EXPR blanks "29 - ${length}")
  if(blanks LESS 2)
    set(blanks 2)
  endif()
  string(REPEAT " " ${blanks} blanks)
  set(enumerators "${enumerators}${line}${blanks}// ${rule}\n" PARENT_SCOPE)
endfunction()

enumerator(kAccept 0 "the accepting rule, without an action")
foreach(line IN LISTS lines)
  if(line MATCHES "^([a-z_]+)$")
    set(left "${CMAKE_MATCH_1}")
  elseif(line MATCHES "^    [:|]")
    math(EXPR number "${number} + 1")
    if(NOT line MATCHES "^    [:|]([^/]*)/\\* (k[A-Z][A-Za-z0-9]*) \\*/$")
      fail("rule ${number} is not one line with its name at the end:\n${line}")
    endif()
    set(name "${CMAKE_MATCH_2}")
    string(STRIP "${CMAKE_MATCH_1}" right)
    string(REPLACE "'" "" plain "${right}")
    if(NOT rule_${number} STREQUAL "${left}: ${plain}")
      fail("${name} is in place ${number}, where yacc has the rule\n${rule_${number}}")
    endif()
    if(name IN_LIST names)
      fail("two rules are named ${name}")
    endif()
    list(APPEND names ${name})
    if(right STREQUAL "")
      set(right "(nothing)")
    endif()
    string(REPLACE "<" "[" right "${right}")
    string(REPLACE ">" "]" right "${right}")
    enumerator(${name} ${number} "${left}: ${right}")
  endif()
endforeach()
list(LENGTH names named)
if(NOT named EQUAL EXPECT_RULES)
  fail("${named} rules have names, and the grammar has ${EXPECT_RULES}")
endif()

# ---- The tables ----

if(NOT tables MATCHES "/\\* end of tables \\*/\n$")
  fail("what yacc wrote does not end as ${YACCPAR_DIR}/yaccpar does")
endif()

function(constant name out)
  if(NOT tables MATCHES "#define[ \t]+${name}[ \t]+([0-9]+)\n")
    fail("yacc has not written ${name}")
  endif()
  set(${out} "${CMAKE_MATCH_1}" PARENT_SCOPE)
endfunction()

# Puts the array `name` into the variable of that name; checks its length where one is given.
function(array name)
  if(NOT tables MATCHES "static[ \t]+const[ \t]+(short|long)[ \t]+${name}\\[\\] =\n{\n?([^}]*)};\n")
    fail("yacc has not written ${name}")
  endif()
  string(REPLACE "\t" "" body "${CMAKE_MATCH_2}")
  string(REGEX REPLACE ",?\n$" "" body "${body}")
  string(REPLACE "\n" "\n    " body "${body}")
  string(REGEX MATCHALL "," commas "${body}")
  list(LENGTH commas length)
  math(EXPR length "${length} + 1")
  if(ARGC GREATER 1 AND NOT length EQUAL ARGV1)
    fail("${name} has ${length} entries, expected ${ARGV1}")
  endif()
  set(${name} "constexpr short ${name}[] = {\n    ${body}};\n" PARENT_SCOPE)
endfunction()

constant(YYLAST last)
constant(YYNPROD rules)
constant(YYEOFCODE end)
constant(YYERRCODE error)
if(NOT rules EQUAL EXPECT_RULES)
  fail("the tables have ${rules} rules, expected ${EXPECT_RULES}")
endif()
math(EXPR gotos "${EXPECT_NONTERMINALS} + 1")  # and one for the accepting rule's left side
array(yyexca)
array(yyact ${last})
array(yypact ${EXPECT_STATES})
array(yypgo ${gotos})
array(yyr1 ${rules})
array(yyr2 ${rules})
array(yychk ${EXPECT_STATES})
array(yydef ${EXPECT_STATES})
array(yytok1)
array(yytok2)
array(yytok3)
if(NOT yyexca MATCHES "{\n *-1, 1,\n *${end}, -1,\n *-2, 0};")
  fail("the exception is not that state 1 accepts at the end of input:\n${yyexca}")
endif()
if(NOT yypact MATCHES "-1000")
  fail("yypact does not know -1000 as the mark of a state without shifts")
endif()
# Two numbers without a code of their own: the error token, and every token that no rule names.
if(NOT yytok2 MATCHES "{\n *${error}, +([0-9]+)};")
  fail("yytok2 is not the error token and the unknown token:\n${yytok2}")
endif()
set(unknown ${CMAKE_MATCH_1})

get_filename_component(script_name "${CMAKE_CURRENT_LIST_FILE}" NAME)
get_filename_component(source_name "${SOURCE}" NAME)
set(text "\
// Made by ${script_name} from ${source_name}: do not edit.
//
// To be included inside a namespace. Everything here has internal linkage or is a type.

/* The rules, each by the name it has in ${source_name}. */
enum Rule : int {
${enumerators}};

/* The tables number the tokens in their own way, in the order in which the grammar names them. The
 * number of a code that the scanner returns is
 *     for 0 or less, the end of input          yytok1[0], which is YYEOFCODE
 *     for a code below the length of yytok1    yytok1[code]
 *     for any other                            what follows the code in yytok3, a list of pairs
 *                                              (code, number) that a single 0 ends
 * and YYUNKCODE, which no state shifts, where that gives 0 or nothing. The tables below know these
 * numbers only, never the scanner's codes. */
${yytok1}${yytok3}
constexpr int YYEOFCODE = ${end};   // number of the end of input
constexpr int YYERRCODE = ${error};   // number of the error token, which no rule uses
constexpr int YYUNKCODE = ${unknown};   // number of every token that the grammar does not name
constexpr int YYNSTATES = ${EXPECT_STATES};  // length of yypact, yychk and yydef
constexpr int YYNPROD = ${rules};    // length of yyr1 and yyr2: one for each Rule
constexpr int YYLAST = ${last};     // length of yyact
constexpr int YYFLAG = -1000;  // in yypact: the state shifts nothing

/* What a state does whose entry in yydef is -2. The pair (-1, state) is followed by pairs of a token
 * and what to do on it: a rule to reduce by, 0 for an error, -1 to accept. The pair that begins
 * with -2 ends them and is for any other token. */
${yyexca}
/* The states that a shift or a goto leads to. If yypact[state] is YYFLAG, no token is shifted, and
 * none needs to be read. Else yyact[yypact[state] + token] is the state to shift to, provided that
 * the place is inside yyact and yychk of the state found there is the token. */
${yyact}${yypact}
/* Where to go after a reduction to the nonterminal n = yyr1[rule] that has uncovered a state: to
 * yyact[yypgo[n] + state + 1], provided that the place is inside yyact and yychk of the state found
 * there is -n; else to yyact[yypgo[n]]. */
${yypgo}
/* Left side and number of symbols of each rule. */
${yyr1}${yyr2}
/* The symbol by which each state is entered: a token's number, or a nonterminal's negated. */
${yychk}
/* What a state does when it has shifted nothing: a rule to reduce by, 0 for an error, or -2 for
 * what yyexca says. */
${yydef}")

if(CHECK)
  if(NOT EXISTS "${OUTPUT}")
    fail("${OUTPUT} does not exist")
  endif()
  file(WRITE "${work}/made" "${text}")
  execute_process(
    COMMAND "${CMAKE_COMMAND}" -E compare_files "${work}/made" "${OUTPUT}"
    RESULT_VARIABLE different
    OUTPUT_QUIET ERROR_QUIET)
  if(different)
    fail("${OUTPUT} is not what ${SOURCE} gives: run ${script_name} without CHECK")
  endif()
  message(STATUS "${OUTPUT} is what ${SOURCE} gives")
else()
  file(WRITE "${OUTPUT}" "${text}")
  message(STATUS "made ${OUTPUT}")
endif()
file(REMOVE_RECURSE "${work}")
