# The platform's widgets and DPI helpers, one executable per class.
keltab_add_test(tst_dpitool SOURCES tst_dpitool.cpp)
keltab_add_test(tst_idpiadapter SOURCES tst_idpiadapter.cpp)
keltab_add_test(tst_uiutils SOURCES tst_uiutils.cpp)
keltab_add_test(tst_kelbasewidget SOURCES tst_kelbasewidget.cpp)
keltab_add_test(tst_kelmenu SOURCES tst_kelmenu.cpp)
keltab_add_test(tst_kelpushbutton SOURCES tst_kelpushbutton.cpp)
keltab_add_test(tst_kellabel SOURCES tst_kellabel.cpp)
keltab_add_test(tst_kelpushbuttonhover SOURCES tst_kelpushbuttonhover.cpp)
