# The services behind gestures and shortcuts: settings store, usage events,
# shortcut service and key injection.
keltab_add_test(tst_vossettingmanager SOURCES tst_vossettingmanager.cpp LIBRARIES Qt5::Sql)
keltab_add_test(tst_imonitorsystem SOURCES tst_imonitorsystem.cpp)
keltab_add_test(tst_vosshortcut SOURCES tst_vosshortcut.cpp)
keltab_add_test(tst_vosshortcutmanager SOURCES tst_vosshortcutmanager.cpp)
keltab_add_test(tst_voskeyinjector SOURCES tst_voskeyinjector.cpp)
