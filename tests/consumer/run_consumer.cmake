# SPDX-License-Identifier: MIT
# Installs the library from each of BUILD_DIRS into one fresh prefix, then, for each
# of QT_MAJOR_VERSIONS, configures, builds and runs the consumer project against
# that prefix, as a host project would. Given a Qt 5 and a Qt 6 build, it checks
# that both packages install side by side and each still works.
file(REMOVE_RECURSE "${WORK_DIR}")
set(prefix "${WORK_DIR}/prefix")
foreach(build_dir IN LISTS BUILD_DIRS)
    execute_process(COMMAND "${CMAKE_COMMAND}" --install "${build_dir}" --prefix "${prefix}"
        RESULT_VARIABLE rc)
    if(rc)
        message(FATAL_ERROR "installing ${build_dir} failed: ${rc}")
    endif()
endforeach()
foreach(major IN LISTS QT_MAJOR_VERSIONS)
    set(build "${WORK_DIR}/build-qt${major}")
    execute_process(COMMAND "${CMAKE_COMMAND}" -S "${SOURCE_DIR}" -B "${build}"
        "-DCMAKE_PREFIX_PATH=${prefix}" "-DKELTAB_QT_MAJOR_VERSION=${major}" RESULT_VARIABLE rc)
    if(rc)
        message(FATAL_ERROR "configuring the Qt ${major} consumer failed: ${rc}")
    endif()
    execute_process(COMMAND "${CMAKE_COMMAND}" --build "${build}" RESULT_VARIABLE rc)
    if(rc)
        message(FATAL_ERROR "building the Qt ${major} consumer failed: ${rc}")
    endif()
    execute_process(COMMAND "${build}/consumer" RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
    message("${out}${err}")
    if(rc)
        message(FATAL_ERROR "the Qt ${major} consumer failed: ${rc}")
    endif()
    if(NOT out MATCHES "consumer ok with Qt ${major}\\.")
        message(FATAL_ERROR "the Qt ${major} consumer did not report success")
    endif()
endforeach()
