# The services behind gestures and shortcuts: settings store, usage events,
# shortcut service and key injection.
keltab_add_test(tst_vossettingmanager SOURCES tst_vossettingmanager.cpp LIBRARIES Qt5::Sql)
# The second program that holds the settings database locked.
add_executable(settingslockholder settingslockholder.cpp)
keltab_configure_target(settingslockholder)
target_link_libraries(settingslockholder PRIVATE Qt5::Core Qt5::Sql)
add_dependencies(tst_vossettingmanager settingslockholder)
target_compile_definitions(tst_vossettingmanager PRIVATE
    KELTAB_SETTINGS_LOCK_HOLDER="$<TARGET_FILE:settingslockholder>")
keltab_add_test(tst_imonitorsystem SOURCES tst_imonitorsystem.cpp)
keltab_add_test(tst_vosshortcut SOURCES tst_vosshortcut.cpp)
keltab_add_test(tst_vosshortcutmanager SOURCES tst_vosshortcutmanager.cpp)
keltab_add_test(tst_voskeyinjector SOURCES tst_voskeyinjector.cpp)
