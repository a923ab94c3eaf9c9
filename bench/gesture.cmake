# SPDX-License-Identifier: MIT
# HandleGestureMoving per call, with the gesture map read from a warm SQLite store.
add_executable(bench_gesture "${CMAKE_CURRENT_LIST_DIR}/bench_gesture.cpp")
keltab_configure_target(bench_gesture)
target_link_libraries(bench_gesture PRIVATE KelTabContainer ${KELTAB_QT}::Widgets)
