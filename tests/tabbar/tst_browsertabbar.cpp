#include "keltabtest.h"

#include "keltabstyle.h"
#include "tabbartestutil.h"

using namespace ClassicTest;

class TstBrowserTabBar : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void renderLook_data();
    void renderLook();
};

void TstBrowserTabBar::renderLook_data()
{
    QTest::addColumn<int>("tabs");
    QTest::addColumn<double>("scale");
    QTest::newRow("1 tab") << 1 << 1.0;
    QTest::newRow("5 tabs") << 5 << 1.0;
    QTest::newRow("20 tabs") << 20 << 1.0;
    QTest::newRow("5 tabs at 1.5") << 5 << 1.5;
}

void TstBrowserTabBar::renderLook()
{
    QFETCH(int, tabs);
    QFETCH(double, scale);
    Environment env;
    DpiTool::SetScaleFactor(scale);
    QWidget window;
    window.setStyleSheet(QString());
    KelTabStyle::ApplyDefaultStyleSheet(&window);
    window.resize(S(900), S(36) + S(20));
    window.setStyleSheet(window.styleSheet() + QStringLiteral("QWidget#page { background: white; }"));
    TestBar bar(&window);
    bar.InitMenu();
    QWidget page(&window);
    page.setObjectName(QStringLiteral("page"));
    page.setGeometry(0, bar.minimumHeight(), window.width(), S(20));
    bar.setGeometry(0, 0, window.width(), bar.minimumHeight());
    const QStringList titles = {QStringLiteral("Example Domain"), QStringLiteral("Qt Documentation"),
                                QStringLiteral("KDE Community"), QStringLiteral("A rather long title that will not fit"),
                                QStringLiteral("News")};
    for (int i = 0; i < tabs; ++i)
        bar.addTab(MakeTab(titles.at(i % titles.size())));
    bar.setCurrentIndex(qMin(1, tabs - 1));
    if (tabs > 2)
        bar.LoadStart(2);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    if (tabs > 3) {
        // Hover the fourth tab the way the pointer would.
        QEvent enter(QEvent::Enter);
        QCoreApplication::sendEvent(ButtonAt(&bar, 3), &enter);
    }
    const QImage image = window.grab().toImage();
    const QString file = QStringLiteral("classic_%1_tabs_%2.png").arg(tabs).arg(scale * 10);
    QVERIFY(image.save(QDir::current().filePath(file)));
    // The current tab is painted white from its background image, not left transparent.
    BrowserTabButton *current = ButtonAt(&bar, bar.currentIndex());
    const QPoint inside = current->mapTo(&window, QPoint(current->width() / 2, current->height() - S(3)));
    QCOMPARE(image.pixelColor(inside * 1).name(), QStringLiteral("#ffffff"));
}

KELTAB_TEST_MAIN(TstBrowserTabBar)
#include "tst_browsertabbar.moc"
