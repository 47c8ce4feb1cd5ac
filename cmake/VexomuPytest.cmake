# What a sanitizer writes at the end of the process must not be caught with the output of a test: hence --capture=sys.
# vexomu_pytest(<file> [LABELS <labels>] [ENVIRONMENT <changes>]): the tests of one Python file.
function(vexomu_pytest file)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LABELS;ENVIRONMENT")
    file(RELATIVE_PATH name "${PROJECT_SOURCE_DIR}/tests" "${file}")
    cmake_path(REMOVE_EXTENSION name)
    add_test(NAME "${name}" COMMAND "${Python3_EXECUTABLE}" -m pytest
        -q -p no:cacheprovider --capture=sys "${file}")
    set_tests_properties("${name}" PROPERTIES
        TIMEOUT 240
        LABELS "${arg_LABELS}"
        ENVIRONMENT "PYTHONPATH=${VEXOMU_PYTHON_DIR};PYTHONDONTWRITEBYTECODE=1;PYTHONHASHSEED=0"
        ENVIRONMENT_MODIFICATION "${arg_ENVIRONMENT}")
endfunction()
