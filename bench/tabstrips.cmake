# SPDX-License-Identifier: MIT
# Both tab strips against QTabBar, one operation at a time: bench_tabstrips.
add_executable(bench_tabstrips
    "${CMAKE_CURRENT_LIST_DIR}/bench_tabstrips.cpp"
    "${CMAKE_CURRENT_LIST_DIR}/tabstripbench.h"
    "${CMAKE_CURRENT_LIST_DIR}/tabstripchart.h")
keltab_configure_target(bench_tabstrips)
target_include_directories(bench_tabstrips PRIVATE "${CMAKE_CURRENT_LIST_DIR}")
target_link_libraries(bench_tabstrips PRIVATE KelTabContainer ${KELTAB_QT}::Widgets)
