# SPDX-License-Identifier: MIT
# The scrolling tab strip against QTabBar: bench_browsertabbarex.
add_executable(bench_browsertabbarex
    "${CMAKE_CURRENT_LIST_DIR}/bench_browsertabbarex.cpp"
    "${CMAKE_CURRENT_LIST_DIR}/tabbarworkload.h")
keltab_configure_target(bench_browsertabbarex)
target_include_directories(bench_browsertabbarex PRIVATE "${CMAKE_CURRENT_LIST_DIR}")
target_link_libraries(bench_browsertabbarex PRIVATE KelTabContainer ${KELTAB_QT}::Widgets)
