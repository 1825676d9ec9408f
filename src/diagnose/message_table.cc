// What each message says, and what people are told about it.
#include "diagnose/message_table.h"

#include <string.h>
#include <strings.h>

// clang-format off
const MessageRow MessageTable[MESSAGE_COUNT] = { // ORDER MESSAGES
    {UNEXPECTED_TOKEN, "MT101", "unexpected-token", SEVERITY_ERROR,
     "expected %s, found %s",
     "The source cannot go on in this way: something is missing in front of the marked place, or "
     "the marked text does not belong there.",
     "x = 3 4;\n",
     "Look at what is marked and at what stands before it: mostly an operator, a comma, a "
     "parenthesis or a quote is missing. MATLAB refuses the line as well."},
    {UNCLOSED_BRACKET, "MT102", "unclosed-bracket", SEVERITY_ERROR,
     "expected '%s' to close '%s' of line %s, found %s",
     "A parenthesis, bracket or brace is open at a place where its contents cannot go on.",
     "x = f(1, 2;\n",
     "Close it, or separate what stands in it by commas or operators."},
    {UNCLOSED_STRING, "MT103", "unclosed-string", SEVERITY_ERROR,
     "this string is not closed: expected %s in front of the line's end",
     "A string starts with a quote and must end with the same quote on its line.",
     "x = 'it is here;\n",
     "Write the quote. One that belongs to the text is written twice: 'it''s here'. After a blank "
     "inside [ ] or { } a quote opens a string: write a transpose directly after its operand."},
    {UNCLOSED_BLOCK, "MT104", "unclosed-block", SEVERITY_ERROR,
     "'%s' is not closed: expected '%s', found %s",
     "The marked keyword opens a block whose end is missing. Where the indentation shows another "
     "block that may have lost its end, the message names it.",
     "for k = 1:3\n    disp(k);\n",
     "Write the missing end. Functions of a file are either all closed by an end or none."},
    {UNCLOSED_BLOCK_COMMENT, "MT105", "unclosed-block-comment", SEVERITY_ERROR,
     "this block comment is not closed: expected a line with '%}' alone",
     "A block comment lasts from a line with %{ alone to the line with %} alone that belongs to "
     "it. Block comments nest.",
     "%{\nnotes\n",
     "Write %} on a line of its own, without any other text."},
    {STRAY_END, "MT106", "stray-end", SEVERITY_ERROR,
     "'%s' closes nothing: %s",
     "There is an end more than there are blocks.",
     "x = 1;\nend\n",
     "Take the end out, or write what it should close. An end too many further up shows first "
     "here, where the count goes wrong."},
    {STRAY_BRANCH, "MT107", "stray-branch", SEVERITY_ERROR,
     "'%s' stands outside of %s",
     "The keyword is a branch of a statement that is not open here.",
     "x = 1;\nelse\nx = 2;\n",
     "Often an end too many further up has closed the statement already."},
    {INVALID_TARGET, "MT108", "invalid-target", SEVERITY_ERROR,
     "cannot assign to %s: a target is a variable, or an element or a field of one",
     "On the left of = stands something that holds no value: a number, a text, an expression, the "
     "result of a call.",
     "x + 1 = 3;\n",
     "Assign to a variable. To compare, write == instead of =."},
    {DOUBLE_ASSIGNMENT, "MT109", "double-assignment", SEVERITY_ERROR,
     "a second '=' in one statement: assign to one target after the other",
     "MATLAB has no value of an assignment: x = y = 1 is an error there. Octave accepts it.",
     "x = y = 1;\n",
     "Write two statements: y = 1; x = y; or choose the language octave."},
    {ASSIGNMENT_AS_VALUE, "MT110", "assignment-as-value", SEVERITY_ERROR,
     "'=' assigns and cannot stand in an expression: '==' compares",
     "An assignment stands where a value is expected.",
     "if x = 3, disp(x); end\n",
     "To compare, write ==. To assign, write a statement of its own in front."},
    {END_OUTSIDE_INDEX, "MT111", "end-outside-index", SEVERITY_ERROR,
     "'end' as a value stands outside of an index",
     "As a value, end is the last position of the array that is indexed. Here nothing is indexed.",
     "x = [1 end];\n",
     "Name the array: x(end), numel(x). If the end should close a block, a bracket is open in "
     "front of it."},
    {INVALID_CHARACTER, "MT112", "invalid-character", SEVERITY_ERROR,
     "invalid character %s",
     "The character has no meaning outside of strings and comments. Often it comes from a text "
     "program or a web page: curly quotes, long dashes, special blanks.",
     "x = 3 $ 4;\n",
     "Write the plain character that it stands for, or take it out."},
    {INVALID_NUMBER, "MT113", "invalid-number", SEVERITY_ERROR,
     "invalid number %s: %s",
     "A hexadecimal or binary number has no digits, or more than fit into its bits.",
     "x = 0x1FFu8;\n",
     "Write a number that fits, or a wider suffix."},
    {NESTING_TOO_DEEP, "MT114", "nesting-too-deep", SEVERITY_ERROR,
     "brackets and blocks are nested more than %s deep",
     "The translator reads nested brackets, blocks and prefixes up to a fixed depth.",
     nullptr,
     "Give inner parts a name: assign them to variables, or make functions of them."},
    {CLASS_DEFINITION, "MT115", "class-definition", SEVERITY_ERROR,
     "class definitions are not translated",
     "The file defines a class. The host's language has no form for it that the translator knows.",
     "classdef point\nend\n",
     "Turn the class into functions on structs, and translate those."},
    {SUPERCLASS_CALL, "MT116", "superclass-call", SEVERITY_ERROR,
     "a method of a superclass is called by its name alone, not by %s...",
     "In name@class(...), which calls the method of that class, name stands alone.",
     "y = x.f@base(1);\n",
     "Write the method's name in front of the @, and the object among the arguments: f@base(x, 1)."},
    {CLASS_QUERY, "MT117", "class-query", SEVERITY_ERROR,
     "class queries (?name) are not translated",
     "?name gives the description of a class. Classes are not translated.",
     "c = ?double;\n",
     "Take it out, or replace it by what the program needs of it."},
    {SPMD_BLOCK, "MT118", "spmd", SEVERITY_ERROR,
     "spmd blocks are not translated",
     "The statements of an spmd block run on several workers at once. The host's language has no "
     "form for it that the translator knows.",
     "spmd\n    x = 1;\nend\n",
     "Write a loop over the workers' shares."},
    {IMPORT_COMMAND, "MT119", "import", SEVERITY_ERROR,
     "import of packages is not translated",
     "import makes names of a package known without the package's name.",
     "import tools.*\n",
     "Write the full names: tools.name(...)."},
    {STRAY_JUMP, "MT121", "stray-jump", SEVERITY_ERROR,
     "'%s' stands outside of a loop",
     "break leaves a loop, and continue goes on with its next round. No for, while or do is open "
     "here.",
     "if x > 0, break, end\n",
     "To leave a function or a script, write return."},

    {TRY_GAP, "MT201", "try", SEVERITY_GAP,
     "errors are not caught in the host's language",
     "The known forms of the host's language cannot catch an error, and the host gave no form of "
     "its own for try. The statements are translated as if none failed; the handler stands after "
     "them as a comment.",
     "try\n    x = 1;\ncatch\n    x = 2;\nend\n",
     "Give the host a form for try, or test in front for what can fail."},
    {TARGET_VALUES_GAP, "MT202", "values-as-targets", SEVERITY_GAP,
     "several values as targets: their number is known at run time only",
     "A target such as [c{:}] stands for as many targets as c has elements. One of them gets the "
     "results of a call by a branch for each number; there is no such form for several of them, nor "
     "for values that no call gives.",
     "function f(c, d)\n[c{:}, d{:}] = f(1);\nend\n",
     "Write the targets one by one, or with literal bounds: [c{1:2}, d{1:3}]."},
    {DELETION_GAP, "MT203", "deletion", SEVERITY_GAP,
     "a deletion with more than one index that is no colon",
     "x(a, b) = [] deletes rows or columns only where every other index takes all of its "
     "dimension. The translator cannot see that it does.",
     "x = [1 2; 3 4];\nx(1, 1:2) = [];\n",
     "Write a colon for the dimensions that stay whole: x(1, :) = []."},
    {EVAL_GAP, "MT204", "eval", SEVERITY_GAP,
     "'%s' runs a text as a program, which is not translated",
     "The text is MATLAB source that exists at run time only, or one that cannot be read. What a "
     "literal text says is put in its place, and that of one put together where it can be read.",
     "name = 'x';\neval([name ' = 1;']);\n",
     "Write the statements themselves. For names made at run time use fields: s.(name)."},
    {SCRIPT_CALL_GAP, "MT205", "script-call", SEVERITY_GAP,
     "the statements of the script '%s' cannot be put here: %s",
     "The statements of a called script are translated in the place of its call. That has no end "
     "where scripts call each other in a circle, and grows too much where they call each other "
     "very often.",
     nullptr,
     "Make a function of the script."},
    {OUTSIDE_GAP, "MT207", "outside-statement", SEVERITY_GAP,
     "a file whose function is called does not run its statements outside of functions",
     "The file begins with a function that callers get by the file's name. MATLAB refuses such a "
     "file with statements outside of its functions, and Octave runs them for nobody. Often an end "
     "too many closes a function too early.",
     nullptr,
     "Put the statements into a function, or into a script of another name."},
    {SUPERCLASS_GAP, "MT208", "superclass-method", SEVERITY_GAP,
     "the method '%s' of the superclass '%s' is found nowhere",
     "name@class(...) calls the method of that class. There is no file @class/name.m beside the "
     "source or on the search path. Methods in a class definition are not translated.",
     "y = f@base(x);\n",
     "Add the folder that @class lies in to the search path, or call a function by its name."},

    {FIELD_VALUES, "MT301", "field-values", SEVERITY_NOTE,
     "'%s' is read as the values of the field in all elements",
     "A field of an array of structs is a list with a value of each element.",
     "s(1).f = 1;\ns(2).f = 2;\nx = [s.f];\n",
     "Nothing, if it is an array of structs. If it is a single struct, leave the brackets out."},
    {TEXT_COMPARISON, "MT302", "text-comparison", SEVERITY_WARNING,
     "'%s' compares texts character by character",
     "Texts between single quotes are arrays of characters in MATLAB: == compares them "
     "element by element and fails for different lengths. The host compares whole texts.",
     "x = 'a';\ny = x == 'abc';\n",
     "Write strcmp(a, b)."},
    {ANS_VALUE, "MT303", "ans", SEVERITY_WARNING,
     "'ans' is not set by the translated statements",
     "MATLAB keeps the value of an expression that nothing takes in ans. The host does not.",
     "3 + 4;\nx = ans;\n",
     "Assign the value to a variable."},
    {EXIST_VARIABLE, "MT304", "exist-variable", SEVERITY_WARNING,
     "whether the variable '%s' exists is not known in the host's language",
     "exist of a variable that is no parameter asks whether it has been assigned so far.",
     "if exist('x', 'var'), y = 1; else, x = 2; end\n",
     "Give the variable a value first, and compare with that."},
    {CELL_CASE, "MT305", "cell-case", SEVERITY_NOTE,
     "this case is compared as one value; a cell would be compared element by element",
     "In MATLAB the value of a case may be a cell, which matches where one of its elements does. "
     "The translator sees the elements only when they are written in braces.",
     "x = 1;\nc = {1, 2};\nswitch x, case c, x = 2; end\n",
     "Write the elements in braces, or compare with any(...) in an if."},
    {ARGUMENT_CHECKS, "MT306", "argument-checks", SEVERITY_NOTE,
     "sizes, classes and validators of arguments are not checked",
     "Of an arguments block the default values are translated, the checks are not.",
     "function y = f(x)\narguments\n    x (1,1) double\nend\ny = x;\nend\n",
     "Nothing, if the callers keep to them. Otherwise test in the body."},
    {LOAD_VARIABLES, "MT307", "load-variables", SEVERITY_WARNING,
     "'%s' creates variables that the translator cannot see",
     "A load without a target makes a variable of each name in the file. The translated names "
     "are taken for functions.",
     "load data.mat\n",
     "Write s = load('data.mat'), and s.name for each variable."},
    {UNWIND_PROTECT, "MT308", "unwind-protect", SEVERITY_NOTE,
     "the cleanup runs after the body, but not after an error",
     "The host's language has no known form for statements that run in any case.",
     "unwind_protect\n    x = 1;\nunwind_protect_cleanup\n    x = 2;\nend_unwind_protect\n",
     "Nothing, if the body cannot fail."},
    {RENAMED_FIELD, "MT309", "renamed-field", SEVERITY_NOTE,
     "the field '%s' is a word of the host's language and is written '%s'",
     "The host's language cannot have a field of this name. All its uses in this run are renamed.",
     "s.end = 1;\n",
     "Rename the field where other programs read it, too."},
    {FOREIGN_FUNCTION, "MT310", "foreign-function", SEVERITY_WARNING,
     "'%s' is found nowhere, and in the translation calls the function of that name in %s",
     "In MATLAB a function after the first one of a file is known in that file alone. In the "
     "host's language all procedures of a run share their names.",
     nullptr,
     "Rename the function in the other file."},
    {SHARED_VARIABLE, "MT311", "shared-variable", SEVERITY_NOTE,
     "'%s' belongs to the function around this one, which must see the new value",
     "A nested function and the one around it share the variables that both name. The translation "
     "declares them in the outer procedure alone. That is right where the host's procedures see the "
     "variables around them, and assign them.",
     "function y = f(x)\nn = 0;\nadd(x);\ny = n;\n    function add(k)\n        n = n + k;\n    "
     "end\nend\n",
     "Nothing, if the host's procedures do. Otherwise pass the value as an argument, and return it."},
    {REPLACED_ERROR, "MT312", "replaced-error", SEVERITY_NOTE,
     "an error in this try keeps its own text: the handler, which only raises another, is left out",
     "The known forms of the host's language cannot catch an error. Here that makes little "
     "difference: with the handler or without it, the program ends with an error.",
     "function y = f(x)\ntry\n    y = x + 1;\ncatch\n    error('no number');\nend\nend\n",
     "Nothing, if the text of the error does not matter. Otherwise test in front for what can fail."},
    {GLOBAL_START, "MT313", "global-start", SEVERITY_NOTE,
     "the global '%s' is empty in MATLAB before something assigns it; here it has no value then",
     "MATLAB starts a global variable as []. The translation declares it, and leaves its value to "
     "the statements that assign it, as it may have one already.",
     "function f(x)\nglobal total\nif isempty(total), total = 0; end\ntotal = total + x;\nend\n",
     "Assign it once before the first call: total = [];"},
    {PACKAGE_MEMBER, "MT314", "package-member", SEVERITY_WARNING,
     "nothing assigns '%s': '%s.%s' is taken for a member of a package or class",
     "A name with a field after it that is no variable of the function means a package, a class or "
     "a Java object in MATLAB. The host is asked for it by the whole name.",
     "m = containers.Map();\n",
     "If it is a variable, assign it or pass it as an argument. Otherwise give the host a form for "
     "it."},
    {CLASS_DECIDES, "MT315", "class-decides", SEVERITY_WARNING,
     "'%s' may mean a method of the class '%s': the class of its arguments decides at run time",
     "A folder @class has a method of this name, and MATLAB calls it where an argument is an object "
     "of the class. Here the text does not tell whether one is. The translation calls the function "
     "of that name, or the host's operator, and never the method. This is said once for each name "
     "in a file, and of names that the host answers and of operators only in the files of the class.",
     nullptr,
     "Nothing, if no argument is an object. Otherwise call the method by its own name, which is "
     "that of the class and the method (class_method), in the translation."},
    {COLON_TEXT, "MT316", "colon-text", SEVERITY_WARNING,
     "a text ':' in this index would be no colon",
     "MATLAB takes the text ':' in an index for a colon. In the translation only one that stands in "
     "the index itself is. Here the index is a text, or comes from a cell, and the function has "
     "such a text.",
     "x = magic(3);\nc = {':', 2};\ny = x(c{:});\n",
     "Write the colon into the index, or positions in place of the text: 1:size(x, 1)."},
    {CLEAR_COMMAND, "MT318", "clear", SEVERITY_WARNING,
     "which variables this '%s' takes away is not known",
     "clear makes the variables that it names empty. Here they are named by patterns or at run time, "
     "stand in other functions, or are too many. The host gets the call.",
     "x(1) = 2;\nclear -regexp ^x\nx(2) = 3;\n",
     "Name the variables one by one: clear x y."},
    {COMPOSED_TEXT, "MT319", "composed-text", SEVERITY_WARNING,
     "this part of the program in a text is taken for %s",
     "A part of the text that eval gets is known at run time only. Where it stands it is mostly one "
     "thing alone, as the name of a field, and the text is translated with it. A part that holds more "
     "of the program would mean something else.",
     "s.a = 1;\nname = 'a';\neval(['s.' name ' = 2;']);\n",
     "Nothing, if it is always of that kind. Better still write what the text says: s.(name) = 2;"},
    {CELL_GIVEN, "MT320", "cell-given", SEVERITY_WARNING,
     "a cell is given here, and '%s' is taken to want the elements of an array",
     "In MATLAB x(k) of a cell is a cell. Where a function does not show whether its parameter is a "
     "cell, because it neither uses braces nor asks iscell, x(k) is translated as the element. Here "
     "the function is given a cell.",
     "h(@second);\nx = second({1, 2});\n\nfunction y = second(values)\ny = values(2);\nend\n",
     "Write x{k} in the function where the element is meant, else x(k:k)."},
    {FUNCTION_TEXT, "MT321", "function-text", SEVERITY_WARNING,
     "the text that '%s' gives of a function is the host's, not MATLAB's",
     "MATLAB keeps the text of an anonymous function, and the names of others. The translation has "
     "procedures in their place: their text is in the host's language, if the host has one at all.",
     "f = @(x) x.^2;\ndisp(func2str(f));\n",
     "Keep the text in a variable of its own, next to the function: t = '@(x) x.^2';"},

    {UNKNOWN_FUNCTION, "MT401", "unknown-function", SEVERITY_WARNING,
     "the function '%s' is found %s",
     "The host knows no translation of the name, and no file of that name lies beside the source "
     "or on the search path. A function in the folder of a class (@NAME) is called only with a "
     "value of the class, which cannot be seen.",
     "x = nowhere_to_be_found(1);\n",
     "Add the folder of its file to the search path, or give the host a form for it."},
    {UNASSIGNED_NAME, "MT402", "unassigned-name", SEVERITY_WARNING,
     "nothing assigns '%s': %s",
     "The name is read like a variable and no statement of the function gives it a value. A "
     "command further up may create it at run time.",
     "syms a\nx = a(1, :);\n",
     "Assign it. What load creates is assigned so: s = load('data.mat'); a = s.a;"},
    {UNASSIGNED_OUTPUT, "MT403", "unassigned-output", SEVERITY_WARNING,
     "nothing assigns the output '%s'",
     "The function returns a value that none of its statements sets.",
     "function [a, b] = f(x)\na = x;\nend\n",
     "Assign it, or take it out of the header."},
    {SHADOWED_FILE, "MT404", "shadowed-file", SEVERITY_WARNING,
     "'%s' is read; another file of that name on the search path is not: %s",
     "Several folders of the search path have a file of this name. The first one counts.",
     nullptr,
     "Check that the right one comes first."},
    {DIFFERENT_NAMES, "MT405", "different-names", SEVERITY_NOTE,
     "the function '%s' is called by the name of its file, '%s'",
     "MATLAB calls the first function of a file by the file's name, whatever its header says.",
     nullptr,
     "Give both the same name."},
    {SCRIPT_AS_FUNCTION, "MT406", "script-as-function", SEVERITY_WARNING,
     "the file of '%s' is a script: it takes no arguments and gives no value",
     "MATLAB refuses the call at run time. The translation leaves it to the host.",
     nullptr,
     "Call the script by its name alone, or make a function of it."},
};
// clang-format on

const MessageRow *find_message(const char *code_or_name) {
    for (const MessageRow &row : MessageTable) {
        if (strcasecmp(row.code, code_or_name) == 0) return &row;
        if (strcasecmp(row.name, code_or_name) == 0) return &row;
    }
    return nullptr;
}

uint32_t operand_count(const MessageRow *row) {
    uint32_t count = 0;
    for (const char *at = row->form; (at = strstr(at, "%s")); at += 2) count++;
    return count;
}

const char *severity_name(MessageSeverity severity) {
    static const char *const names[] = {"error", "gap", "warning", "note"};
    return names[severity];
}
