# SPDX-License-Identifier: MIT
# The classic tab strip against QTabBar: bench_browsertabbar.
add_executable(bench_browsertabbar
    "${CMAKE_CURRENT_LIST_DIR}/bench_browsertabbar.cpp"
    "${CMAKE_CURRENT_LIST_DIR}/tabbarworkload.h")
keltab_configure_target(bench_browsertabbar)
target_include_directories(bench_browsertabbar PRIVATE "${CMAKE_CURRENT_LIST_DIR}")
target_link_libraries(bench_browsertabbar PRIVATE KelTabContainer ${KELTAB_QT}::Widgets)
