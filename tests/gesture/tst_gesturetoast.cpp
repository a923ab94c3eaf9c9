// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "dpitool.h"
#include "gesturetoast.h"
#include "keltabstyle.h"

#include <QHBoxLayout>
#include <QLabel>

class TstGestureToast : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { DpiTool::SetScaleFactor(1.0); }
    void cleanup() { DpiTool::SetScaleFactor(0); }

    void structure()
    {
        GestureToast toast;
        QCOMPARE(toast.objectName(), QStringLiteral("GestureToast"));
        QCOMPARE(toast.windowTitle(), QStringLiteral("GestureToast"));
        const Qt::WindowFlags flags = toast.windowFlags();
        QVERIFY(flags.testFlag(Qt::Tool));
        QVERIFY(flags.testFlag(Qt::FramelessWindowHint));
        QVERIFY(flags.testFlag(Qt::CustomizeWindowHint));
        QCOMPARE(int(flags), 0x0200080b);
        QVERIFY(toast.testAttribute(Qt::WA_TranslucentBackground));
        QVERIFY(toast.isWindow());

        auto *layout = qobject_cast<QHBoxLayout *>(toast.layout());
        QVERIFY(layout);
        QCOMPARE(layout->objectName(), QStringLiteral("horizontalLayout"));
        QCOMPARE(layout->count(), 1);
        auto *label = toast.findChild<QLabel *>(QStringLiteral("text_label"));
        QVERIFY(label);
        QCOMPARE(layout->itemAt(0)->widget(), static_cast<QWidget *>(label));
        QCOMPARE(label->alignment(), Qt::AlignCenter);
        QVERIFY(label->text().isEmpty());
    }

    void setText()
    {
        GestureToast toast;
        toast.SetText(QStringLiteral("New tab"));
        QCOMPARE(toast.Text(), QStringLiteral("New tab"));
        QCOMPARE(toast.findChild<QLabel *>(QStringLiteral("text_label"))->text(), QStringLiteral("New tab"));
    }

    void metricsFollowTheScaleFactor_data()
    {
        QTest::addColumn<double>("factor");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("margin");
        QTest::addColumn<int>("spacing");
        QTest::newRow("1.0") << 1.0 << QSize(200, 90) << 12 << 8;
        QTest::newRow("1.5") << 1.5 << QSize(300, 135) << 18 << 12;
        QTest::newRow("1.25") << 1.25 << QSize(250, 113) << 15 << 10;
        QTest::newRow("2.0") << 2.0 << QSize(400, 180) << 24 << 16;
    }

    void metricsFollowTheScaleFactor()
    {
        QFETCH(double, factor);
        QFETCH(QSize, size);
        QFETCH(int, margin);
        QFETCH(int, spacing);

        // At construction...
        DpiTool::SetScaleFactor(factor);
        {
            GestureToast toast;
            QCOMPARE(toast.size(), size);
            QCOMPARE(toast.minimumSize(), size);
            QCOMPARE(toast.maximumSize(), size);
            QCOMPARE(toast.layout()->contentsMargins(), QMargins(margin, margin, margin, margin));
            QCOMPARE(toast.layout()->spacing(), spacing);
        }
        // ... and when the factor changes under a live toast.
        DpiTool::SetScaleFactor(1.0);
        GestureToast toast;
        QCOMPARE(toast.size(), QSize(200, 90));
        DpiTool::SetScaleFactor(factor);
        QCOMPARE(toast.size(), size);
        QCOMPARE(toast.layout()->contentsMargins(), QMargins(margin, margin, margin, margin));
        QCOMPARE(toast.layout()->spacing(), spacing);
    }

    // A translucent window gets no styled background from Qt: the toast showed white
    // text on nothing until it drew the panel itself.
    void translucentToastPaintsItsPanel()
    {
        GestureToast toast;
        toast.setStyleSheet(QStringLiteral("GestureToast { background-color: rgb(32, 33, 36); }"));
        toast.SetText(QStringLiteral("New tab"));
        const QImage image = toast.grab().toImage();
        // A corner: inside the panel, away from the text.
        const QColor corner = image.pixelColor(4, 4);
        QCOMPARE(corner.alpha(), 255);
        QCOMPARE(corner.rgb(), qRgb(32, 33, 36));
    }

    void defaultStyleSheetStylesTheToast()
    {
        const QString sheet = KelTabStyle::DefaultStyleSheet();
        QVERIFY(sheet.contains(QStringLiteral("GestureToast")));
        QVERIFY(sheet.contains(QStringLiteral("#text_label")));
        QVERIFY(QFile::exists(QStringLiteral(":/qss/30-gesture.qss")));
    }
};

KELTAB_TEST_MAIN(TstGestureToast)
#include "tst_gesturetoast.moc"
