# Fails unless the library exports every expected Container instantiation and nothing from
# the library's internal namespaces. Run by CTest with LIBRARY, NM and EXPECTED set.
execute_process(COMMAND ${NM} -DC --defined-only ${LIBRARY}
    OUTPUT_VARIABLE symbols RESULT_VARIABLE failed)
if(failed)
    message(FATAL_ERROR "${NM} could not read ${LIBRARY}")
endif()

file(STRINGS ${EXPECTED} valueTypes REGEX "^[^#]")
set(missing "")
foreach(valueType IN LISTS valueTypes)
    # The demangler puts a space between closing brackets of nested templates.
    string(FIND "${symbols}" "veksg::Container<int, ${valueType}>::resizeToFitKey(int, " at)
    string(FIND "${symbols}" "veksg::Container<int, ${valueType} >::resizeToFitKey(int, " spaced)
    if(at EQUAL -1 AND spaced EQUAL -1)
        list(APPEND missing "${valueType}")
    endif()
endforeach()
list(LENGTH valueTypes expected)
# The library's tables use exactly these 47 value types; a shorter list would check less.
if(NOT expected EQUAL 47)
    message(FATAL_ERROR "${EXPECTED} lists ${expected} value types, not the library's 47")
endif()
if(missing)
    list(JOIN missing "\n  " missingText)
    message(FATAL_ERROR "Container instantiations not exported:\n  ${missingText}")
endif()

string(REGEX MATCHALL "[^\n]*(veksg::detail|vek2d::detail|anonymous namespace)[^\n]*" internals "${symbols}")
if(internals)
    list(JOIN internals "\n  " internalText)
    message(FATAL_ERROR "Internal helpers exported:\n  ${internalText}")
endif()
message(STATUS "${expected} Container instantiations exported, no internal helpers")
