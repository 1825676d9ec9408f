/* Grammar: MATLAB programs, translated while they are parsed.
 *
 * The actions call one builder or two: expressions become records with finished host text
 * (translate/), statements become records (emit/) that are written out when a function definition
 * or the script is complete (define_function, define_script).
 *
 * When an action runs matters as much as what it does. A state whose only action is a reduction
 * reduces before the next token is read (the default of lr.default-reduction, which must stay), so
 * - an opening mark is reduced before the scanner reads what stands inside its bracket;
 * - a closing mark is reduced when the closing bracket has been read, but not what follows it;
 * - fixinput, called where an operand ends, sees the raw input after the operand.
 *
 * Everything that a value points to is tracked by the run: discarded values need no destructor. */

%define api.value.type {SemanticValue}
%define api.token.prefix {TOKEN_}

%code top {
#include "lexer/error_reporter.h"
#include "emit/comments.h"
#include "emit/globals.h"
#include "emit/statements.h"
#include "lexer/brackets.h"
#include "lexer/scanner.h"
#include "lexer/semantic_value.h"
#include "lexer/tokens.h"
#include "parser/parser.h"
#include "parser/phrases.h"
#include "parser/stacks.h"
#include "translate/calls.h"
#include "translate/cells.h"
#include "translate/fields.h"
#include "translate/literals.h"
#include "translate/matrices.h"
#include "translate/matrices.h"
#include "translate/operators.h"

/* The skeleton's own stacks hold the entry that it begins with. */
#define YYINITDEPTH 1
#define YYMAXDEPTH MOST_ENTRIES
#define yyoverflow(message, states, state_bytes, values, value_bytes, capacity) \
    if (!grow_stacks(states, values, yysize, capacity)) YYNOMEM
/* What bison generates stands after yyparse, at the end of this file. */
#define yyparse parse_input
}

/* ORDER TOKENS: names and numbers of lexer/tokens.h. */
%token END_OF_INPUT  0  "end of input"
%token LEXERROR      258
%token LHS_LBRACKET  259 "[ of targets"
%token LHS_RBRACKET  260 "] of targets"
%token FOR           261 "for"
%token END           262 "end"
%token IF            263 "if"
%token ELSEIF        264 "elseif"
%token ELSE          265 "else"
%token SWITCH        266 "switch"
%token CASE          267 "case"
%token OTHERWISE     268 "otherwise"
%token GLOBAL        269 "global"
%token WHILE         270 "while"
%token FUNCTION      271 "function"
%token RETURN        272 "return"
%token <text> STRING      273
%token <text> IDENTIFIER  274
%token <text> INTEGER     275
%token <text> REAL        276
%token <text> IMAGINARY   277
%token <text> COMMENT     278
%token NEWLINE       279
%token OR            280 "|"
%token AND           281 "&"
%token NE            282 "~="
%token EQ            283 "=="
%token GE            284 ">="
%token GT            285 ">"
%token LE            286 "<="
%token LT            287 "<"
%token DOT_BACKSLASH 288 ".\\"
%token DOT_SLASH     289 "./"
%token DOT_STAR      290 ".*"
%token NOT           293 "~"
%token TRANSPOSE     294 "'"
%token DOT_TRANSPOSE 295 ".'"
%token CARET         296 "^"
%token DOT_CARET     297 ".^"

/* Loosest first; operators of a level group to the left. */
%left "|" "&"
%left "<" "<=" ">" ">=" "==" "~="
%left ':'
%left '+' '-'
%left '*' '/' '\\' ".*" "./" ".\\"
%precedence PREFIX "~"
%left "^" ".^" "'" ".'"

/* What precedence does not settle, the shift does, and of two reductions the first in this file:
 * - separators, trailing line ends and a function's body reach as far as they can;
 * - a name at the start of a statement goes on as a command, a call or an index, and + or - go on
 *   with the statement's expression, rather than ending it;
 * - a { after case opens its list of values, not a cell literal;
 * - a range goes on with a further colon;
 * - at the end of the input after a function there is no empty script (the one conflict between
 *   two reductions).
 * The build checks that these 105 and 1 conflicts are all, and that the automaton has the 273
 * states that the stack limit below is measured in. */

%type <stat> input script_body statement_list statement command_statement function_body
%type <stat> for_statement for_clause if_statement if_clause else_chain
%type <stat> switch_statement switch_clause case_chain while_statement while_clause
%type <stat> global_statement return_statement block block_statements function_definition
%type <list> opt_separators separators line_ends case_values index_list more_targets
%type <list> output_list parameter_list name_list
%type <words> command_words
%type <names> global_names
%type <proc> function_header
%type <expr> expression reference plain_name field_name assignment
%type <range> range_triple
%type <matrix> matrix cell_literal matrix_rows single_target target_list
%type <vector> matrix_row row_prefix
%type <delimiter> paren_open_mark brace_open_mark matrix_open_mark target_open_mark

%start input

%%

/*------------------------------------------------------------------------.
| Programs: a script, or functions and perhaps a script after the last.   |
`------------------------------------------------------------------------*/

input
  : script_body                { InputSequence = $$ = $1; }
  | function_definition        { InputSequence = $$ = $1; }
  | function_definition input  { InputSequence = $$ = $1; }
  | error_input                { InputSequence = nullptr; }
  ;

script_body
  : opt_separators                 { $$ = define_script(nullptr); }
  | opt_separators statement_list  { $$ = define_script($2); }
  ;

/*-------------------------------------------------------------------------.
| Separators. Their value is the list of the comments after the last ','  |
| or ';'.                                                                  |
`-------------------------------------------------------------------------*/

opt_separators
  : %empty      { $$ = nullptr; }
  | separators
  ;

separators
  : delimiters            { $$ = nullptr; }
  | line_ends
  | delimiters line_ends  { $$ = $2; }
  ;

delimiters
  : delimiter
  | delimiters delimiter
  ;

delimiter
  : ','
  | ';'
  | line_ends ','  {}
  | line_ends ';'  {}
  ;

line_ends
  : NEWLINE            { $$ = start_line_ends(); }
  | line_ends NEWLINE
  | COMMENT            { $$ = start_comments($1); }
  | line_ends COMMENT  { $$ = add_comment($1, $2); }
  ;

/*--------------------------------------------------------------------.
| Statements. At the top of a script or function the last one needs   |
| no terminator; in a block every one does.                           |
`--------------------------------------------------------------------*/

statement_list
  : statement opt_separators
  | statement separators statement_list  { $$ = link_statements($1, $2, $3); }
  ;

statement
  : command_statement
  | expression  { $$ = new_expression_stat($1); }
  | assignment  { $$ = new_expression_stat($1); }
  | for_statement
  | if_statement
  | switch_statement
  | global_statement
  | while_statement
  | return_statement
  ;

/* hold on: a name and bare words are a call with the words as strings. */
command_statement
  : plain_name command_words  { $$ = new_command_stat($1, $2.first); }
  ;

command_words
  : STRING                        { $$ = start_words($1); }
  | IDENTIFIER                    { $$ = start_words($1); }
  | "case"                        { $$ = start_words("case"); }
  | "global"                      { $$ = start_words("global"); }
  | command_words STRING          { $$ = add_word($1, new_node(EXPR_STRING, $2)); }
  | command_words IDENTIFIER      { $$ = add_word($1, new_node(EXPR_STRING, $2)); }
  | command_words '.' IDENTIFIER  { $$ = join_word($1, $3); }
  | command_words IDENTIFIER[name] '.' IDENTIFIER[extension]
      { $$ = add_word($1, new_dotstring($name, $extension)); }
  | command_words "case"          { $$ = add_word($1, new_node(EXPR_STRING, "case")); }
  ;

/*--------------.
| Expressions.  |
`--------------*/

expression
  : INTEGER    { $$ = new_node(EXPR_INTEGER, $1); }
  | REAL       { fixinput(REAL); $$ = new_node(EXPR_REAL, $1); }
  | IMAGINARY  { fixinput(IMAGINARY); $$ = new_node(EXPR_IMAGINARY, $1); }
  | STRING     { $$ = new_node(EXPR_STRING, $1); fixinput(STRING); }
  | '(' paren_open_mark expression[inner] close_mark ')'  { fixinput(')'); $$ = $inner; }
  | reference
  | matrix        { $$ = new_matrix_node($1, MATRIX_LITERAL); }
  | cell_literal  { $$ = new_matrix_node($1, CELL_LITERAL); }
  | expression ".^" expression  { $$ = new_operator2(OP_DOT_POWER, $1, $3); }
  | expression "^" expression   { $$ = new_operator2(OP_POWER, $1, $3); }
  | expression ".'"  { fixinput(DOT_TRANSPOSE); $$ = new_operator1(OP_DOT_TRANSPOSE, $1); }
  | expression "'"   { fixinput(TRANSPOSE); $$ = new_operator1(OP_TRANSPOSE, $1); }
  | "~" expression               { $$ = new_operator1(OP_NOT, $2); }
  | '+' expression %prec PREFIX  { $$ = new_operator1(OP_UNARY_PLUS, $2); }
  | '-' expression %prec PREFIX  { $$ = new_operator1(OP_UNARY_MINUS, $2); }
  | expression '*' expression    { $$ = new_operator2(OP_TIMES, $1, $3); }
  | expression '/' expression    { $$ = new_operator2(OP_DIVIDE, $1, $3); }
  | expression '\\' expression   { $$ = new_operator2(OP_LEFT_DIVIDE, $1, $3); }
  | expression ".*" expression   { $$ = new_operator2(OP_DOT_TIMES, $1, $3); }
  | expression "./" expression   { $$ = new_operator2(OP_DOT_DIVIDE, $1, $3); }
  | expression ".\\" expression  { $$ = new_operator2(OP_DOT_LEFT_DIVIDE, $1, $3); }
  | expression '+' expression    { $$ = new_operator2(OP_PLUS, $1, $3); }
  | expression '-' expression    { $$ = new_operator2(OP_MINUS, $1, $3); }
  | range_triple                 { $$ = new_range($1); }
  | expression "<" expression    { $$ = new_operator2(OP_LT, $1, $3); }
  | expression "<=" expression   { $$ = new_operator2(OP_LE, $1, $3); }
  | expression ">" expression    { $$ = new_operator2(OP_GT, $1, $3); }
  | expression ">=" expression   { $$ = new_operator2(OP_GE, $1, $3); }
  | expression "==" expression   { $$ = new_operator2(OP_EQ, $1, $3); }
  | expression "~=" expression   { $$ = new_operator2(OP_NE, $1, $3); }
  | expression "&" expression    { $$ = new_operator2(OP_AND, $1, $3); }
  | expression "|" expression    { $$ = new_operator2(OP_OR, $1, $3); }
  ;

/*-----------------------------------------------------------------------.
| Marks keep the bracket context. An opening mark holds the delimiter    |
| outside; a closing mark finds it below its neighbour ($-1), as its     |
| neighbour where the brackets are empty ($0), or below several targets  |
| ($-3: the first target, a comma and the others lie between).           |
`-----------------------------------------------------------------------*/

paren_open_mark:     %empty { $$ = open_bracket(IN_PARENTHESES); };
brace_open_mark:     %empty { $$ = open_bracket(IN_BRACES); };
matrix_open_mark:    %empty { $$ = open_bracket(IN_LITERAL); };
target_open_mark:    %empty { $$ = open_bracket(IN_TARGETS); };
close_mark:          %empty { close_bracket($<delimiter>-1); };
empty_close_mark:    %empty { close_bracket($<delimiter>0); };
targets_close_mark:  %empty { close_bracket($<delimiter>-3); };

/*-----------------------------------------------------------------------.
| References: a name or a field name, and at most one argument list.     |
`-----------------------------------------------------------------------*/

reference
  : plain_name
  | plain_name[callee] '(' paren_open_mark index_list[args] close_mark ')'
      { fixinput(')'); $$ = new_call($callee, $args); }
  | plain_name[callee] '(' paren_open_mark empty_close_mark ')'
      { fixinput(')'); $$ = new_function_node($callee, nullptr); }
  | plain_name[callee] '{' brace_open_mark index_list[args] close_mark '}'
      { fixinput('}'); $$ = new_brace_index($callee, $args); }
  | plain_name[callee] '{' brace_open_mark empty_close_mark '}'
      { fixinput('}'); $$ = new_cell_node($callee, nullptr); }
  ;

plain_name
  : IDENTIFIER  { $$ = new_node(EXPR_NAME, $1); }
  | field_name
  ;

field_name
  : IDENTIFIER[name] '.' IDENTIFIER[field]  { $$ = new_field_name($name, $field); }
  ;

/* A lone colon and end are whole arguments. */
index_list
  : ':'                        { $$ = alloc_vExpr(new_node(EXPR_RANGE, nullptr)); }
  | expression                 { $$ = alloc_vExpr($1); }
  | "end"                      { $$ = alloc_vExpr(last_position()); }
  | ':' ',' index_list         { $$ = prepend_vExpr(new_node(EXPR_RANGE, nullptr), $3); }
  | "end" ',' index_list       { $$ = prepend_vExpr(last_position(), $3); }
  | expression ',' index_list  { $$ = prepend_vExpr($1, $3); }
  ;

/*----------------------------------------------------------------------.
| Ranges. Whether the second operand is the step or the stop shows in   |
| the look-ahead, which has been read when such a rule is reduced.      |
`----------------------------------------------------------------------*/

range_triple
  : expression[start] ':' expression[next]   { $$ = start_range($start, $next, yychar == ':'); }
  | expression[start] ':' "end"              { $$ = start_open_range($start); }
  | range_triple[inner] ':' expression[next] { $$ = extend_range($inner, $next, yychar == ':'); }
  | range_triple[inner] ':' "end"            { $$ = $inner; $$.stop = nullptr; }
  ;

/*--------------------------------------------------------------------------.
| Matrix and cell literals. The scanner's input fixer supplies the commas   |
| between elements; rows end at ';', line ends and comments.                |
`--------------------------------------------------------------------------*/

matrix
  : '[' matrix_open_mark matrix_rows[rows] close_mark ']'
      { fixinput(']'); $$ = build_mMatrix($rows->count, $rows->items); }
  ;

cell_literal
  : '{' matrix_open_mark matrix_rows[rows] close_mark '}'
      { fixinput('}'); $$ = build_mMatrix($rows->count, $rows->items); }
  ;

matrix_rows
  : %empty                          { $$ = alloc_mMatrix(0); }
  | matrix_row                      { $$ = append_to_matrix(alloc_mMatrix(1), $1); }
  | matrix_rows ';'
  | matrix_rows ';' matrix_row      { $$ = append_to_matrix($1, $3); }
  | matrix_rows NEWLINE
  | matrix_rows COMMENT
  | matrix_rows NEWLINE matrix_row  { $$ = append_to_matrix($1, $3); }
  | matrix_rows COMMENT matrix_row  { $$ = append_to_matrix($1, $3); }
  ;

matrix_row
  : expression             { $$ = append_to_vector(alloc_mVector(1), $1); }
  | row_prefix
  | row_prefix expression  { $$ = append_to_vector($1, $2); }
  ;

row_prefix
  : expression ','             { $$ = append_to_vector(alloc_mVector(1), $1); }
  | row_prefix expression ','  { $$ = append_to_vector($1, $2); }
  ;

/*--------------.
| Assignments.  |
`--------------*/

assignment
  : reference[target] '=' expression[value]
      { $$ = new_operator2(OP_ASSIGN, $target, $value); }
  | single_target[target] '=' expression[value]
      { $$ = new_operator2(OP_ASSIGN, new_matrix_node($target, MATRIX_LITERAL), $value); }
  | target_list[targets] '=' reference[value]
      { $$ = new_operator2(OP_ASSIGN, new_matrix_node($targets, MATRIX_LITERAL), $value); }
  ;

single_target
  : "[ of targets" target_open_mark reference close_mark "] of targets"
      { $$ = target_row($reference, nullptr); }
  ;

target_list
  : "[ of targets" target_open_mark reference ',' more_targets targets_close_mark "] of targets"
      { $$ = target_row($reference, $more_targets); free_vExpr($more_targets); }
  ;

more_targets
  : reference                   { $$ = alloc_vExpr($1); }
  | reference ',' more_targets  { $$ = prepend_vExpr($1, $3); }
  ;

/*---------------------.
| Control statements.  |
`---------------------*/

for_statement
  : "for" for_clause "end"  { $$ = $2; }
  ;

for_clause
  : plain_name[variable] '=' expression[range] block
      { $$ = new_for_stat($variable, $range, $block); }
  ;

if_statement
  : "if" if_clause "end"  { $$ = $2; }
  ;

if_clause
  : expression[condition] block else_chain[rest]
      { $$ = new_if_stat($condition, $block, $rest, IF_HEAD); }
  ;

else_chain
  : %empty        { $$ = nullptr; }
  | "else" block  { $$ = $2; }
  | "elseif" expression[condition] block else_chain[rest]
      { $$ = new_if_stat($condition, $block, $rest, ELSEIF_BRANCH); }
  ;

switch_statement
  : "switch" switch_clause "end"  { $$ = $2; }
  ;

switch_clause
  : expression[subject] separators case_chain[clauses]
      { $$ = new_switch_stat($subject, $separators, $clauses); }
  ;

case_chain
  : %empty             { $$ = nullptr; }
  | "otherwise" block  { $$ = $2; }
  | "case" expression[value] block case_chain[rest]
      { $$ = new_case_clause(alloc_vExpr($value), $block, $rest); }
  | "case" '{' case_values[values] '}' block case_chain[rest]
      { $$ = new_case_clause($values, $block, $rest); }
  ;

case_values
  : expression ',' case_values  { $$ = prepend_vExpr($1, $3); }
  | expression                  { $$ = alloc_vExpr($1); }
  ;

global_statement
  : "global" global_names
      { $$ = alloc_mStat(STAT_GLOBAL); register_global($2.names, $2.count); }
  ;

global_names
  : IDENTIFIER               { $$ = start_names($1); }
  | global_names IDENTIFIER  { $$ = add_global($1, $2); }
  ;

while_statement
  : "while" while_clause "end"  { $$ = $2; }
  ;

while_clause
  : expression[condition] block  { $$ = new_while_stat($condition, $block); }
  ;

return_statement
  : "return"  { $$ = new_return_stat(); }
  ;

block
  : opt_separators                   { $$ = nullptr; }
  | opt_separators block_statements  { $$ = $2; }
  ;

block_statements
  : statement separators
  | statement separators block_statements  { $$ = link_statements($1, $2, $3); }
  ;

/*-------------------------------------------------------------------------.
| Functions. A body ends with its own end, at the next function or at the  |
| end of the input; the procedure is written when the body is complete.    |
`-------------------------------------------------------------------------*/

function_definition
  : line_ends function_header function_body
      { $$ = define_function($function_header, comment_body($function_body, $line_ends)); }
  | function_header function_body
      { $$ = define_function($function_header, $function_body); }
  ;

function_header
  : "function" output_list '=' IDENTIFIER[name] parameter_list
      { $$ = alloc_mProc($name, $output_list, $parameter_list); }
  | "function" IDENTIFIER[name] parameter_list
      { $$ = alloc_mProc($name, nullptr, $parameter_list); }
  ;

output_list
  : plain_name                                 { $$ = alloc_vExpr($1); }
  | "[ of targets" name_list "] of targets"    { $$ = $2; }
  ;

parameter_list
  : %empty             { $$ = nullptr; }
  | '(' ')'            { $$ = nullptr; }
  | '(' name_list ')'  { $$ = $2; }
  | '{' name_list '}'  { $$ = $2; }
  ;

name_list
  : plain_name ',' name_list  { $$ = prepend_vExpr($1, $3); }
  | plain_name                { $$ = alloc_vExpr($1); }
  | "end" ',' name_list       { $$ = prepend_vExpr(last_position(), $3); }
  | "end"                     { $$ = alloc_vExpr(last_position()); }
  ;

function_body
  : separators statement_list                  { $$ = comment_body($2, $1); }
  | separators statement_list "end" line_ends  { $$ = comment_body($2, $1); }
  | opt_separators                             { $$ = nullptr; }
  ;

/*---------.
| Errors.  |
`---------*/

/* The first error ends the run unless the host's error operation returns; then the rest of the
 * input is skipped, and the functions before it stay written. */
error_input
  : LEXERROR  { yyerror("lexical error."); }
  | error
  ;

%%

#undef yyparse

int yyparse() {
    yynerrs = 0;  // not reset by the skeleton
    void *outer = begin_stacks();
    int result = parse_input();
    end_stacks(outer);
    // The skeleton takes the end of the input for consumed when it accepts.
    if (result == 0) yychar = END_OF_INPUT;
    return result;
}
