# cmake -DREPORT=FILE -DSTATES=N -DSHIFTS=N -DREDUCTIONS=N -P CheckAutomaton.cmake
# Fails unless bison's report describes exactly that many states, shift/reduce conflicts and
# reduce/reduce conflicts.

function(expect what expected found)
    if(NOT found EQUAL expected)
        message(FATAL_ERROR "the parser has ${found} ${what}, not ${expected}: see ${REPORT}")
    endif()
endfunction()

# Adds up the numbers of the conflicts of a kind, which the report gives for each state.
function(count_conflicts kind result)
    set(sum 0)
    file(STRINGS "${REPORT}" lines REGEX "^State [0-9]+ conflicts:.* ${kind}")
    foreach(line IN LISTS lines)
        string(REGEX MATCH "([0-9]+) ${kind}" _ "${line}")
        math(EXPR sum "${sum} + ${CMAKE_MATCH_1}")
    endforeach()
    set(${result} ${sum} PARENT_SCOPE)
endfunction()

file(STRINGS "${REPORT}" states REGEX "^State [0-9]+$")
list(LENGTH states states)
expect("states" ${STATES} ${states})
count_conflicts("shift/reduce" shifts)
expect("shift/reduce conflicts" ${SHIFTS} ${shifts})
count_conflicts("reduce/reduce" reductions)
expect("reduce/reduce conflicts" ${REDUCTIONS} ${reductions})
