/* The grammar of parameter files.
 *
 * A file is a list of sections. A section is a header in brackets, then its keyword lines, default
 * lines and inner sections in any order, and the word that ends it:
 *
 *     [Name] {remark}
 *       keyword = 1, 'two', 3.0 {remark}
 *       default(keyword) = 1
 *       [Inner()] EndSect
 *     EndSect
 *
 * The comment after each rule is its name. zongrammar.cmake makes the enumeration `Rule` from them,
 * beside the tables in zongrammar.inc: write one rule a line, name each, and run that script after a
 * change. There are no actions here: the engine (zonengine.cpp) calls one action per rule, by the
 * name of the rule.
 *
 * Lists are left-recursive, because the parse stack has a fixed depth and a long list must not use
 * it up. A place left empty in a list is a rule of its own, as it makes a value too.
 *
 * VALUES is a run of plain values with the commas between them. The lexer offers it only where the
 * tables accept it, so that a long list takes one step. */

/* The codes that the lexer returns. A character in quotes is its own code. */
%token INTEGER     257
%token REAL        258
%token BOOLEAN     259
%token STRING      260
%token IDENTIFIER  261
%token BRACE_TEXT  262
%token ENDSECT     263
%token DEFAULT     264
%token DATETIME    265
%token FILENAME    266
%token VALUES      267

%start parameter_file

%%

parameter_file
    : section_list                              /* kFile */
    ;

section_list
    :                                           /* kListEmpty */
    | section_list section                      /* kListSection */
    ;

section
    : section_body ENDSECT                      /* kSectionEnd */
    ;

section_body
    : remarked_section_header                   /* kBodyHeader */
    | section_body keyword_line                 /* kBodyKeyword */
    | section_body section                      /* kBodySection */
    | section_body default_line                 /* kBodyDefault */
    ;

remarked_section_header
    : section_header                            /* kSectionNoRemark */
    | section_header BRACE_TEXT                 /* kSectionRemark */
    ;

section_header
    : '[' IDENTIFIER ']'                        /* kSectionSingle */
    | '[' multi_name ']'                        /* kSectionMulti */
    ;

keyword_line
    : remarked_keyword_name '='                 /* kKeywordFirstEmpty */
    | remarked_keyword_name '=' item            /* kKeywordFirstItem */
    | keyword_line ',' item                     /* kKeywordNextItem */
    | keyword_line ','                          /* kKeywordNextEmpty */
    | remarked_keyword_name '=' VALUES          /* kKeywordFirstValues */
    | keyword_line ',' VALUES                   /* kKeywordNextValues */
    ;

remarked_keyword_name
    : keyword_name                              /* kKeywordNoRemark */
    | keyword_name BRACE_TEXT                   /* kKeywordRemark */
    ;

keyword_name
    : IDENTIFIER                                /* kKeywordSingle */
    | multi_name                                /* kKeywordMulti */
    | instance_marker                           /* kKeywordUnnamed */
    ;

default_line
    : remarked_default_head '='                 /* kDefaultFirstEmpty */
    | remarked_default_head '=' item            /* kDefaultFirstItem */
    | default_line ','                          /* kDefaultNextEmpty */
    | default_line ',' item                     /* kDefaultNextItem */
    | remarked_default_head '=' VALUES          /* kDefaultFirstValues */
    | default_line ',' VALUES                   /* kDefaultNextValues */
    ;

remarked_default_head
    : default_head                              /* kDefaultNoRemark */
    | default_head BRACE_TEXT                   /* kDefaultRemark */
    ;

default_head
    : DEFAULT '(' IDENTIFIER ')'                /* kDefaultNamed */
    | DEFAULT instance_marker                   /* kDefaultUnnamed */
    ;

instance_marker
    : '(' ')'                                   /* kInstanceMarker */
    ;

multi_name
    : IDENTIFIER instance_marker                /* kMultiName */
    ;

item
    : value                                     /* kItemNoRemark */
    | value BRACE_TEXT                          /* kItemRemark */
    | BRACE_TEXT                                /* kItemOnlyRemark */
    ;

value
    : signed_integer                            /* kValueInteger */
    | BOOLEAN                                   /* kValueBoolean */
    | signed_real                               /* kValueReal */
    | STRING                                    /* kValueString */
    | DATETIME                                  /* kValueDateTime */
    | FILENAME                                  /* kValueFilename */
    | substitution                              /* kValueSubstitution */
    ;

signed_integer
    : INTEGER                                   /* kIntegerNoSign */
    | '+' INTEGER                               /* kIntegerPlus */
    | '-' INTEGER                               /* kIntegerMinus */
    ;

signed_real
    : REAL                                      /* kRealNoSign */
    | '+' REAL                                  /* kRealPlus */
    | '-' REAL                                  /* kRealMinus */
    ;

substitution
    : '%' INTEGER                               /* kSubstitutionNumber */
    | '%' IDENTIFIER                            /* kSubstitutionName */
    ;
